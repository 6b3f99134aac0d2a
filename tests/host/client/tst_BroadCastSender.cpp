#include "BroadCastSender.h"
#include "CncSimulator.h"

#include <QCoreApplication>
#include <QNetworkDatagram>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>
#include <unistd.h>

// Discovery of the simulator: on loopback always, and by real broadcast across a
// veth pair into a second network namespace where the machine allows it.
class tst_BroadCastSender : public QObject
{
    Q_OBJECT
private slots:
    void findsTheSimulatorOnLoopback();
    void ignoresNoiseAndRepeats();
    void stopsReadingWhenAListenerStopsDiscovery();
    void findsTheSimulatorInAnotherNamespace();
};

void tst_BroadCastSender::findsTheSimulatorOnLoopback()
{
    QTemporaryDir root;
    SimOptions options;
    options.rootDir = root.path();
    options.serialNumber = "PB01LOOP0001";
    options.interfaceName = "usb";
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    CncSimulator sim(options);
    QString error;
    QVERIFY2(sim.Start(&error), qPrintable(error));

    BroadCastSender sender;
    sender.SetDiscoveryPort(sim.DiscoveryPort());
    sender.SetInterfaceFilter({"lo"});
    QCOMPARE(sender.TargetAddresses(), QList<QHostAddress>{QHostAddress(QHostAddress::LocalHost)});
    QSignalSpy results(&sender, &BroadCastSender::discoveryResult);
    sender.startDiscovery(2000, 100);
    QVERIFY(sender.isDiscovering());
    QVERIFY(results.wait(5000));
    QTest::qWait(350); // several more rounds: the same answer is reported once
    QCOMPARE(results.size(), 1);
    const QStringList fields = results.first().first().toString().split('*');
    QCOMPARE(fields.value(1), QString("PB01LOOP0001"));
    QCOMPARE(fields.value(3), QString("127.0.0.1"));
    QCOMPARE(fields.value(5), QString("usb"));
    sender.stopDiscovery();
    QVERIFY(!sender.isDiscovering());
}

void tst_BroadCastSender::ignoresNoiseAndRepeats()
{
    // A fake responder that answers with junk, a short reply and then a real one twice.
    QUdpSocket responder;
    QVERIFY(responder.bind(QHostAddress::LocalHost, 0));
    connect(&responder, &QUdpSocket::readyRead, this, [&responder] {
        while (responder.hasPendingDatagrams()) {
            QHostAddress from;
            quint16 port = 0;
            QByteArray request(int(responder.pendingDatagramSize()), '\0');
            responder.readDatagram(request.data(), request.size(), &from, &port);
            for (const QByteArray& answer : {QByteArray("a*b*c"), QByteArray(600, '*'), QByteArray("\xff\xfe*x*y*z", 9),
                                             QByteArray("M*SN1*v*10.0.0.9"), QByteArray("M*SN1*v*10.0.0.9")})
                responder.writeDatagram(answer, from, port);
        }
    });
    BroadCastSender sender;
    sender.SetDiscoveryPort(responder.localPort());
    sender.SetInterfaceFilter({"lo"});
    QSignalSpy results(&sender, &BroadCastSender::discoveryResult);
    sender.startDiscovery(1000, 5000);
    QVERIFY(results.wait(5000));
    QTest::qWait(100);
    QCOMPARE(results.size(), 1);
    QCOMPARE(results.first().first().toString(), QString("M*SN1*v*10.0.0.9"));
}

namespace {
QStringList g_listWarnings;
} // namespace

void tst_BroadCastSender::stopsReadingWhenAListenerStopsDiscovery()
{
    // Two machines answer at once; the listener stops at the first, which closes the socket.
    QUdpSocket responder;
    QVERIFY(responder.bind(QHostAddress::LocalHost, 0));
    connect(&responder, &QUdpSocket::readyRead, this, [&responder] {
        while (responder.hasPendingDatagrams()) {
            const QNetworkDatagram request = responder.receiveDatagram();
            for (const QByteArray& answer : {QByteArray("M*SN1*v*10.0.0.1"), QByteArray("M*SN2*v*10.0.0.2")})
                responder.writeDatagram(answer, request.senderAddress(), request.senderPort());
        }
    });
    BroadCastSender sender;
    sender.SetDiscoveryPort(responder.localPort());
    sender.SetInterfaceFilter({"lo"});
    connect(&sender, &BroadCastSender::discoveryResult, &sender, &BroadCastSender::stopDiscovery);
    QSignalSpy results(&sender, &BroadCastSender::discoveryResult);
    g_listWarnings.clear();
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type != QtDebugMsg)
                g_listWarnings << text;
        });
    sender.startDiscovery(1000, 5000);
    const bool answered = results.wait(5000);
    QTest::qWait(100);
    qInstallMessageHandler(previous);
    QVERIFY(answered);
    QCOMPARE(results.size(), 1);
    QVERIFY2(g_listWarnings.isEmpty(), qPrintable(g_listWarnings.join('\n')));
}

