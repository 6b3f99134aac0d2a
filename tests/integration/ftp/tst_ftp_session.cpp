#include "CncSimServer.h"
#include "FtpTestFixture.h"
#include "TestTempDir.h"

#include <CDebugLog.h>
#include <DeleteFTPFile.h>
#include <DownloadToLocal.h>
#include <FtpSession.h>
#include <FtpSessionBudget.h>
#include <FtpTemporaryName.h>
#include <KorvBaseGlobals.h>
#include <ListFtpDirectory.h>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <UploadToFtp.h>
#include <algorithm>
#include <memory>

// What a user reads when an FTP task fails against the machine simulator, how fast small
// programs move (the simulator adds no latency of its own, and no step stalls), and the FTP
// servers of real controllers that the tasks must get along with.
class TestFtpSession : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void failureInOwnWords_data();
    void failureInOwnWords();
    void smallUploadsKeepPace();
    void cachedLoginIsGreetedOnce();
    void staleLoginIsRedone_data();
    void staleLoginIsRedone(); // before any test that teaches a limit
    void loginLimitAfterPassword_data();
    void loginLimitAfterPassword();
    void learnedLimitIsProbedAgain();
    void slowGreetingWithinResponseTime();
    void temporaryNamesObeyTheNameRules();
    void sizeCheckFindsHiddenTemporaryFile_data();
    void sizeCheckFindsHiddenTemporaryFile();
    void activeModeWhenPassiveIsRefused();
    void listedSizeSavesTheAskNotTheCheck_data();
    void listedSizeSavesTheAskNotTheCheck();

private:
    // The simulator as the FTP settings' target; null (test failed) when it does not start.
    std::unique_ptr<CncSimServer> StartSim(const QStringList& switches);
    bool LogHas(const QByteArray& text) const;
    FtpTaskThread* Upload(const QString& remote, const QByteArray& bytes);
    FtpTaskThread* Download(const QString& remote, qint64 listedSize = -1);
    static TaskOutcome ListRoot();

    FtpTestFixture m_fixture; // private settings folder
    TestTempDir m_local;
};

void TestFtpSession::init()
{
    QFile::remove(CDebugLog::LogFilePath()); // each row finds its own log lines
    FtpNameRules::Save(QStringLiteral("127.0.0.1"), FtpNameRules());
}

void TestFtpSession::failureInOwnWords_data()
{
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<bool>("bUpload");
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QStringList>("words"); // and the server's reply, where it gave one
    const auto row = [](const char* tag, const QStringList& faults, bool bUpload, const char* setup,
                        const QStringList& words) { QTest::newRow(tag) << faults << bUpload << setup << words; };
    // Refused connections and logins are the connection tests' business.
    row("remote-file-not-found", {}, false, "missing-file", {"远程文件不存在", "服务器回复：550"});
    row("timed-out", {"--ftp-latency", "2500"}, false, "short-timeout", {"FTP服务器响应超时"});
    row("disk-full-while-sending", {"--ftp-disk-full", "65536"}, true, "", {"服务器存储空间不足", "服务器回复：552"});
    row("connection-cut", {"--ftp-drop-after", "65536"}, false, "", {"FTP连接中断"});
    row("passive-and-active-refused", {"--no-passive", "--ftp-refuse", "EPRT", "--ftp-refuse", "PORT"}, false, "",
        {"下载文件失败：机床拒绝了被动模式，主动模式也未成功", "服务器回复：550"});
    // The rename of the finished upload onto the target is refused: named after RNTO, not RNFR.
    row("rename-refused", {"--ftp-refuse", "RNTO"}, true, "", {"RNTO失败", "服务器回复：550"});
}

