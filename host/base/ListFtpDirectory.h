#pragma once

#include "FtpTaskThread.h"
#include "MachineRecords.h"

#include <QList>

// Lists one remote folder: MLSD when the server offers it, else LIST. path is the folder
// ("/" or "/a/b/"); when empty the URL's path is listed. GetCurFilePath() returns path as given.
class KORVBASE_EXPORT ListFtpDirectory : public FtpTaskThread
{
    Q_OBJECT

public:
    ListFtpDirectory(const QString& url, const QString& encodedUrl, const QString& path, QObject* parent = nullptr);

signals:
    // Emitted before SignalTaskFinished; entries are empty on failure.
    void SignalListFileFinished(bool ok, const QList<FtpFileInfo>& entries);

protected:
    bool Execute(FtpSession& session, QString* message) override;
    void Finish(bool ok, const QString& message) override;

private:
    QList<FtpFileInfo> m_listEntries;
};
