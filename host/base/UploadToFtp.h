#pragma once

#include "FtpTaskThread.h"

// Uploads localPath to the remote file named by the URL (an existing file is replaced):
// first under a temporary name beside the target, then renamed over it.
class KORVBASE_EXPORT UploadToFtp : public FtpTaskThread
{
    Q_OBJECT

public:
    UploadToFtp(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;

private:
    // A temporary name beside remotePath (see FtpTemporaryName), unlike every name in `taken`.
    QString TemporaryPathFor(const QString& remotePath, const QStringList& taken) const;
    // Renames the finished temporary file over the target without ever losing the target.
    bool ReplaceTarget(FtpSession& session, const QString& part, const QString& target, QStringList taken,
                       QString* message) const;

    QString m_strMarker;
};
