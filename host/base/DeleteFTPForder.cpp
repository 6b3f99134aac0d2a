#include "DeleteFTPForder.h"

#include "FtpSession.h"

#include <QCoreApplication>
#include <QUrl>

DeleteFTPForder::DeleteFTPForder(const QString& baseUrl, const QString& folderUrl, const QString& path,
                                 const QString& type, QObject* parent)
    : FtpTaskThread(baseUrl, QString(), path, parent), m_strFolderUrl(folderUrl), m_strType(type)
{}

bool DeleteFTPForder::Execute(FtpSession& session, QString* message)
{
    const QString path = GetCurFilePath().isEmpty() ? QUrl(m_strFolderUrl).path(QUrl::FullyDecoded) : GetCurFilePath();
    if (path.isEmpty() || path == QLatin1String("/")) {
        *message = QCoreApplication::translate("FtpTask", "不能删除根目录");
        return false;
    }
    if (session.RemoveTree(path))
        return true;
    *message = session.ErrorMessage();
    return false;
}
