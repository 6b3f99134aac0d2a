#pragma once

#include "KorvBaseExport.h"

#include <QString>
#include <functional>

// Blocking one-shot FTP helpers for thread-pool tasks; never call them on the GUI thread.
// The machine is reached on port 21 mapped through "Ftp/PortMapping".

// True when the machine's FTP server accepts the configured log-in within the connect time-out.
KORVBASE_EXPORT bool FtpConnection(const QString& ip);
// The same, given up (false) soon after stopRequested returns true, for an owner that must
// not wait out the time-out when it goes.
KORVBASE_EXPORT bool FtpConnection(const QString& ip, const std::function<bool()>& stopRequested);
// Creates the remote folder path (absolute) on the machine at ip; true on success.
KORVBASE_EXPORT bool makeFtpDirection(const QString& ip, const QString& path);
