#include "DeleteFtpItems.h"

#include "FtpSession.h"

#include <QCoreApplication>

DeleteFtpItems::DeleteFtpItems(const QString& url, const QString& encodedUrl, const QList<QString>& files,
                               const QList<QString>& folders, const QString& machine, QObject* parent)
    : FtpTaskThread(url, encodedUrl, QString(), parent), m_listFiles(files), m_listFolders(folders),
      m_strMachine(machine)
{}

bool DeleteFtpItems::Execute(FtpSession& session, QString* message)
{
    QStringList failures;
    auto attempt = [&](const QString& path, bool bOk) {
        if (!bOk)
            failures.append(QStringLiteral("%1（%2）").arg(path, session.ErrorMessage()));
    };
    for (const QString& file : std::as_const(m_listFiles)) {
        if (IsStopRequested())
            break;
        attempt(file, session.Command({QStringLiteral("DELE ") + file}));
    }
    for (const QString& folder : std::as_const(m_listFolders)) {
        if (IsStopRequested())
            break;
        attempt(folder, folder != QLatin1String("/") && session.RemoveTree(folder));
    }
    if (IsStopRequested()) {
        *message = QCoreApplication::translate("FtpTask", "删除已停止");
        return false;
    }
    if (failures.isEmpty())
        return true;
    *message = QCoreApplication::translate("FtpTask", "%1上有%2项删除失败：%3")
                   .arg(m_strMachine)
                   .arg(failures.size())
                   .arg(failures.join(QStringLiteral("；")));
    return false;
}
