#pragma once

#include "CommonDefine.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>

class FtpTaskThread;
class ListFtpDirectory;

// Lists, renames and deletes machine files for the program panel, one host FTP task
// per request. Refuses what would collide with a running transfer or with another
// operation on the same path, and answers rename and delete always exactly once.
class MachineStatusFtpManager : public QObject
{
    Q_OBJECT

public:
    explicit MachineStatusFtpManager(QObject* parent = nullptr);
    ~MachineStatusFtpManager() override;

    // An empty IP means no machine: every request is refused.
    void SetIp(const QString& ip) { m_strIp = ip; }
    QString Ip() const { return m_strIp; }

    void RequestList(const QString& dirPath);
    void RequestRename(const QString& oldPath, const QString& newPath);
    void RequestDelete(const QStringList& filePaths, const QStringList& folderPaths);

    int ListingsInFlight() const { return int(m_mapListings.size()); }

Q_SIGNALS:
    void SignalListResult(QString dirPath, bool success, QList<FtpFileInfo> items);
    void SignalRenameResult(bool success, QString oldPath, QString newPath);
    void SignalDeleteResult(bool success);

private:
    QString Url(const QString& path) const;
    QString EncodedUrl(const QString& path) const;
    void Start(FtpTaskThread* task);

    QString m_strIp;
    QMap<QString, QPointer<ListFtpDirectory>> m_mapListings;
    QSet<QString> m_setBusyPaths;
    bool m_bDeleting = false;
    QList<QPointer<FtpTaskThread>> m_listTasks;
};