void TestFtpSession::failureInOwnWords()
{
    QFETCH(QStringList, faults);
    QFETCH(bool, bUpload);
    QFETCH(QString, setup);
    QFETCH(QStringList, words);
    auto sim = StartSim(faults);
    QVERIFY(sim);
    const QByteArray big(8 * 1024 * 1024, 'g');
    QVERIFY(sim->WriteFile(QStringLiteral("/big.nc"), big));
    if (setup == "short-timeout")
        FtpTestFixture::SetSetting(g_strSettingFtpResponseTimeoutMs, 1000);

    const QString remote = setup == "missing-file" ? QStringLiteral("/missing.nc") : QStringLiteral("/big.nc");
    const TaskOutcome outcome = FtpTestFixture::Run(bUpload ? Upload(remote, big) : Download(remote));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    for (const QString& word : words)
        QVERIFY2(outcome.message.contains(word), qPrintable(outcome.message));
    // libcurl's English stays out of the user's text (the server's own reply may be English) ...
    QString ownText = outcome.message;
    ownText.remove(QRegularExpression(QStringLiteral("（服务器回复：[^）]*）")));
    ownText.remove(QRegularExpression(QStringLiteral("^[A-Z]{3,4}失败"))); // a step named by its FTP command
    QVERIFY2(!ownText.contains(QRegularExpression(QStringLiteral("[A-Za-z]{4,}"))), qPrintable(outcome.message));
    QVERIFY(LogHas(" failed: curl ")); // ... and goes to the debug log
}

