#pragma once

#include "FtpTaskThread.h"

// Deletes one remote file (DELE). path is the file's remote path; when empty, the URL's.
class KORVBASE_EXPORT DeleteFTPFile : public FtpTaskThread
{
    Q_OBJECT

public:
    DeleteFTPFile(const QString& url, const QString& encodedUrl, const QString& path, QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;
};
