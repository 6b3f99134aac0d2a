#pragma once

#include "FtpTaskThread.h"

// Uploads localPath to the remote file named by the URL (an existing file is replaced):
// first under a temporary name beside the target, then renamed over it.
class KORVBASE_EXPORT UploadToFtp : public FtpTaskThread
{
    Q_OBJECT

public:
    UploadToFtp(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent = nullptr);

    // A hidden, unique name in the target's folder: ".name.<token>.part".
    static QString TemporaryPathFor(const QString& remotePath);

protected:
    bool Execute(FtpSession& session, QString* message) override;

private:
    // Renames the finished temporary file over the target without ever losing the target.
    static bool ReplaceTarget(FtpSession& session, const QString& part, const QString& target, QString* message);
};