// A delayed acknowledgement costs 40 ms per upload and the data-connection stall a second; both
// stand far above these bounds, which leave room for a loaded machine (the sanitizer builds
// stretch the median bound by KORV_TIME_FACTOR). The simulator's own latency is its tests' business.
void TestFtpSession::smallUploadsKeepPace()
{
    CncSimServer sim;
    QVERIFY2(sim.Start(), qPrintable(sim.ErrorString()));
    FtpSettings settings;
    settings.user = sim.User();
    settings.password = sim.Password();
    FtpSession session(QStringLiteral("127.0.0.1"), sim.Port(), settings);
    QVERIFY2(session.Connect(), qPrintable(session.ErrorMessage()));
    QByteArray program(20 * 1024, 'p');
    QList<qint64> times;
    for (int i = 0; i < 200; ++i) {
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
    QVERIFY2(median <= 20 * factor, qPrintable(figures));
    QVERIFY2(times.last() < 900, qPrintable(figures));
    QCOMPARE(QFileInfo(sim.LocalPath(QStringLiteral("/p0.nc"))).size(), program.size());
}

// Tasks one after another take the login the one before left, also after it sat idle for longer
// than the response time-out and after the libcurl handles that carried it were retired (more tasks
// than one multi handle serves): only a new connection is asked FEAT and OPTS, and a step's
// commands run where the connection is, without a walk through "/".
void TestFtpSession::cachedLoginIsGreetedOnce()
{
    auto sim = StartSim({});
    QVERIFY(sim);
    FtpTestFixture::SetSetting(g_strSettingFtpResponseTimeoutMs, 1000);
    QVERIFY(sim->MakeDir(QStringLiteral("/sub")));
    constexpr int Tasks = 70;
    for (int i = 0; i < Tasks; ++i) {
        if (i == 2)
            QTest::qWait(1500);
        const TaskOutcome outcome = FtpTestFixture::Run(Upload(QStringLiteral("/sub/p%1.nc").arg(i), "G0 X1\n"));
        QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    }
    const QMap<QString, qint64> counts = sim->CommandCounts();
    QCOMPARE(counts.value(QStringLiteral("USER")), 1);
    QCOMPARE(counts.value(QStringLiteral("FEAT")), 1);
    QCOMPARE(counts.value(QStringLiteral("OPTS")), 1);
    QCOMPARE(counts.value(QStringLiteral("CWD")), 1);
    QCOMPARE(counts.value(QStringLiteral("RNTO")), Tasks);
    QCOMPARE(QDir(sim->LocalPath(QStringLiteral("/sub"))).entryList(QDir::Files).size(), Tasks);
}

std::unique_ptr<CncSimServer> TestFtpSession::StartSim(const QStringList& switches)
{
    auto sim = std::make_unique<CncSimServer>(switches);
    if (!sim->Start()) {
        QTest::qFail(qPrintable(sim->ErrorString()), __FILE__, __LINE__);
        return nullptr;
    }
    FtpTestFixture::SetSetting(g_strSettingFtpUser, sim->User());
    FtpTestFixture::SetSetting(g_strSettingFtpPassword, sim->Password());
    FtpTestFixture::SetSetting(g_strSettingFtpPortMapping, int(sim->Port()));
    FtpTestFixture::SetSetting(g_strSettingFtpConnectTimeoutMs, 5000);
    FtpTestFixture::SetSetting(g_strSettingFtpResponseTimeoutMs, 15000);
    return sim;
}

bool TestFtpSession::LogHas(const QByteArray& text) const
{
    QFile log(CDebugLog::LogFilePath());
    return log.open(QIODevice::ReadOnly) && log.readAll().contains(text);
}

FtpTaskThread* TestFtpSession::Upload(const QString& remote, const QByteArray& bytes)
{
    return new UploadToFtp(FtpTestFixture::PlainUrl(remote), FtpTestFixture::EncodedUrl(remote),
                           m_local.CreateFile(QStringLiteral("up.nc"), bytes));
}

FtpTaskThread* TestFtpSession::Download(const QString& remote, qint64 listedSize)
{
    return new DownloadToLocal(FtpTestFixture::PlainUrl(remote), FtpTestFixture::EncodedUrl(remote),
                               m_local.FilePath(QStringLiteral("down.nc")), listedSize);
}

TaskOutcome TestFtpSession::ListRoot()
{
    return FtpTestFixture::Run(
        new ListFtpDirectory(FtpTestFixture::PlainUrl("/"), FtpTestFixture::EncodedUrl("/"), QStringLiteral("/")));
}

void TestFtpSession::loginLimitAfterPassword_data()
{
    QTest::addColumn<QString>("reply");
    QTest::newRow("421") << "421";
    QTest::newRow("530") << "530";
}

// Greeted, then turned away at PASS while another client holds the one login: the task waits for
// it as for a 421 greeting, and the machine's limit is learned.
void TestFtpSession::loginLimitAfterPassword()
{
    QFETCH(QString, reply);
    auto sim = StartSim({"--max-sessions", "1", "--login-limit-reply", reply});
    QVERIFY(sim);
    QVERIFY(sim->WriteFile(QStringLiteral("/a.nc"), "G0 X1\n"));
    // Another program on the shop floor holds the login for a moment.
    auto other = std::make_unique<QTcpSocket>();
    other->connectToHost(QHostAddress::LocalHost, sim->Port());
    QVERIFY(other->waitForConnected(5000));
    other->write(QStringLiteral("USER %1\r\nPASS %2\r\n").arg(sim->User(), sim->Password()).toUtf8());
    QByteArray replies;
    while (!replies.contains("230") && other->waitForReadyRead(5000))
        replies += other->readAll();
    QVERIFY2(replies.contains("230"), replies.constData());
    QTimer::singleShot(700, other.get(), [&other] { other->disconnectFromHost(); });
    const TaskOutcome outcome = FtpTestFixture::Run(Download(QStringLiteral("/a.nc")));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(other->state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(FtpSessionBudget::Instance().Limit(QStringLiteral("127.0.0.1")), 1);
}

void TestFtpSession::learnedLimitIsProbedAgain()
{
    // Bookkeeping only: the host name is a key, nothing is sent to it.
    const QString host = QStringLiteral("probe.invalid");
    FtpSessionBudget& budget = FtpSessionBudget::Instance();
    budget.SetProbeInterval(std::chrono::milliseconds(200));
    QVERIFY(budget.Acquire(host, {}));
    QVERIFY(budget.Acquire(host, {}));
    budget.LearnRefusal(host);
    budget.Release(host);
    QCOMPARE(budget.Limit(host), 1);
    // The second login waits for the probe time instead of for a free one, then is let through.
    QElapsedTimer clock;
    clock.start();
    QVERIFY(budget.Acquire(host, {}));
    QVERIFY(clock.elapsed() >= 150);
    QCOMPARE(budget.Limit(host), 2);
    budget.Release(host);
    budget.Release(host);
    budget.SetProbeInterval(std::chrono::seconds(30));
}

void TestFtpSession::staleLoginIsRedone_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("idle-timeout-421") << QStringList{"--stale-idle-421", "--idle-timeout", "1"};
    QTest::newRow("machine-restarted") << QStringList{"--reset-idle-after", "1"};
}

// A controller's idle time-out leaves its 421 on the cached connection, and a machine restarted
// while our login sat idle resets the next command: neither is a full machine. Steps that change
// nothing go again on a new connection; a DELE is checked against the folder first.
void TestFtpSession::staleLoginIsRedone()
{
    QFETCH(QStringList, switches);
    auto sim = StartSim(switches);
    QVERIFY(sim);
    QVERIFY(sim->WriteFile(QStringLiteral("/old.nc"), "M30\n"));
    QVERIFY(sim->WriteFile(QStringLiteral("/keep.nc"), "M30\n"));
    QVERIFY(ListRoot().bOk);
    QTest::qWait(1500);
    TaskOutcome outcome = ListRoot();
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QVERIFY(outcome.Entry(QStringLiteral("keep.nc")));
    QCOMPARE(FtpSessionBudget::Instance().Limit(QStringLiteral("127.0.0.1")), 0);
    QTest::qWait(1500);
    outcome = FtpTestFixture::Run(new DeleteFTPFile(FtpTestFixture::PlainUrl("/old.nc"),
                                                    FtpTestFixture::EncodedUrl("/old.nc"), QStringLiteral("/old.nc")));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QVERIFY(!QFile::exists(sim->LocalPath(QStringLiteral("/old.nc"))));
}

void TestFtpSession::slowGreetingWithinResponseTime()
{
    auto sim = StartSim({"--greeting-delay", "1500"});
    QVERIFY(sim);
    FtpTestFixture::SetSetting(g_strSettingFtpConnectTimeoutMs, 1000);
    const TaskOutcome outcome = ListRoot();
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
}

// A store that takes only upper-case 8.3 names, and renames nothing onto an existing name (so the
// old program is set aside under a second temporary name).
void TestFtpSession::temporaryNamesObeyTheNameRules()
{
    auto sim = StartSim({"--name-rule", "8.3", "--rnto-overwrite", "refuse550"});
    QVERIFY(sim);
    FtpNameRules rules;
    rules.bEightDotThree = true;
    rules.allowedCharacters = QStringLiteral("A-Z0-9_.");
    FtpNameRules::Save(QStringLiteral("127.0.0.1"), rules);
    for (const QByteArray& bytes : {QByteArray(3000, 'a'), QByteArray(2000, 'b')}) {
        const TaskOutcome outcome = FtpTestFixture::Run(Upload(QStringLiteral("/PROG1.NC"), bytes));
        QVERIFY2(outcome.bOk, qPrintable(outcome.message));
        QFile stored(sim->LocalPath(QStringLiteral("/PROG1.NC")));
        QVERIFY(stored.open(QIODevice::ReadOnly));
        QCOMPARE(stored.readAll(), bytes);
    }
    QCOMPARE(QDir(sim->RootDir()).entryList(QDir::Files | QDir::Hidden), QStringList{"PROG1.NC"});

    // The names carry this installation's marker and no other's, and never repeat a name in the folder.
    const QString marker = FtpTemporaryName::InstallationMarker();
    const QString hidden = FtpTemporaryName::Make(QStringLiteral("prog 1.nc"), FtpNameRules(), marker);
    QVERIFY(FtpTemporaryName::IsOurs(hidden, marker));
    QVERIFY(!FtpTemporaryName::IsOurs(hidden, marker == "zzzz" ? "yyyy" : "zzzz"));
    QVERIFY(!FtpTemporaryName::IsOurs(QStringLiteral("PROG1.NC"), marker));
    FtpNameRules six;
    six.maxLength = 6;
    QCOMPARE(FtpTemporaryName::Make(QStringLiteral("A.NC"), six, marker).size(), 6);
}

void TestFtpSession::sizeCheckFindsHiddenTemporaryFile_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("by-mlst") << QStringList{"--no-size", "--hide-dotfiles"};
    QTest::newRow("by-list-of-the-name") << QStringList{"--no-size", "--no-mlsd", "--hide-dotfiles"};
}