namespace {
bool run(const QStringList& arguments)
{
    QProcess ip;
    ip.start("ip", arguments);
    return ip.waitForFinished(10000) && ip.exitStatus() == QProcess::NormalExit && ip.exitCode() == 0;
}
} // namespace

void tst_BroadCastSender::findsTheSimulatorInAnotherNamespace()
{
    if (geteuid() != 0)
        QSKIP("network namespaces need root");
    if (!run({"netns", "list"}))
        QSKIP("ip netns is not available");
    const int id = int(QCoreApplication::applicationPid() % 200) + 20;
    const QString ns = QString("korvtest%1").arg(QCoreApplication::applicationPid());
    const QString hostSide = QString("kvh%1").arg(id);
    const QString simSide = QString("kvs%1").arg(id);
    const QString subnet = QString("10.213.%1.").arg(id);
    if (!run({"netns", "add", ns}))
        QSKIP("cannot create a network namespace here");
    // The namespace's removal would take the pair with it, but only some time later:
    // the host end is removed at once so that nothing is left behind.
    struct Cleanup
    {
        QString ns;
        QString link;
        QProcess* sim = nullptr;
        ~Cleanup()
        {
            if (sim) {
                sim->terminate();
                if (!sim->waitForFinished(3000))
                    sim->kill();
                sim->waitForFinished(3000);
                delete sim;
            }
            run({"link", "del", link});
            run({"netns", "del", ns});
        }
    } cleanup{ns, hostSide};
    if (!run({"link", "add", hostSide, "type", "veth", "peer", "name", simSide}))
        QSKIP("cannot create a veth pair here");
    QVERIFY(run({"link", "set", simSide, "netns", ns}));
    QVERIFY(run({"addr", "add", subnet + "1/24", "dev", hostSide}));
    QVERIFY(run({"link", "set", hostSide, "up"}));
    QVERIFY(run({"netns", "exec", ns, "ip", "addr", "add", subnet + "2/24", "dev", simSide}));
    QVERIFY(run({"netns", "exec", ns, "ip", "link", "set", simSide, "up"}));
    QVERIFY(run({"netns", "exec", ns, "ip", "link", "set", "lo", "up"}));

    QTemporaryDir root;
    cleanup.sim = new QProcess;
    cleanup.sim->start("ip", {"netns", "exec", ns, qEnvironmentVariable("KORV_BINARY_DIR") + "/bin/cnc-sim", "--bind",
                              "0.0.0.0", "--root", root.path(), "--sn", "PB01NETNS001", "--interface", "wlan"});
    QVERIFY(cleanup.sim->waitForReadyRead(10000));
    QVERIFY(cleanup.sim->readAllStandardOutput().contains("ip=" + subnet.toUtf8() + "2"));

    BroadCastSender sender;
    sender.SetInterfaceFilter({hostSide});
    QVERIFY(sender.TargetAddresses().contains(QHostAddress(subnet + "255")));
    QSignalSpy results(&sender, &BroadCastSender::discoveryResult);
    sender.startDiscovery(5000, 200);
    // The namespace's link may need a moment to come up; later rounds retry.
    QVERIFY(QTest::qWaitFor(
        [&results] {
            for (const auto& arguments : results) {
                if (arguments.first().toString().contains("PB01NETNS001"))
                    return true;
            }
            return false;
        },
        8000));
    QStringList fields;
    for (const auto& arguments : results) {
        if (arguments.first().toString().contains("PB01NETNS001"))
            fields = arguments.first().toString().split('*');
    }
    QCOMPARE(fields.value(3), subnet + "2");
    QCOMPARE(fields.value(5), QString("wlan"));
}

QTEST_GUILESS_MAIN(tst_BroadCastSender)
#include "tst_BroadCastSender.moc"
