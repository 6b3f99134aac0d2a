#pragma once

#include "CommonDefine.h"
#include "MachineEndpoint.h"
#include "TaskOwner.h"

#include <QMap>
#include <QObject>
#include <QPointer>

class MachineFileService;
class MachineTask;

// The program panel's machine file requests. Listings are its own; renames and deletes go
// through the workbench's funnel like those of the file page, so the same checks hold (the
// running program, a path in use, no change while a transfer runs). Rename and delete are
// answered always exactly once.
class MachineStatusFtpManager : public QObject
{
    Q_OBJECT

public:
    explicit MachineStatusFtpManager(QObject* parent = nullptr);
    ~MachineStatusFtpManager() override;

    // The funnel its changes go through; without it every change is refused.
    void SetFileService(MachineFileService* files) { m_pFiles = files; }
    // An empty IP means no machine: every request is refused.
    void SetIp(const QString& ip) { m_endpoint = MachineEndpoint::For(ip, QString()); }
    QString Ip() const { return m_endpoint.strIp; }

    void RequestList(const QString& dirPath);
    void RequestRename(const QString& oldPath, const QString& newPath);
    void RequestDelete(const QStringList& filePaths, const QStringList& folderPaths);

    int ListingsInFlight() const { return int(m_mapListings.size()); }

Q_SIGNALS:
    void SignalListResult(QString dirPath, bool success, QList<FtpFileInfo> items);
    void SignalRenameResult(bool success, QString oldPath, QString newPath);
    void SignalDeleteResult(bool success);

private:
    MachineFileService* m_pFiles = nullptr;
    MachineEndpoint m_endpoint;
    QMap<QString, QPointer<MachineTask>> m_mapListings;
    bool m_bDeleting = false;
    TaskOwner m_tasks;
};