void TestFtpSession::sizeCheckFindsHiddenTemporaryFile()
{
    QFETCH(QStringList, switches);
    auto sim = StartSim(switches);
    QVERIFY(sim);
    const QByteArray bytes(100 * 1024, 'h');
    const TaskOutcome outcome = FtpTestFixture::Run(Upload(QStringLiteral("/hidden.nc"), bytes));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(QFileInfo(sim->LocalPath(QStringLiteral("/hidden.nc"))).size(), bytes.size());
}

void TestFtpSession::activeModeWhenPassiveIsRefused()
{
    auto sim = StartSim({"--no-passive"});
    QVERIFY(sim);
    const QByteArray bytes(300 * 1024, 'x');
    TaskOutcome outcome = FtpTestFixture::Run(Upload(QStringLiteral("/active.nc"), bytes));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QVERIFY(LogHas("passive mode refused"));
    // The next task starts in active mode at once.
    QFile::remove(CDebugLog::LogFilePath());
    outcome = FtpTestFixture::Run(Download(QStringLiteral("/active.nc")));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QFile back(m_local.FilePath("down.nc"));
    QVERIFY(back.open(QIODevice::ReadOnly));
    QCOMPARE(back.readAll(), bytes);
    QVERIFY(!LogHas("passive mode refused"));
}

