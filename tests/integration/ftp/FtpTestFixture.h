#pragma once

#include "TestFtpServer.h"

#include <FtpTaskThread.h>
#include <MachineRecords.h>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>

// What a task reported, collected on the test's thread.
struct TaskOutcome
{
    bool bFinished = false;
    bool bOk = false;
    QString message;
    QList<QPair<qint64, qint64>> progress;
    QStringList progressUrls;
    int listSignals = 0;
    bool bListOk = false;
    QList<FtpFileInfo> entries;

    const FtpFileInfo* Entry(const QString& name) const;
};

// Shared set-up of the FTP integration tests: one server per kind, started on first use
// and kept for the whole executable; settings in a private folder; one fresh remote
// folder per test row.
class FtpTestFixture
{
public:
    FtpTestFixture();

    // Adds the "kind" column and one row per server kind.
    static void AddServerRows();
    // The server of the current row, started and made the target of the FTP settings; null
    // with *skipReason set when the server cannot run here.
    TestFtpServer* CurrentServer(QString* skipReason);
    // A new empty folder on the server ("/<prefix>-<n>").
    QString NewRemoteFolder(TestFtpServer* server, const QString& prefix);

    // The URL forms the workbench builds: port 21, mapped to the server by the settings.
    static QString PlainUrl(const QString& remotePath);
    static QString EncodedUrl(const QString& remotePath);
    static void SetSetting(const char* key, const QVariant& value);

    // Starts the task, waits for its end (or timeoutMs) and deletes it.
    static TaskOutcome Run(FtpTaskThread* task, int timeoutMs = 30000,
                           const std::function<void(FtpTaskThread*)>& onFirstProgress = {});

private:
    QTemporaryDir m_configDir;
    std::map<FtpServerKind, std::unique_ptr<TestFtpServer>> m_servers;
    QMap<FtpServerKind, QString> m_mapSkip;
    int m_iFolderCounter = 0;
};
