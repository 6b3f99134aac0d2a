#pragma once

#include "FtpTaskThread.h"

// Uploads localPath to the remote file named by the URL (an existing file is replaced).
// Sets g_bTranslating while it runs; the owner clears it after its last transfer.
class KORVBASE_EXPORT UploadToFtp : public FtpTaskThread
{
    Q_OBJECT

public:
    UploadToFtp(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;
};
