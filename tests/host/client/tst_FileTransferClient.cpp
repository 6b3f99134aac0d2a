#include "CncSimulator.h"
#include "FileTransferClient.h"
#include "FtpSettings.h"
#include "MachineFrameDecoder.h"
#include "SimMachine.h"

#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

// The machine client against the simulator, and against a raw socket that sends
// what no machine should. Records of a running program are the status page's tests' business.
class tst_FileTransferClient : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void foreignBytesInRecordsKeepTheConnection();
    void unansweredRequestFailsAloneAfterTheTimeout();
    void connectionEndFailsWhatIsPending_data();
    void connectionEndFailsWhatIsPending();
    void refusedConnectionAndRequestsWithoutOne();
    void rawFrames_data();
    void rawFrames();

private:
    bool Connect(FileTransferClient& client, quint16 port);

    QTemporaryDir m_config;
    QTemporaryDir m_root;
    std::unique_ptr<CncSimulator> m_sim;
};

void tst_FileTransferClient::initTestCase()
{
    qputenv("KORV_CONFIG_DIR", m_config.path().toUtf8());
    QFile program(m_root.filePath("part.nc"));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("G90 G21\nG0 X0 Y0 Z50\nS8000 M3\nG1 X100 Y100 Z0 F1200\nG1 X0 Y0\nM30\n");
}

void tst_FileTransferClient::init()
{
    SimOptions options;
    options.rootDir = m_root.path();
    options.serialNumber = "PB03CLIENT01";
    options.sysVersion = "1.4.6";
    options.fwVersion = "3.1.4";
    options.runProgram = "part.nc";
    options.timeScale = 20;
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    m_sim = std::make_unique<CncSimulator>(options);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));
}

void tst_FileTransferClient::cleanup()
{
    m_sim.reset();
}

bool tst_FileTransferClient::Connect(FileTransferClient& client, quint16 port)
{
    QSignalSpy status(&client, &FileTransferClient::SignalTcpConnectStatus);
    if (!client.connectToMachine("127.0.0.1", port) || !status.wait(5000))
        return false;
    return status.first().first().toBool() && client.isConnected();
}

// A controller set to GBK writes program names in GBK, and a failed sensor as NaN: the name is
// read in the machine's encoding, the NaN record alone is lost.
void tst_FileTransferClient::foreignBytesInRecordsKeepTheConnection()
{
    QFile::copy(m_root.filePath("part.nc"), m_root.filePath("零件.nc"));
    QString error;
    QVERIFY2(m_sim->Machine().Stop(&error) && m_sim->Machine().StartProgram("/零件.nc", &error), qPrintable(error));
    m_sim->Options().recordEncoding = "gbk";
    FtpSettings::SetNameEncodingFor("127.0.0.1", "GBK");
    FileTransferClient client;
    QVERIFY(Connect(client, m_sim->InfoPort()));
    FtpSettings::SetNameEncodingFor("127.0.0.1", "UTF-8");
    QSignalSpy data(&client, &FileTransferClient::SignalGetMachineRealTimeData);
    const auto answeredOk = [&] {
        return client.GetMachineRealTimeData() && data.wait(5000) && data.last().at(0).toBool();
    };
    QVERIFY(answeredOk());
    QCOMPARE(data.last().at(1).value<StructRealTimeData>().program.name, QString("零件.nc"));
    m_sim->Options().recordNan = true;
    QVERIFY(!answeredOk());
    m_sim->Options().recordNan = false;
    QVERIFY(answeredOk());
    QVERIFY(client.isConnected());
}

void tst_FileTransferClient::unansweredRequestFailsAloneAfterTheTimeout()
{
    m_sim->Options().realTimeSilent = true;
    FileTransferClient client;
    client.SetRequestTimeout(300);
    QVERIFY(Connect(client, m_sim->InfoPort()));
    QSignalSpy data(&client, &FileTransferClient::SignalGetMachineRealTimeData);
    QSignalSpy info(&client, &FileTransferClient::SignalGetMachineInfoFinished);
    QVERIFY(client.GetMachineRealTimeData());
    QVERIFY(client.GetMachineInfo());
    // The information request is still answered, field by field; only the silent one fails.
    QVERIFY(info.wait(5000));
    QVERIFY(info.first().at(0).toBool());
    const auto system = info.first().at(1).value<StructMachineSystemInfo>();
    const auto net = info.first().at(2).value<StructMachineNetInfo>();
    QCOMPARE(
        (QStringList{system.sn, system.SysVer, system.FwVer, system.ProbeSendVer, system.ProbeRecvVer, system.CameraVer,
                     net.eth.ip, net.eth.mask, net.wlan.ip}),
        (QStringList{"PB03CLIENT01", "1.4.6", "3.1.4", "1.0.3", "1.0.5", "0.9.8", "127.0.0.1", "255.255.255.0", ""}));
    QVERIFY(system.TotalRunTime >= 1260);
    QCOMPARE(system.TotalMachineTime, 845);
    QVERIFY(!net.eth.mac.isEmpty());
    QVERIFY(data.wait(5000));
    QCOMPARE(data.size(), 1);
    QVERIFY(!data.first().at(0).toBool());
    QVERIFY(client.isConnected());
}

