#include "ListFtpDirectory.h"

#include "FtpSession.h"

ListFtpDirectory::ListFtpDirectory(const QString& url, const QString& encodedUrl, const QString& path, QObject* parent)
    : FtpTaskThread(url, encodedUrl, path, parent)
{}

bool ListFtpDirectory::Execute(FtpSession& session, QString* message)
{
    const QString path = GetCurFilePath().isEmpty() ? RemotePathFromUrl() : GetCurFilePath();
    if (session.ListDirectory(path, &m_listEntries))
        return true;
    *message = session.ErrorMessage();
    return false;
}

void ListFtpDirectory::Finish(bool ok, const QString& message)
{
    emit SignalListFileFinished(ok, ok ? m_listEntries : QList<FtpFileInfo>());
    FtpTaskThread::Finish(ok, message);
}
