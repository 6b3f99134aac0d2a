#include "CheckConnect.h"

CheckConnect::CheckConnect(const QString& url, QObject* parent) : FtpTaskThread(url, QString(), QString(), parent) {}

bool CheckConnect::Execute(FtpSession&, QString*)
{
    // Reaching here means the log-in succeeded.
    return true;
}
