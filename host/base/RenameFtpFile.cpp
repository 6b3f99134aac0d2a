#include "RenameFtpFile.h"

#include "FtpSession.h"

#include <QCoreApplication>

RenameFtpFile::RenameFtpFile(const QString& oldUrl, const QString& newUrl, const QString& path, QObject* parent)
    : FtpTaskThread(oldUrl, newUrl, path, parent)
{}

void RenameFtpFile::SetFilePath(const QString& oldPath, const QString& newPath)
{
    m_strOldPath = oldPath;
    m_strNewPath = newPath;
}

bool RenameFtpFile::Execute(FtpSession& session, QString* message)
{
    if (m_strOldPath.isEmpty() || m_strNewPath.isEmpty()) {
        *message = QCoreApplication::translate("FtpTask", "未指定重命名的路径");
        return false;
    }
    if (!CheckNewName(session, m_strNewPath, message))
        return false;
    if (session.Command({QStringLiteral("RNFR ") + m_strOldPath, QStringLiteral("RNTO ") + m_strNewPath}))
        return true;
    *message = session.ErrorMessage();
    return false;
}
