#pragma once

#include "FtpTaskThread.h"

// Downloads the remote file named by the URL to localPath. The bytes go to a hidden
// temporary file beside the target, which replaces the target only when complete; a
// failed or stopped download leaves an existing target untouched and no partial file.
class KORVBASE_EXPORT DownloadToLocal : public FtpTaskThread
{
    Q_OBJECT

public:
    DownloadToLocal(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent = nullptr);
    // listedSize: the size a listing of the folder showed, so that the machine need not be asked.
    DownloadToLocal(const QString& url, const QString& encodedUrl, const QString& localPath, qint64 listedSize,
                    QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;

private:
    qint64 m_iListedSize = -1;
};
