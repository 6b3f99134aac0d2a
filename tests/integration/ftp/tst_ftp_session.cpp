#include "CncSimServer.h"
#include "FreeLoopbackPort.h"
#include "FtpTestFixture.h"
#include "TestTempDir.h"

#include <CDebugLog.h>
#include <DownloadToLocal.h>
#include <FtpSession.h>
#include <KorvBaseGlobals.h>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <UploadToFtp.h>
#include <algorithm>

// What a user reads when an FTP task fails against the machine simulator, and how fast small
// programs move: the simulator adds no latency of its own, and no step stalls.
class TestFtpSession : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void failureInOwnWords_data();
    void failureInOwnWords();
    void smallUploadsKeepPace_data();
    void smallUploadsKeepPace();

private:
    FtpTestFixture m_fixture; // private settings folder
    TestTempDir m_local;
};

void TestFtpSession::init()
{
    QFile::remove(CDebugLog::LogFilePath()); // each row finds its own log lines
}

void TestFtpSession::failureInOwnWords_data()
{
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<bool>("bUpload");
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("serverReply");
    QTest::newRow("could-not-connect") << QStringList{} << false << "closed-port"
                                       << "无法连接FTP服务器"
                                       << "";
    QTest::newRow("login-denied") << QStringList{} << false << "wrong-password"
                                  << "登录被拒绝"
                                  << "530";
    QTest::newRow("remote-file-not-found") << QStringList{} << false << "missing-file"
                                           << "远程文件不存在"
                                           << "550";
    QTest::newRow("timed-out") << QStringList{"--ftp-latency", "2500"} << false << "short-timeout"
                               << "FTP服务器响应超时"
                               << "";
    QTest::newRow("disk-full-while-sending") << QStringList{"--ftp-disk-full", "65536"} << true << ""
                                             << "服务器存储空间不足"
                                             << "552";
    QTest::newRow("connection-cut") << QStringList{"--ftp-drop-after", "65536"} << false << ""
                                    << "FTP连接中断"
                                    << "";
}

void TestFtpSession::failureInOwnWords()
{
    QFETCH(QStringList, faults);
    QFETCH(bool, bUpload);
    QFETCH(QString, setup);
    QFETCH(QString, words);
    QFETCH(QString, serverReply);
    CncSimServer sim(faults);
    QVERIFY2(sim.Start(), qPrintable(sim.ErrorString()));
    const QByteArray big(8 * 1024 * 1024, 'g');
    QVERIFY(sim.WriteFile(QStringLiteral("/big.nc"), big));
    FtpTestFixture::SetSetting(g_strSettingFtpUser, sim.User());
    FtpTestFixture::SetSetting(g_strSettingFtpPassword, setup == "wrong-password" ? "wrong" : sim.Password());
    FtpTestFixture::SetSetting(g_strSettingFtpPortMapping,
                               setup == "closed-port" ? int(FreeLoopbackPort()) : int(sim.Port()));
    FtpTestFixture::SetSetting(g_strSettingFtpConnectTimeoutMs, 5000);
    FtpTestFixture::SetSetting(g_strSettingFtpResponseTimeoutMs, setup == "short-timeout" ? 1000 : 15000);

    const QString remote = setup == "missing-file" ? QStringLiteral("/missing.nc") : QStringLiteral("/big.nc");
    FtpTaskThread* task = nullptr;
    if (bUpload)
        task = new UploadToFtp(FtpTestFixture::PlainUrl(remote), FtpTestFixture::EncodedUrl(remote),
                               m_local.CreateFile(QStringLiteral("big.nc"), big));
    else
        task = new DownloadToLocal(FtpTestFixture::PlainUrl(remote), FtpTestFixture::EncodedUrl(remote),
                                   m_local.FilePath(QStringLiteral("down.nc")));
    const TaskOutcome outcome = FtpTestFixture::Run(task);
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(words), qPrintable(outcome.message));
    if (!serverReply.isEmpty())
        QVERIFY2(outcome.message.contains(QStringLiteral("服务器回复：") + serverReply), qPrintable(outcome.message));
    // libcurl's English stays out of the user's text (the server's own reply may be English) ...
    QString ownText = outcome.message;
    ownText.remove(QRegularExpression(QStringLiteral("（服务器回复：[^）]*）")));
    QVERIFY2(!ownText.contains(QRegularExpression(QStringLiteral("[A-Za-z]{4,}"))), qPrintable(outcome.message));
    // ... and goes to the debug log.
    QFile log(CDebugLog::LogFilePath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains(" failed: curl "));
}

void TestFtpSession::smallUploadsKeepPace_data()
{
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<int>("files");
    QTest::addColumn<int>("minMedianMs");
    QTest::addColumn<int>("maxMedianMs");
    // A delayed acknowledgement costs 40 ms per upload and the data-connection stall a second; both
    // stand far above these bounds, which leave room for a loaded machine (the sanitizer builds
    // stretch the median bound by KORV_TIME_FACTOR).
    QTest::newRow("no-latency") << QStringList{} << 200 << 0 << 20;
    QTest::newRow("latency-switch") << QStringList{"--ftp-latency", "30"} << 10 << 60 << 1000;
}

void TestFtpSession::smallUploadsKeepPace()
{
    QFETCH(QStringList, faults);
    QFETCH(int, files);
    QFETCH(int, minMedianMs);
    QFETCH(int, maxMedianMs);
    CncSimServer sim(faults);
    QVERIFY2(sim.Start(), qPrintable(sim.ErrorString()));
    FtpSettings settings;
    settings.user = sim.User();
    settings.password = sim.Password();
    FtpSession session(QStringLiteral("127.0.0.1"), sim.Port(), settings);
    QVERIFY2(session.Connect(), qPrintable(session.ErrorMessage()));
    QByteArray program(20 * 1024, 'p');
    QList<qint64> times;
    for (int i = 0; i < files; ++i) {
        QBuffer source(&program);
        QVERIFY(source.open(QIODevice::ReadOnly));
        QElapsedTimer clock;
        clock.start();
        QVERIFY2(session.Upload(&source, program.size(), QStringLiteral("/p%1.nc").arg(i), {}),
                 qPrintable(session.ErrorMessage()));
        times << clock.elapsed();
    }
    std::sort(times.begin(), times.end());
    const qint64 median = times.at(times.size() / 2);
    const QString figures = QStringLiteral("median %1 ms, max %2 ms").arg(median).arg(times.last());
    const int factor = qMax(1, qEnvironmentVariableIntValue("KORV_TIME_FACTOR"));
    QVERIFY2(median >= minMedianMs && median <= maxMedianMs * factor, qPrintable(figures));
    QVERIFY2(times.last() < 900, qPrintable(figures));
    QCOMPARE(QFileInfo(sim.LocalPath(QStringLiteral("/p0.nc"))).size(), program.size());
}

QTEST_GUILESS_MAIN(TestFtpSession)
#include "tst_ftp_session.moc"
