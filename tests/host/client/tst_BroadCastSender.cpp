#include "BroadCastSender.h"

#include <QCoreApplication>
#include <QNetworkDatagram>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>
#include <unistd.h>

// Discovery against fake machines on loopback, and of the simulator by real broadcast across a
// veth pair into a second network namespace where the machine allows it. (Loopback discovery of
// the simulator itself is the workspace tests' business.)
class tst_BroadCastSender : public QObject
{
    Q_OBJECT
private slots:
    void ignoresNoiseAndRepeats();
    void stopsReadingWhenAListenerStopsDiscovery();
    void findsTheSimulatorInAnotherNamespace();
};

namespace {
QStringList g_listWarnings;

// Answers every discovery request with the same datagrams, and counts the requests.
struct FakeMachines
{
    QUdpSocket socket;
    int rounds = 0;

    explicit FakeMachines(const QList<QByteArray>& answers)
    {
        socket.bind(QHostAddress::LocalHost, 0);
        QObject::connect(&socket, &QUdpSocket::readyRead, &socket, [this, answers] {
            while (socket.hasPendingDatagrams()) {
                ++rounds;
                const QNetworkDatagram request = socket.receiveDatagram();
                for (const QByteArray& answer : answers)
                    socket.writeDatagram(answer, request.senderAddress(), request.senderPort());
            }
        });
    }
    void Aim(BroadCastSender& sender) const
    {
        sender.SetDiscoveryPort(socket.localPort());
        sender.SetInterfaceFilter({"lo"});
    }
};
} // namespace

void tst_BroadCastSender::ignoresNoiseAndRepeats()
{
    // Junk, a short reply and then a real one twice, every round.
    FakeMachines machine({QByteArray("a*b*c"), QByteArray(600, '*'), QByteArray("\xff\xfe*x*y*z", 9),
                          QByteArray("M*SN1*v*10.0.0.9"), QByteArray("M*SN1*v*10.0.0.9")});
    BroadCastSender sender;
    machine.Aim(sender);
    QSignalSpy results(&sender, &BroadCastSender::discoveryResult);
    sender.startDiscovery(5000, 50);
    QVERIFY(QTest::qWaitFor([&machine] { return machine.rounds >= 4; }, 5000));
    QCOMPARE(results.size(), 1);
    QCOMPARE(results.first().first().toString(), QString("M*SN1*v*10.0.0.9"));
}

void tst_BroadCastSender::stopsReadingWhenAListenerStopsDiscovery()
{
    // Two machines answer at once; the listener stops at the first, which closes the socket.
    FakeMachines machines({QByteArray("M*SN1*v*10.0.0.1"), QByteArray("M*SN2*v*10.0.0.2")});
    BroadCastSender sender;
    machines.Aim(sender);
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
    QStringList fields;
    QVERIFY(QTest::qWaitFor(
        [&] {
            for (const auto& arguments : results) {
                if (arguments.first().toString().contains("PB01NETNS001"))
                    fields = arguments.first().toString().split('*');
            }
            return !fields.isEmpty();
        },
        8000));
    QCOMPARE(fields.value(3), subnet + "2");
    QCOMPARE(fields.value(5), QString("wlan"));
}

QTEST_GUILESS_MAIN(tst_BroadCastSender)
#include "tst_BroadCastSender.moc"
