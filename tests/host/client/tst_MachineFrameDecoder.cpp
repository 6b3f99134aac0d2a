#include "MachineFrameDecoder.h"
#include "MachineRecordJson.h"

#include <QJsonArray>
#include <QTest>
#include <QtEndian>

namespace {
QByteArray frame(const QByteArray& payload)
{
    const quint32 size = qToBigEndian(quint32(payload.size()));
    return QByteArray(reinterpret_cast<const char*>(&size), sizeof size) + payload;
}
} // namespace

class tst_MachineFrameDecoder : public QObject
{
    Q_OBJECT
private slots:
    void decodesHoweverTheBytesArrive();
    void untrustworthyFramesBreakTheStream_data();
    void untrustworthyFramesBreakTheStream();
    void foreignTextAndUnusableNumbers_data();
    void foreignTextAndUnusableNumbers();
    void realTimeDataWithWrongKinds();
};

void tst_MachineFrameDecoder::decodesHoweverTheBytesArrive()
{
    const QJsonObject first{{"type", "RealTimeDataRes"}, {"code", 0}, {"msg", "零件"}};
    const QJsonObject second{{"type", "GetMachineInfoRes"}, {"code", 0}};
    const QByteArray bytes = MachineFrameDecoder::Encode(first) + MachineFrameDecoder::Encode(second);
    for (int chunk : {1, 3, 100000}) { // headers and text split anywhere, and frames merged
        MachineFrameDecoder decoder;
        QList<QJsonObject> messages;
        for (int i = 0; i < bytes.size(); i += chunk) {
            QVERIFY(decoder.Feed(bytes.mid(i, chunk)));
            QJsonObject message;
            while (decoder.Next(&message))
                messages << message;
        }
        QCOMPARE(messages, (QList<QJsonObject>{first, second}));
        QVERIFY(!decoder.IsBroken());
    }
}

void tst_MachineFrameDecoder::untrustworthyFramesBreakTheStream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    QTest::newRow("zero-length") << QByteArray(4, '\0') << "frame length 0";
    QTest::newRow("oversized") << frame("{}").replace(0, 4, QByteArray::fromHex("00100001")) << "frame length 1048577";
    QTest::newRow("truncated-json") << frame(R"({"type":"Real)") << "malformed JSON";
    QTest::newRow("array") << frame("[1,2]") << "payload is not a JSON object";
}

void tst_MachineFrameDecoder::untrustworthyFramesBreakTheStream()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    MachineFrameDecoder decoder;
    // A good message first: it stays deliverable, nothing after the bad frame is.
    QVERIFY(!decoder.Feed(MachineFrameDecoder::Encode({{"type", "A"}}) + bytes + MachineFrameDecoder::Encode({})));
    QVERIFY(decoder.IsBroken());
    QVERIFY2(decoder.ErrorString().startsWith(error), qPrintable(decoder.ErrorString()));
    QVERIFY(!decoder.Feed(MachineFrameDecoder::Encode({{"type", "B"}})));
    QJsonObject message;
    QVERIFY(decoder.Next(&message));
    QCOMPARE(message.value("type").toString(), QString("A"));
    QVERIFY(!decoder.Next(&message));
    decoder.Reset();
    QVERIFY(decoder.Feed(MachineFrameDecoder::Encode({{"type", "C"}})));
}

void tst_MachineFrameDecoder::foreignTextAndUnusableNumbers_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("usable");
    const auto gbk = [](const char* hex) {
        return QByteArray(R"({"type":"R","name":")") + QByteArray::fromHex(hex) + R"(.nc"})";
    };
    // Plain GBK names go through the client's test. A second byte of 0x5c reads as a backslash to
    // a UTF-8 parser.
    QTest::newRow("gbk-backslash-byte") << gbk("815c") << QByteArray("GBK") << "乗.nc" << true;
    QTest::newRow("nan") << QByteArray(R"({"type":"R","name":"NaN.nc","spindleTemp":NaN})") << QByteArray("UTF-8")
                         << "NaN.nc" << false;
    QTest::newRow("out-of-range") << QByteArray(R"({"type":"R","load":[1,-1e999]})") << QByteArray("UTF-8") << ""
                                  << false;
}

// Controllers' own bytes cost at most the one message; the stream goes on.
void tst_MachineFrameDecoder::foreignTextAndUnusableNumbers()
{
    QFETCH(QByteArray, payload);
    QFETCH(QByteArray, encoding);
    QFETCH(QString, name);
    QFETCH(bool, usable);
    MachineFrameDecoder decoder;
    decoder.SetTextEncoding(encoding);
    QVERIFY2(decoder.Feed(frame(payload) + MachineFrameDecoder::Encode({{"type", "next"}})),
             qPrintable(decoder.ErrorString()));
    QJsonObject message;
    bool bUsable = !usable;
    QVERIFY(decoder.Next(&message, &bUsable));
    QCOMPARE(message.value("type").toString(), QString("R"));
    QCOMPARE(message.value("name").toString(), name);
    QCOMPARE(bUsable, usable);
    QVERIFY(decoder.Next(&message, &bUsable));
    QCOMPARE(message.value("type").toString(), QString("next"));
    QVERIFY(bUsable);
}

void tst_MachineFrameDecoder::realTimeDataWithWrongKinds()
{
    const QJsonObject data{
        {"sn", 42},
        {"status", "3"},
        {"feed", 1e300},
        {"spindleSpeed", -1e300},
        {"runTime", 12.6},
        {"load", QJsonArray{86, "58", QJsonObject{}}},
        {"MCS", QJsonObject{{"x", -1.5}, {"c", "7.25"}}},
        {"program", QJsonObject{{"name", "a.nc"}, {"currentLines", QJsonObject{{"lines", QJsonArray{"G0 X0", 5}}}}}},
        {"toolInfo", QJsonArray{}},
        {"originOffset", QJsonObject{{"index", "G54"}, {"offset", QJsonObject{{"z", -100}}}}},
    };
    StructRealTimeData record;
    QVERIFY(MachineRecordJson::ReadRealTimeData(data, &record));
    QCOMPARE((QStringList{record.sn, record.program.name, record.originOffset.index}),
             (QStringList{"42", "a.nc", "G54"}));
    QCOMPARE((QList<int>{record.status, record.feed, record.spindleSpeed, record.runTime, record.toolInfo.toolNo}),
             (QList<int>{3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 13, 0}));
    QCOMPARE(record.load, (QList<double>{86, 58, 0}));
    QCOMPARE((QList<double>{record.MCS.x, record.MCS.c, record.originOffset.offset.z}),
             (QList<double>{-1.5, 7.25, -100}));
    QCOMPARE(record.program.currentLines.lines, (QStringList{"G0 X0", "5"}));
    QVERIFY(!MachineRecordJson::ReadRealTimeData({}, &record));
}

QTEST_GUILESS_MAIN(tst_MachineFrameDecoder)
#include "tst_MachineFrameDecoder.moc"
