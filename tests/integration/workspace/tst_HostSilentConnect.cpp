#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

// The host application with the real plug-in, against the simulator as a child process:
// what a user sees on start, and how long the window takes to go when closed.
class TestHostSilentConnect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void exitsQuicklyInEveryState_data();
    void exitsQuicklyInEveryState();

private:
    // Starts cnc-sim and writes korv's settings so that it finds it; the FTP port may be replaced.
    bool StartMachine(const QStringList& faults, const QString& savedSn, quint16 ftpPort = 0);
    // Runs korv until it saved its screenshot after delayMs and quit; returns the ms it took to exit.
    qint64 RunKorv(int delayMs);
    QString DebugLog() const;

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<QTemporaryDir> m_config;
    QProcess m_sim;
};

void TestHostSilentConnect::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    m_config = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid() && m_config->isValid());
}

void TestHostSilentConnect::cleanup()
{
    m_sim.kill();
    m_sim.waitForFinished();
}

bool TestHostSilentConnect::StartMachine(const QStringList& faults, const QString& savedSn, quint16 ftpPort)
{
    m_sim.start(QStringLiteral(CNC_SIM_EXE),
                QStringList{"--root", m_root->path(), "--ftp-port", "0", "--info-port", "0", "--sn-port", "0",
                            "--discovery-port", "0", "--sn", "PB01HOST01"} +
                    faults);
    if (!m_sim.waitForStarted() || !QTest::qWaitFor([&]() { return m_sim.canReadLine(); }, 10000))
        return false;
    const QString ready = QString::fromUtf8(m_sim.readLine());
    const QRegularExpressionMatch ports =
        QRegularExpression(QStringLiteral("ftp=(\\d+) info=(\\d+) sn=(\\d+) discovery=(\\d+)")).match(ready);
    if (!ports.hasMatch())
        return false;
    QSettings settings(m_config->filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("Ftp/PortMapping"), ftpPort ? int(ftpPort) : ports.captured(1).toInt());
    settings.setValue(QStringLiteral("PortMap/30001"), ports.captured(2).toInt());
    settings.setValue(QStringLiteral("PortMap/5002"), ports.captured(3).toInt());
    settings.setValue(QStringLiteral("PortMap/30002"), ports.captured(4).toInt());
    settings.setValue(QStringLiteral("Machine/LastConnectMachineSN"), savedSn);
    return true;
}

qint64 TestHostSilentConnect::RunKorv(int delayMs)
{
    const QString shot = m_config->filePath(QStringLiteral("shot.png"));
    QProcess korv;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("KORV_CONFIG_DIR"), m_config->path());
    korv.setProcessEnvironment(env);
    korv.start(QStringLiteral(KORV_EXE),
               {"--lang", "zh", "--screenshot", shot, "--screenshot-delay", QString::number(delayMs)});
    // The screenshot is written just before the window closes.
    QElapsedTimer closing;
    while (!QFile::exists(shot) && korv.state() != QProcess::NotRunning)
        QTest::qWait(5);
    closing.start();
    korv.waitForFinished(60000);
    const qint64 exitMs = closing.elapsed();
    // A normal run keeps the plug-in's developer chatter off the console.
    const QByteArray console = korv.readAllStandardOutput() + korv.readAllStandardError();
    if (korv.exitStatus() != QProcess::NormalExit || korv.exitCode() != 0 || QImage(shot).isNull() ||
        console.contains("[CamPluginFile]"))
        return -1;
    return exitMs;
}

QString TestHostSilentConnect::DebugLog() const
{
    QFile log(m_config->filePath(QStringLiteral("debug.log")));
    return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
}

void TestHostSilentConnect::exitsQuicklyInEveryState_data()
{
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<bool>("ftpNeverGreets");
    QTest::addColumn<int>("delayMs");
    QTest::addColumn<QString>("reached");
    QTest::newRow("no machine") << QStringList() << false << 1000 << QString();
    QTest::newRow("connecting to a machine that never greets")
        << QStringList() << true << 2500 << QStringLiteral("正在查找上次连接的机床");
    QTest::newRow("connected to a machine gone silent") << QStringList{"--vanish-after", "3", "--vanish-silent"}
                                                        << false << 6000 << QStringLiteral("静默连接机床result:1,ip:");
}

void TestHostSilentConnect::exitsQuicklyInEveryState()
{
    QFETCH(QStringList, faults);
    QFETCH(bool, ftpNeverGreets);
    QFETCH(int, delayMs);
    QFETCH(QString, reached);
    // Accepts connections and never says a word: FTP log-ins hang until their time-out.
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    QVERIFY(StartMachine(faults, reached.isEmpty() ? QString() : QStringLiteral("PB01HOST01"),
                         ftpNeverGreets ? silent.serverPort() : 0));

    const qint64 exitMs = RunKorv(delayMs);
    QVERIFY(exitMs >= 0);
    QVERIFY2(DebugLog().contains(reached), qPrintable(DebugLog()));
    qInfo("korv exited %lld ms after its window closed", static_cast<long long>(exitMs));
    QVERIFY2(exitMs < 1500, qPrintable(QString::number(exitMs)));
}

QTEST_GUILESS_MAIN(TestHostSilentConnect)
#include "tst_HostSilentConnect.moc"
