#pragma once

#include "FolderSyncPlan.h"
#include "MachineEndpoint.h"
#include "MachineRecords.h"
#include "TaskOwner.h"

#include <QObject>

// Lists both sides of a synchronisation: the local folder on a pool thread, the machine
// folder through the host's listing tasks, one folder after the other when sub-folders
// take part. Reports once per Start; a Cancel or a new Start drops what the last one
// still had under way.
class FolderSyncScanner final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderSyncScanner)

public:
    explicit FolderSyncScanner(QObject* parent = nullptr);
    ~FolderSyncScanner() override;

    void Start(const MachineEndpoint& endpoint, const QString& localFolder, const QString& machineFolder,
               bool bRecursive);
    void Cancel();

Q_SIGNALS:
    void SignalScanned(bool ok, const QList<SyncEntry>& local, const QList<SyncEntry>& machine, const QString& error);

private:
    void ListNextMachineFolder();
    void OnMachineListed(quint64 generation, const QString& relFolder, bool ok, const QList<FtpFileInfo>& entries,
                         const QString& error);
    void FinishIfDone();

    quint64 m_nGeneration = 0;
    MachineEndpoint m_endpoint;
    QString m_strMachineFolder;
    bool m_bRecursive = false;
    bool m_bLocalDone = false;
    bool m_bMachineDone = false;
    bool m_bFailed = false;
    QString m_strError;
    QStringList m_listPendingFolders;
    QList<SyncEntry> m_listLocal;
    QList<SyncEntry> m_listMachine;
    TaskOwner m_tasks;
};
