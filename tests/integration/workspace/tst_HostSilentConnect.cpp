#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

// What a user sees on start: the host loads the workbench, which finds the machine it
// used last time by discovery and connects to it without being asked.
class TestHostSilentConnect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectsToTheLastMachineOnStart()
    {
        QTemporaryDir root;
        QTemporaryDir config;
        QVERIFY(root.isValid() && config.isValid());

        QProcess sim;
        sim.start(QStringLiteral(CNC_SIM_EXE), {"--root", root.path(), "--ftp-port", "0", "--info-port", "0",
                                                "--sn-port", "0", "--discovery-port", "0", "--sn", "PB01HOST01"});
        QVERIFY(sim.waitForStarted());
        QVERIFY(QTest::qWaitFor([&]() { return sim.canReadLine(); }, 10000));
        const QString ready = QString::fromUtf8(sim.readLine());
        const QRegularExpressionMatch ports =
            QRegularExpression(QStringLiteral("ftp=(\\d+) info=(\\d+) sn=(\\d+) discovery=(\\d+)")).match(ready);
        QVERIFY2(ports.hasMatch(), qPrintable(ready));

        {
            QSettings settings(config.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
            settings.setValue(QStringLiteral("Ftp/PortMapping"), ports.captured(1).toInt());
            settings.setValue(QStringLiteral("PortMap/30001"), ports.captured(2).toInt());
            settings.setValue(QStringLiteral("PortMap/5002"), ports.captured(3).toInt());
            settings.setValue(QStringLiteral("PortMap/30002"), ports.captured(4).toInt());
            settings.setValue(QStringLiteral("Machine/LastConnectMachineSN"), QStringLiteral("PB01HOST01"));
        }

        const QString shot = config.filePath(QStringLiteral("shot.png"));
        QProcess korv;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("KORV_CONFIG_DIR"), config.path());
        korv.setProcessEnvironment(env);
        korv.start(QStringLiteral(KORV_EXE), {"--screenshot", shot, "--screenshot-delay", "2500"});
        QVERIFY(korv.waitForFinished(60000));
        QCOMPARE(korv.exitCode(), 0);
        sim.kill();
        sim.waitForFinished();

        QVERIFY(!QImage(shot).isNull());
        QFile log(config.filePath(QStringLiteral("debug.log")));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(log.readAll());
        QVERIFY2(text.contains(QStringLiteral("工作台操作通知: type=6, wType=5")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("静默连接机床result:1,ip:")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("sn:PB01HOST01")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("设备信息获取成功")), qPrintable(text));
    }
};

QTEST_GUILESS_MAIN(TestHostSilentConnect)
#include "tst_HostSilentConnect.moc"
