#include "CheckConnect.h"

#include "FtpSession.h"

CheckConnect::CheckConnect(const QString& url, QObject* parent) : FtpTaskThread(url, QString(), QString(), parent) {}

bool CheckConnect::Execute(FtpSession& session, QString* message)
{
    // A cached login is taken without a word to the machine: one exchange proves that it answers.
    if (session.Command({QStringLiteral("NOOP")}))
        return true;
    *message = session.ErrorMessage();
    return false;
}
