#include "CncSimulator.h"
#include "SimFrameCodec.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <memory>

// The serial-number, request/response and discovery services on the wire, and the
// cnc-sim program itself.
class tst_SimServices : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void serialNumber_data();
    void serialNumber();
    void brokenFrameClosesTheConnection_data();
    void brokenFrameClosesTheConnection();

private:
    QByteArray Exchange(quint16 port, const QList<QByteArray>& pieces);
    QJsonObject Request(QTcpSocket& socket, const QJsonObject& request);

    QTemporaryDir m_root;
    std::unique_ptr<CncSimulator> m_sim;
};

void tst_SimServices::init()
{
    SimOptions options;
    options.rootDir = m_root.path();
    options.serialNumber = "PB01TEST0001";
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    m_sim = std::make_unique<CncSimulator>(options);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));
}

void tst_SimServices::cleanup()
{
    m_sim.reset();
}

QByteArray tst_SimServices::Exchange(quint16 port, const QList<QByteArray>& pieces)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    if (!QTest::qWaitFor([&socket] { return socket.state() == QAbstractSocket::ConnectedState; }, 5000))
        return "<no connection>";
    for (const QByteArray& piece : pieces) {
        socket.write(piece);
        socket.flush();
        QTest::qWait(20);
    }
    QByteArray received;
    (void)QTest::qWaitFor(
        [&] {
            received += socket.readAll();
            return socket.state() != QAbstractSocket::ConnectedState || received.endsWith('}');
        },
        1000);
    return received;
}

void tst_SimServices::serialNumber_data()
{
    QTest::addColumn<QList<QByteArray>>("pieces");
    QTest::addColumn<int>("expectedCode");
    QTest::addColumn<QString>("expectedData");
    const QByteArray request = R"({"action":"GET_SN_FROM_3255"})";
    QTest::newRow("whole") << QList<QByteArray>{request} << 0 << "PB01TEST0001";
    QTest::newRow("split") << QList<QByteArray>{request.left(7), request.mid(7)} << 0 << "PB01TEST0001";
    QTest::newRow("unknown-action") << QList<QByteArray>{R"({"action":"REBOOT"})"} << 1 << "";
    QTest::newRow("not-json") << QList<QByteArray>{"{hello}"} << 2 << "";
}

void tst_SimServices::serialNumber()
{
    QFETCH(QList<QByteArray>, pieces);
    QFETCH(int, expectedCode);
    QFETCH(QString, expectedData);
    const QByteArray reply = Exchange(m_sim->SnPort(), pieces);
    // The workbench reads the answer as one JSON object: errorCode, msg, data.
    const QJsonObject answer = QJsonDocument::fromJson(reply).object();
    QVERIFY2(!answer.isEmpty(), reply.constData());
    QCOMPARE(answer.value("errorCode").toInt(-1), expectedCode);
    QCOMPARE(answer.value("data").toString(), expectedData);
    QVERIFY(answer.value("msg").isString());
    if (expectedCode != 0)
        QVERIFY(!answer.value("msg").toString().isEmpty());
}

QJsonObject tst_SimServices::Request(QTcpSocket& socket, const QJsonObject& request)
{
    socket.write(SimFrameCodec::Encode(request));
    SimFrameCodec codec;
    QList<QByteArray> frames;
    (void)QTest::qWaitFor(
        [&] {
            frames += codec.Feed(socket.readAll());
            return !frames.isEmpty();
        },
        5000);
    return frames.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(frames.first()).object();
}

void tst_SimServices::brokenFrameClosesTheConnection_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("zero-length") << QByteArray(4, '\0');
    QTest::newRow("oversized") << QByteArray::fromHex("7fffffff");
    QByteArray notJson = QByteArray::fromHex("00000003") + "abc";
    QTest::newRow("not-json") << notJson;
    QTest::newRow("json-array") << QByteArray::fromHex("00000002") + "[]";
}

void tst_SimServices::brokenFrameClosesTheConnection()
{
    QFETCH(QByteArray, bytes);
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_sim->InfoPort());
    QVERIFY(socket.waitForConnected(5000));
    socket.write(bytes);
    QVERIFY(QTest::qWaitFor([&socket] { return socket.state() == QAbstractSocket::UnconnectedState; }, 5000));
}

QTEST_GUILESS_MAIN(tst_SimServices)
#include "tst_SimServices.moc"
