#include "FreeLoopbackPort.h"
#include "FtpTestFixture.h"

#include <CheckConnect.h>
#include <FtpConnection.h>
#include <KorvBaseGlobals.h>
#include <ListFtpDirectory.h>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTest>

class TestFtpConnect : public QObject
{
    Q_OBJECT

private slots:
    void checkConnectAndFtpConnectionSucceed_data() { FtpTestFixture::AddServerRows(); }
    void checkConnectAndFtpConnectionSucceed();
    void badCredentialsFail_data() { FtpTestFixture::AddServerRows(); }
    void badCredentialsFail();
    void nothingListeningFails();
    void silentServerTimesOut();

private:
    FtpTestFixture m_fixture;
};

void TestFtpConnect::checkConnectAndFtpConnectionSucceed()
{
    QString skip;
    if (!m_fixture.CurrentServer(&skip))
        QSKIP(qPrintable(skip));
    const TaskOutcome outcome = FtpTestFixture::Run(new CheckConnect(FtpTestFixture::PlainUrl(QString())));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QVERIFY(outcome.progress.isEmpty());
    QVERIFY(FtpConnection(QStringLiteral("127.0.0.1")));
}

void TestFtpConnect::badCredentialsFail()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    // Servers delay a refusal by seconds on purpose; the log-in limit must not cut it short.
    FtpTestFixture::SetSetting(g_strSettingFtpConnectTimeoutMs, 20000);
    // An anonymous-only server takes any password, so a wrong user stands in for it.
    if (server->User() == QLatin1String("anonymous"))
        FtpTestFixture::SetSetting(g_strSettingFtpUser, QStringLiteral("intruder"));
    else
        FtpTestFixture::SetSetting(g_strSettingFtpPassword, QStringLiteral("wrong-password"));
    const TaskOutcome outcome = FtpTestFixture::Run(new CheckConnect(FtpTestFixture::PlainUrl(QString())));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("登录")), qPrintable(outcome.message));
}

void TestFtpConnect::nothingListeningFails()
{
    FtpTestFixture::SetSetting(g_strSettingFtpPortMapping, FreeLoopbackPort());
    const TaskOutcome outcome = FtpTestFixture::Run(
        new ListFtpDirectory(FtpTestFixture::PlainUrl(QStringLiteral("/")), QString(), QStringLiteral("/")));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("无法连接")), qPrintable(outcome.message));
    QCOMPARE(outcome.listSignals, 1);
    QVERIFY(!FtpConnection(QStringLiteral("127.0.0.1")));
}

void TestFtpConnect::silentServerTimesOut()
{
    // Accepts connections (the kernel does) but never greets: the greeting is a reply, held to the
    // response time-out.
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
    FtpTestFixture::SetSetting(g_strSettingFtpPortMapping, silent.serverPort());
    FtpTestFixture::SetSetting(g_strSettingFtpConnectTimeoutMs, 500);
    FtpTestFixture::SetSetting(g_strSettingFtpResponseTimeoutMs, 1000);
    QElapsedTimer clock;
    clock.start();
    const TaskOutcome outcome = FtpTestFixture::Run(new CheckConnect(FtpTestFixture::PlainUrl(QString())), 10000);
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("超时")), qPrintable(outcome.message));
    QVERIFY(clock.elapsed() < 5000);
}

QTEST_GUILESS_MAIN(TestFtpConnect)
#include "tst_ftp_connect.moc"
