#pragma once

#include "FtpTaskThread.h"

// Tells whether the FTP server of the URL accepts the configured log-in, within the
// connect time-out ("Ftp/ConnectTimeoutMs"); nothing is transferred.
class KORVBASE_EXPORT CheckConnect : public FtpTaskThread
{
    Q_OBJECT

public:
    explicit CheckConnect(const QString& url, QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;
};