void tst_FileTransferClient::connectionEndFailsWhatIsPending_data()
{
    QTest::addColumn<bool>("bVanish");
    QTest::newRow("machine-vanishes") << true;
    QTest::newRow("user-disconnects") << false;
}

void tst_FileTransferClient::connectionEndFailsWhatIsPending()
{
    QFETCH(bool, bVanish);
    m_sim->Options().realTimeSilent = true;
    FileTransferClient client;
    QVERIFY(Connect(client, m_sim->InfoPort()));
    QSignalSpy status(&client, &FileTransferClient::SignalTcpConnectStatus);
    QSignalSpy data(&client, &FileTransferClient::SignalGetMachineRealTimeData);
    QVERIFY(client.GetMachineRealTimeData());
    if (bVanish) {
        m_sim->Vanish();
        QVERIFY(status.wait(5000));
    } else {
        client.disconnectFromMachine();
        QCOMPARE(status.size(), 1);
    }
    QCoreApplication::processEvents();
    QCOMPARE(status.size(), 1); // reported once, not again by the socket
    QCOMPARE(status.first().first().toBool(), false);
    QCOMPARE(data.size(), 1);
    QVERIFY(!data.first().at(0).toBool());
    QVERIFY(!client.isConnected());
    QVERIFY(!client.GetMachineRealTimeData());
}

void tst_FileTransferClient::refusedConnectionAndRequestsWithoutOne()
{
    FileTransferClient client;
    QVERIFY(!client.GetMachineInfo());
    QVERIFY(!client.connectToMachine("", 30001));
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    QSignalSpy status(&client, &FileTransferClient::SignalTcpConnectStatus);
    QVERIFY(client.connectToMachine("127.0.0.1", port));
    QVERIFY(status.wait(5000));
    QCOMPARE(status.size(), 1);
    QCOMPARE(status.first().first().toBool(), false);
}

void tst_FileTransferClient::rawFrames_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("closeAfter");
    QTest::addColumn<int>("answered");
    QTest::addColumn<bool>("connectionLost");
    const QByteArray reply = MachineFrameDecoder::Encode(
        {{"type", "RealTimeDataRes"}, {"code", 0}, {"data", QJsonObject{{"sn", "RAW"}, {"status", 1}}}});
    // How the decoder takes split and merged bytes is its own test's business; these are the client's.
    QTest::newRow("merged") << reply + reply << false << 2 << false;
    QTest::newRow("truncated") << reply.left(reply.size() - 3) << true << 0 << true;
    QTest::newRow("malformed") << QByteArray::fromHex("00000005") + "{nope" << false << 0 << true;
    QTest::newRow("valid-then-bad-header") << reply + QByteArray::fromHex("00000000") << false << 1 << true;
    QTest::newRow("error-code") << MachineFrameDecoder::Encode(
                                       {{"type", "RealTimeDataRes"}, {"code", 7}, {"msg", "busy"}})
                                << false << 0 << false;
}

void tst_FileTransferClient::rawFrames()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, closeAfter);
    QFETCH(int, answered);
    QFETCH(bool, connectionLost);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    FileTransferClient client;
    client.SetRequestTimeout(1000);
    QVERIFY(Connect(client, server.serverPort()));
    QVERIFY(QTest::qWaitFor([&server] { return server.hasPendingConnections(); }, 5000));
    QTcpSocket* peer = server.nextPendingConnection();
    QSignalSpy status(&client, &FileTransferClient::SignalTcpConnectStatus);
    QSignalSpy data(&client, &FileTransferClient::SignalGetMachineRealTimeData);
    QVERIFY(client.GetMachineRealTimeData());
    QVERIFY(client.GetMachineRealTimeData());
    peer->write(bytes);
    peer->flush();
    if (closeAfter)
        peer->disconnectFromHost();
    // Both requests end one way or another: answered, failed by the loss, or by the error code.
    QVERIFY(QTest::qWaitFor([&] { return data.size() == 2 || (!connectionLost && answered == 1 && data.size() == 1); },
                            5000));
    int ok = 0;
    for (const auto& arguments : data)
        ok += arguments.at(0).toBool() ? 1 : 0;
    QCOMPARE(ok, answered);
    if (answered > 0)
        QCOMPARE(data.first().at(1).value<StructRealTimeData>().sn, QString("RAW"));
    QCOMPARE(status.size(), connectionLost ? 1 : 0);
    QCOMPARE(client.isConnected(), !connectionLost);
}

QTEST_GUILESS_MAIN(tst_FileTransferClient)
#include "tst_FileTransferClient.moc"
