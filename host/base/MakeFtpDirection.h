#pragma once

#include "FtpTaskThread.h"

// Creates one remote folder (MKD). path is the new folder's remote path; when empty, the URL's.
class KORVBASE_EXPORT MakeFtpDirection : public FtpTaskThread
{
    Q_OBJECT

public:
    MakeFtpDirection(const QString& url, const QString& encodedUrl, const QString& path, QObject* parent = nullptr);

protected:
    bool Execute(FtpSession& session, QString* message) override;
};
