#pragma once

#include "FolderSyncPlan.h"
#include "TaskOwner.h"

#include <QObject>
#include <QTemporaryDir>
#include <memory>

// Tells which files of equal size differ in content: each machine file is fetched into a
// private temporary folder and compared byte for byte with the local one, a few at once.
class FolderSyncComparer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderSyncComparer)

public:
    static constexpr int MaxAtOnce = 5;

    explicit FolderSyncComparer(QObject* parent = nullptr);
    ~FolderSyncComparer() override;

    void Start(const QString& ip, const QString& localFolder, const QString& machineFolder,
               const QList<SyncConflict>& pairs);
    void Cancel();

Q_SIGNALS:
    // The pairs whose contents differ; a file that could not be fetched counts as differing.
    void SignalCompared(const QList<SyncConflict>& differing);

private:
    void StartNext();
    void OnFetched(quint64 generation, int index, bool ok);

    quint64 m_nGeneration = 0;
    QString m_strIp;
    QString m_strLocalFolder;
    QString m_strMachineFolder;
    QList<SyncConflict> m_listPairs;
    QList<SyncConflict> m_listDiffering;
    int m_iNext = 0;
    int m_iRunning = 0;
    std::unique_ptr<QTemporaryDir> m_pTempDir;
    TaskOwner m_tasks;
};
