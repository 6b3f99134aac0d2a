#pragma once

#include "FolderSyncPlan.h"
#include "MachineEndpoint.h"
#include "TaskOwner.h"

#include <QObject>
#include <QPointer>
#include <QTemporaryDir>
#include <memory>

class MachineFileService;
class MachineJob;

// Tells which files of equal size differ in content: each machine file is fetched through the
// funnel (so it counts as a running transfer) into a private temporary folder and compared
// byte for byte with the local one, a few at once.
class FolderSyncComparer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderSyncComparer)

public:
    static constexpr int MaxAtOnce = 5;

    explicit FolderSyncComparer(MachineFileService* files, QObject* parent = nullptr);
    ~FolderSyncComparer() override;

    void Start(const MachineEndpoint& endpoint, const QString& localFolder, const QString& machineFolder,
               const QList<SyncConflict>& pairs);
    void Cancel();

Q_SIGNALS:
    // The pairs whose contents differ; a file that could not be fetched counts as differing.
    void SignalCompared(const QList<SyncConflict>& differing);

private:
    void StartNext();
    void OnFetched(quint64 generation, int index, bool ok);

    MachineFileService* m_pFiles;
    quint64 m_nGeneration = 0;
    MachineEndpoint m_endpoint;
    QString m_strLocalFolder;
    QString m_strMachineFolder;
    QList<SyncConflict> m_listPairs;
    QList<SyncConflict> m_listDiffering;
    QList<QPointer<MachineJob>> m_listFetches;
    int m_iNext = 0;
    int m_iRunning = 0;
    std::unique_ptr<QTemporaryDir> m_pTempDir;
    TaskOwner m_tasks;
};
