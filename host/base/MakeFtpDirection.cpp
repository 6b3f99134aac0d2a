#include "MakeFtpDirection.h"

#include "FtpSession.h"

MakeFtpDirection::MakeFtpDirection(const QString& url, const QString& encodedUrl, const QString& path, QObject* parent)
    : FtpTaskThread(url, encodedUrl, path, parent)
{}

bool MakeFtpDirection::Execute(FtpSession& session, QString* message)
{
    const QString path = GetCurFilePath().isEmpty() ? RemotePathFromUrl() : GetCurFilePath();
    if (!CheckNewName(session, path, message))
        return false;
    if (session.Command({QStringLiteral("MKD ") + path}))
        return true;
    *message = session.ErrorMessage();
    return false;
}
