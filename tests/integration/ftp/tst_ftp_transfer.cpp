#include "FtpTestFixture.h"
#include "TestTempDir.h"

#include <DownloadToLocal.h>
#include <KorvBaseGlobals.h>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>
#include <UploadToFtp.h>

namespace {
QByteArray RandomBytes(qsizetype size)
{
    QByteArray data(size, Qt::Uninitialized);
    QRandomGenerator generator(42);
    generator.fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
    return data;
}

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Stop(FtpTaskThread* task)
{
    task->SetTransControl(FtpTaskThread::TransControlStop);
}
} // namespace

class TestFtpTransfer : public QObject
{
    Q_OBJECT

private slots:
    void uploadsWithProgress_data() { FtpTestFixture::AddServerRows(); }
    void uploadsWithProgress();
    void downloadsReplacingTarget_data() { FtpTestFixture::AddServerRows(); }
    void downloadsReplacingTarget();
    void failedDownloadKeepsExistingTarget_data() { FtpTestFixture::AddServerRows(); }
    void failedDownloadKeepsExistingTarget();
    void stoppedUploadFails_data() { FtpTestFixture::AddServerRows(); }
    void stoppedUploadFails();
    void stoppedDownloadLeavesNoFile_data() { FtpTestFixture::AddServerRows(); }
    void stoppedDownloadLeavesNoFile();

private:
    FtpTestFixture m_fixture;
    TestTempDir m_local;
};

void TestFtpTransfer::uploadsWithProgress()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const QByteArray data = RandomBytes(3 * 1024 * 1024 + 17);
    const QString localPath = m_local.CreateFile(QStringLiteral("upload source.nc"), data);
    const QString remotePath =
        m_fixture.NewRemoteFolder(server, QStringLiteral("up")) + QStringLiteral("/上传 测试#1.nc");
    g_bTranslating = false;

    const QString url = FtpTestFixture::PlainUrl(remotePath);
    const TaskOutcome outcome =
        FtpTestFixture::Run(new UploadToFtp(url, FtpTestFixture::EncodedUrl(remotePath), localPath));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(ReadAll(server->LocalPath(remotePath)), data);
    // The workbench alone owns the busy flag; a host task never sets it behind its back.
    QVERIFY(!g_bTranslating);

    QVERIFY(!outcome.progress.isEmpty());
    QCOMPARE(outcome.progress.last(), qMakePair(qint64(data.size()), qint64(data.size())));
    for (qsizetype i = 1; i < outcome.progress.size(); ++i)
        QVERIFY(outcome.progress[i].first >= outcome.progress[i - 1].first);
    QCOMPARE(outcome.progressUrls.last(), url);
}

void TestFtpTransfer::downloadsReplacingTarget()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const QByteArray data = RandomBytes(2 * 1024 * 1024 + 5);
    const QString remotePath =
        m_fixture.NewRemoteFolder(server, QStringLiteral("down")) + QStringLiteral("/下载 文件.nc");
    QVERIFY(server->WriteFile(remotePath, data));
    TestTempDir target;
    const QString localPath = target.CreateFile(QStringLiteral("程序.nc"), "old content");

    const TaskOutcome outcome = FtpTestFixture::Run(
        new DownloadToLocal(FtpTestFixture::PlainUrl(remotePath), FtpTestFixture::EncodedUrl(remotePath), localPath));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(ReadAll(localPath), data);
    QCOMPARE(QDir(target.Path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("程序.nc")});
    QVERIFY(QFileInfo(localPath).permissions().testFlag(QFile::ReadOther));
    QCOMPARE(outcome.progress.last(), qMakePair(qint64(data.size()), qint64(data.size())));
}

void TestFtpTransfer::failedDownloadKeepsExistingTarget()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const QString remotePath =
        m_fixture.NewRemoteFolder(server, QStringLiteral("missing")) + QStringLiteral("/gone.nc");
    TestTempDir target;
    const QString localPath = target.CreateFile(QStringLiteral("gone.nc"), "keep me");

    const TaskOutcome outcome = FtpTestFixture::Run(
        new DownloadToLocal(FtpTestFixture::PlainUrl(remotePath), FtpTestFixture::EncodedUrl(remotePath), localPath));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("不存在")), qPrintable(outcome.message));
    QCOMPARE(ReadAll(localPath), QByteArray("keep me"));
    QCOMPARE(QDir(target.Path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("gone.nc")});
}

void TestFtpTransfer::stoppedUploadFails()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const qsizetype size = 32 * 1024 * 1024;
    const QString localPath = m_local.CreateFile(QStringLiteral("big.nc"), RandomBytes(size));
    const QString remotePath = m_fixture.NewRemoteFolder(server, QStringLiteral("stopup")) + QStringLiteral("/big.nc");

    const TaskOutcome outcome = FtpTestFixture::Run(
        new UploadToFtp(FtpTestFixture::PlainUrl(remotePath), FtpTestFixture::EncodedUrl(remotePath), localPath), 30000,
        Stop);
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("停止")), qPrintable(outcome.message));
    QVERIFY(QFileInfo(server->LocalPath(remotePath)).size() < size);
}

void TestFtpTransfer::stoppedDownloadLeavesNoFile()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const QString remotePath =
        m_fixture.NewRemoteFolder(server, QStringLiteral("stopdown")) + QStringLiteral("/big.nc");
    QVERIFY(server->WriteFile(remotePath, RandomBytes(32 * 1024 * 1024)));
    TestTempDir target;
    const QString localPath = target.FilePath(QStringLiteral("big.nc"));

    const TaskOutcome outcome = FtpTestFixture::Run(
        new DownloadToLocal(FtpTestFixture::PlainUrl(remotePath), FtpTestFixture::EncodedUrl(remotePath), localPath),
        30000, Stop);
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("停止")), qPrintable(outcome.message));
    QVERIFY(QDir(target.Path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

QTEST_GUILESS_MAIN(TestFtpTransfer)
#include "tst_ftp_transfer.moc"
