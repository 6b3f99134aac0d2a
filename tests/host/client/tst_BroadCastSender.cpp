#include "BroadCastSender.h"

#include <QNetworkDatagram>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>

// Discovery against fake machines on loopback. Discovery of the simulator is the workspace tests'
// business; tests send nothing beyond loopback.
class tst_BroadCastSender : public QObject
{
    Q_OBJECT
private slots:
    void ignoresNoiseAndRepeats();
    void stopsReadingWhenAListenerStopsDiscovery();
};

namespace {
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
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); // e.g. a read from the closed socket
    sender.startDiscovery(1000, 5000);
    QVERIFY(results.wait(5000));
    QTest::qWait(100);
    QCOMPARE(results.size(), 1);
}

QTEST_GUILESS_MAIN(tst_BroadCastSender)
#include "tst_BroadCastSender.moc"
