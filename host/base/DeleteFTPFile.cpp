#include "DeleteFTPFile.h"

#include "FtpSession.h"

DeleteFTPFile::DeleteFTPFile(const QString& url, const QString& encodedUrl, const QString& path, QObject* parent)
    : FtpTaskThread(url, encodedUrl, path, parent)
{}

bool DeleteFTPFile::Execute(FtpSession& session, QString* message)
{
    const QString path = GetCurFilePath().isEmpty() ? RemotePathFromUrl() : GetCurFilePath();
    if (session.Command({QStringLiteral("DELE ") + path}))
        return true;
    *message = session.ErrorMessage();
    return false;
}
