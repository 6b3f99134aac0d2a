#pragma once

#include "FtpTaskThread.h"

// Deletes a remote folder with everything in it: files first, then folders bottom-up.
// baseUrl ("ftp://ip:21") names the server, folderUrl the folder (its path is used when
// path is empty), path is the folder's remote path and type the panel's item kind
// (kept for the owner, GetItemType()).
class KORVBASE_EXPORT DeleteFTPForder : public FtpTaskThread
{
    Q_OBJECT

public:
    DeleteFTPForder(const QString& baseUrl, const QString& folderUrl, const QString& path, const QString& type,
                    QObject* parent = nullptr);

    QString GetItemType() const { return m_strType; }

protected:
    bool Execute(FtpSession& session, QString* message) override;

private:
    QString m_strFolderUrl;
    QString m_strType;
};
