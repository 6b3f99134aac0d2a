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

FtpTaskThread* Up(const QString& remote, const QString& local)
{
    return new UploadToFtp(FtpTestFixture::PlainUrl(remote), FtpTestFixture::EncodedUrl(remote), local);
}

FtpTaskThread* Down(const QString& remote, const QString& local)
{
    return new DownloadToLocal(FtpTestFixture::PlainUrl(remote), FtpTestFixture::EncodedUrl(remote), local);
}
} // namespace

class TestFtpTransfer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void uploadsWithProgress_data() { FtpTestFixture::AddServerRows(); }
    void uploadsWithProgress();
    void downloadsReplacingTarget_data() { FtpTestFixture::AddServerRows(); }
    void downloadsReplacingTarget();
    void stopLeavesNoFullFile_data() { FtpTestFixture::AddServerRows(); }
    void stopLeavesNoFullFile();

private:
    FtpTestFixture m_fixture;
    TestTempDir m_local;
    TestFtpServer* m_pServer = nullptr;
};

void TestFtpTransfer::init()
{
    QString skip;
    if (!(m_pServer = m_fixture.CurrentServer(&skip)))
        QSKIP(qPrintable(skip));
}

void TestFtpTransfer::uploadsWithProgress()
{
    const QByteArray data = RandomBytes(3 * 1024 * 1024 + 17);
    const QString localPath = m_local.CreateFile(QStringLiteral("upload source.nc"), data);
    const QString remotePath =
        m_fixture.NewRemoteFolder(m_pServer, QStringLiteral("up")) + QStringLiteral("/上传 测试#1.nc");
    g_bTranslating = false;
    const TaskOutcome outcome = FtpTestFixture::Run(Up(remotePath, localPath));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(ReadAll(m_pServer->LocalPath(remotePath)), data);
    // The workbench alone owns the busy flag; a host task never sets it behind its back.
    QVERIFY(!g_bTranslating);
    QVERIFY(!outcome.progress.isEmpty());
    QCOMPARE(outcome.progress.last(), qMakePair(qint64(data.size()), qint64(data.size())));
    for (qsizetype i = 1; i < outcome.progress.size(); ++i)
        QVERIFY(outcome.progress[i].first >= outcome.progress[i - 1].first);
    QCOMPARE(outcome.progressUrls.last(), FtpTestFixture::PlainUrl(remotePath));
}

// A failed download keeps the file it would have replaced; a good one replaces it in place.
void TestFtpTransfer::downloadsReplacingTarget()
{
    const QByteArray data = RandomBytes(2 * 1024 * 1024 + 5);
    const QString folder = m_fixture.NewRemoteFolder(m_pServer, QStringLiteral("down"));
    const QString remotePath = folder + QStringLiteral("/下载 文件.nc");
    QVERIFY(m_pServer->WriteFile(remotePath, data));
    TestTempDir target;
    const QString localPath = target.CreateFile(QStringLiteral("程序.nc"), "old content");
    TaskOutcome outcome = FtpTestFixture::Run(Down(folder + QStringLiteral("/gone.nc"), localPath));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("不存在")), qPrintable(outcome.message));
    QCOMPARE(ReadAll(localPath), QByteArray("old content"));
    QCOMPARE(QDir(target.Path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("程序.nc")});

    outcome = FtpTestFixture::Run(Down(remotePath, localPath));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(ReadAll(localPath), data);
    QCOMPARE(QDir(target.Path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("程序.nc")});
    QVERIFY(QFileInfo(localPath).permissions().testFlag(QFile::ReadOther));
    QCOMPARE(outcome.progress.last(), qMakePair(qint64(data.size()), qint64(data.size())));
}

// Stopped in the middle, an upload leaves less than the whole on the server and a download
// nothing at all on the disc.
void TestFtpTransfer::stopLeavesNoFullFile()
{
    const qsizetype size = 32 * 1024 * 1024;
    const QString folder = m_fixture.NewRemoteFolder(m_pServer, QStringLiteral("stop"));
    QVERIFY(m_pServer->WriteFile(folder + QStringLiteral("/down.nc"), RandomBytes(size)));
    TestTempDir target;
    const QString up = m_local.CreateFile(QStringLiteral("big.nc"), RandomBytes(size));
    for (bool bUpload : {true, false}) {
        const TaskOutcome outcome = FtpTestFixture::Run(
            bUpload ? Up(folder + QStringLiteral("/up.nc"), up)
                    : Down(folder + QStringLiteral("/down.nc"), target.FilePath("big.nc")),
            30000, [](FtpTaskThread* task) { task->SetTransControl(FtpTaskThread::TransControlStop); });
        QVERIFY(outcome.bFinished);
        QVERIFY(!outcome.bOk);
        QVERIFY2(outcome.message.contains(QStringLiteral("停止")), qPrintable(outcome.message));
    }
    QVERIFY(QFileInfo(m_pServer->LocalPath(folder + QStringLiteral("/up.nc"))).size() < size);
    QVERIFY(QDir(target.Path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

QTEST_GUILESS_MAIN(TestFtpTransfer)
#include "tst_ftp_transfer.moc"
