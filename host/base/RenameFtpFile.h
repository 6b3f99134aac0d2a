#pragma once

#include "FtpTaskThread.h"

// Renames or moves a remote file or folder (RNFR/RNTO). The URLs name the server; the
// paths are given with SetFilePath before start(). path is kept for the owner.
class KORVBASE_EXPORT RenameFtpFile : public FtpTaskThread
{
    Q_OBJECT

public:
    RenameFtpFile(const QString& oldUrl, const QString& newUrl, const QString& path, QObject* parent = nullptr);

    void SetFilePath(const QString& oldPath, const QString& newPath);

protected:
    bool Execute(FtpSession& session, QString* message) override;

private:
    QString m_strOldPath;
    QString m_strNewPath;
};
