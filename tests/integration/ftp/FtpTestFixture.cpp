#include "FtpTestFixture.h"

#include <CamBaseTextHelper.h>
#include <KorvBaseGlobals.h>
#include <ListFtpDirectory.h>
#include <QTest>
#include <QUrl>

const FtpFileInfo* TaskOutcome::Entry(const QString& name) const
{
    for (const FtpFileInfo& entry : entries) {
        if (entry.name == name)
            return &entry;
    }
    return nullptr;
}

FtpTestFixture::FtpTestFixture()
{
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
}

void FtpTestFixture::AddServerRows()
{
    QTest::addColumn<int>("kind");
    for (FtpServerKind kind : TestFtpServer::AllKinds())
        QTest::newRow(qPrintable(TestFtpServer::KindName(kind))) << int(kind);
}

TestFtpServer* FtpTestFixture::CurrentServer(QString* skipReason)
{
    const auto kind = FtpServerKind(*static_cast<int*>(QTest::qData("kind", qMetaTypeId<int>())));
    if (m_mapSkip.contains(kind)) {
        *skipReason = m_mapSkip.value(kind);
        return nullptr;
    }
    std::unique_ptr<TestFtpServer>& server = m_servers[kind];
    if (!server) {
        server = TestFtpServer::Create(kind);
        if (!server->Start()) {
            m_mapSkip.insert(kind, TestFtpServer::KindName(kind) + QStringLiteral(": ") + server->ErrorString());
            server.reset();
            *skipReason = m_mapSkip.value(kind);
            return nullptr;
        }
    }
    SetSetting(g_strSettingFtpUser, server->User());
    SetSetting(g_strSettingFtpPassword, server->Password());
    SetSetting(g_strSettingFtpPortMapping, server->Port());
    SetSetting(g_strSettingFtpConnectTimeoutMs, 5000);
    SetSetting(g_strSettingFtpResponseTimeoutMs, 15000);
    return server.get();
}

QString FtpTestFixture::NewRemoteFolder(TestFtpServer* server, const QString& prefix)
{
    const QString path = QStringLiteral("/%1-%2").arg(prefix).arg(++m_iFolderCounter);
    return server->MakeDir(path) ? path : QString();
}

QString FtpTestFixture::PlainUrl(const QString& remotePath)
{
    return QStringLiteral("ftp://%1:%2%3").arg(QStringLiteral("127.0.0.1"), QStringLiteral("21"), remotePath);
}

QString FtpTestFixture::EncodedUrl(const QString& remotePath)
{
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(21);
    url.setPath(remotePath);
    return url.toString(QUrl::FullyEncoded);
}

void FtpTestFixture::SetSetting(const char* key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, false);
}

TaskOutcome FtpTestFixture::Run(FtpTaskThread* task, int timeoutMs,
                                const std::function<void(FtpTaskThread*)>& onFirstProgress)
{
    TaskOutcome outcome;
    QObject context; // lives on this thread, so every signal arrives queued here
    if (onFirstProgress) {
        // Direct: the stop request must land while the transfer is still moving.
        QObject::connect(
            task, &FtpTaskThread::SignalTaskProgress, task,
            [task, onFirstProgress, bDone = false](qint64, qint64, const QString&) mutable {
                if (!bDone)
                    onFirstProgress(task);
                bDone = true;
            },
            Qt::DirectConnection);
    }
    QObject::connect(task, &FtpTaskThread::SignalTaskProgress, &context,
                     [&outcome](qint64 done, qint64 total, const QString& url) {
                         outcome.progress.append({done, total});
                         outcome.progressUrls.append(url);
                     });
    QObject::connect(task, &FtpTaskThread::SignalTaskFinished, &context, [&outcome](bool ok, const QString& message) {
        outcome.bFinished = true;
        outcome.bOk = ok;
        outcome.message = message;
    });
    if (auto* listing = qobject_cast<ListFtpDirectory*>(task)) {
        QObject::connect(listing, &ListFtpDirectory::SignalListFileFinished, &context,
                         [&outcome](bool ok, const QList<FtpFileInfo>& entries) {
                             ++outcome.listSignals;
                             outcome.bListOk = ok;
                             outcome.entries = entries;
                         });
    }
    task->start();
    if (!QTest::qWaitFor([&] { return outcome.bFinished && task->isFinished(); }, timeoutMs)) {
        task->SetTransControl(FtpTaskThread::TransControlStop);
        task->wait();
    }
    QCoreApplication::processEvents(); // deliver signals queued before the thread ended
    delete task;
    return outcome;
}