void TestFtpSession::listedSizeSavesTheAskNotTheCheck_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<qint64>("listedSize");
    QTest::addColumn<bool>("bComplete");
    QTest::addColumn<int>("sizeCommands");
    const qint64 size = 64 * 1024;
    QTest::newRow("as listed: no SIZE") << QStringList() << size << true << 0;
    QTest::newRow("changed since listed: SIZE settles it") << QStringList() << size / 2 << true << 1;
    QTest::newRow("sent short with 226, as listed") << QStringList{"--send-short-at", "1000"} << size << false << 1;
    QTest::newRow("sent short with 226, not listed")
        << QStringList{"--send-short-at", "1000"} << qint64(-1) << false << 1;
}

// A download with the size its folder's listing showed skips the SIZE before RETR, yet a machine
// that sends less and still answers 226 leaves no file, as without one.
void TestFtpSession::listedSizeSavesTheAskNotTheCheck()
{
    QFETCH(QStringList, switches);
    QFETCH(qint64, listedSize);
    QFETCH(bool, bComplete);
    QFETCH(int, sizeCommands);
    auto sim = StartSim(switches);
    QVERIFY(sim);
    const QByteArray program = QByteArray(64 * 1024, 'p');
    QFile machine(sim->LocalPath(QStringLiteral("/listed.nc")));
    QVERIFY(machine.open(QIODevice::WriteOnly) && machine.write(program) == program.size());
    machine.close();
    const QString local = m_local.FilePath(QStringLiteral("down.nc"));
    QFile::remove(local);
    const TaskOutcome outcome = FtpTestFixture::Run(Download(QStringLiteral("/listed.nc"), listedSize));
    QCOMPARE(outcome.bOk, bComplete);
    QCOMPARE(sim->CommandCounts().value(QStringLiteral("SIZE")), sizeCommands);
    if (bComplete) {
        QFile down(local);
        QVERIFY(down.open(QIODevice::ReadOnly));
        QCOMPARE(down.readAll(), program);
    } else {
        QVERIFY(!QFileInfo::exists(local));
        QCOMPARE(QDir(m_local.Path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral(".part")).size(), 0);
    }
}

QTEST_GUILESS_MAIN(TestFtpSession)
#include "tst_ftp_session.moc"
