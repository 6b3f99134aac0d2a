#include "TestTempDir.h"

#include <CamBaseRegisterHelper.h>
#include <CamBaseTextHelper.h>
#include <CamBaseToolBitHelper.h>
#include <FtpSettings.h>
#include <KorvBaseGlobals.h>
#include <KorvLanguage.h>
#include <QJsonArray>
#include <QTest>

class TestCamBaseHelpers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void ftpPortMappingAppliesToTheDefaultPortOnly();
    void convertsXmlToJson();
    void discoveredMachinesKeyedBySerialNumber();
    void toolBitsFromDataFile();

private:
    TestTempDir m_config;
    TestTempDir m_resources;
};

void TestCamBaseHelpers::initTestCase()
{
    qputenv("KORV_CONFIG_DIR", m_config.Path().toUtf8());
    qputenv("KORV_RESOURCE_DIR", m_resources.Path().toUtf8());
}

void TestCamBaseHelpers::ftpPortMappingAppliesToTheDefaultPortOnly()
{
    QCOMPARE(FtpSettings::Load().MapPort(21), 21);
    CamBaseTextHelper::instance()->SetLocalSettingCache(1, g_strSettingFtpPortMapping, 2121, false);
    const FtpSettings settings = FtpSettings::Load();
    QCOMPARE((QList<int>{settings.MapPort(21), settings.MapPort(-1), settings.MapPort(990)}),
             (QList<int>{2121, 2121, 990}));
}

void TestCamBaseHelpers::convertsXmlToJson()
{
    const QByteArray xml = "<?xml version=\"1.0\"?><response><code>0</code>"
                           "<data><imgid>7</imgid><image>QUJD</image><label>请输入</label></data>"
                           "<item id=\"1\">a</item><item>b</item><empty/></response>";
    const QJsonObject json = CamBaseTextHelper::instance()->ConvertXmlToJson(xml);
    QCOMPARE(json.value("data").toObject().value("label").toString(), QStringLiteral("请输入"));
    const QJsonArray items = json.value("item").toArray();
    QCOMPARE(items.size(), 2);
    QCOMPARE(items[0].toObject().value("@id").toString(), QStringLiteral("1"));
    QCOMPARE(items[1].toString(), QStringLiteral("b"));
    for (const QByteArray& bad : {QByteArray("<broken><a></broken>"), QByteArray()})
        QVERIFY(CamBaseTextHelper::instance()->ConvertXmlToJson(bad).isEmpty());
}

void TestCamBaseHelpers::discoveredMachinesKeyedBySerialNumber()
{
    CamBaseRegisterHelper* reg = CamBaseRegisterHelper::instance();
    reg->AddDiscoveredMachine(QStringLiteral("10.0.0.5"), QStringLiteral("SN1"));
    reg->AddDiscoveredMachine(QStringLiteral("10.0.0.6"), QStringLiteral("SN1"));
    reg->AddDiscoveredMachine(QStringLiteral("10.0.0.7"), QString());
    QCOMPARE(reg->GetDiscoveredMachines(), (QMap<QString, QString>{{"SN1", "10.0.0.6"}}));
    reg->SaveMachineInterfaceAndIP(g_strInterfaceEth, QStringLiteral("10.0.0.5"), QStringLiteral("SN1"));
    reg->SaveMachineInterfaceAndIP(g_strInterfaceWlan, QStringLiteral("192.168.1.5"), QStringLiteral("SN1"));
    reg->ClearDiscoveredMachines();
    QVERIFY(reg->GetDiscoveredMachines().isEmpty());
    QCOMPARE(reg->GetMachineInterfaceIPs(QStringLiteral("SN1")).value(g_strInterfaceWlan),
             QStringLiteral("192.168.1.5"));
}

void TestCamBaseHelpers::toolBitsFromDataFile()
{
    CamBaseToolBitHelper* tools = CamBaseToolBitHelper::instance();
    tools->Reload();
    QCOMPARE(tools->GetToolNameByType(2), QStringLiteral("球头刀"));
    QVERIFY(KorvLanguage::Apply(QStringLiteral("en")));
    QCOMPARE(tools->GetToolNameByType(2), QStringLiteral("Ball end mill"));
    QVERIFY(KorvLanguage::Apply(QStringLiteral("zh")));
    QVERIFY(tools->GetToolNameByType(999).isEmpty());

    m_resources.CreateFile(QStringLiteral("ToolBit/ToolBitTypes.json"),
                           R"({"default":[{"type":2,"name":"Ball","image":"ToolBit/ball.png"}],
                              "PB01":[{"type":2,"name":"PB Ball","image":""}]})");
    const QString image = m_resources.CreateFile(QStringLiteral("ToolBit/ball.png"), "png");
    tools->Reload();
    QCOMPARE(tools->GetToolNameByType(2), QStringLiteral("Ball"));
    QVERIFY(KorvLanguage::Apply(QStringLiteral("en"))); // no English name: the only one there is
    QCOMPARE(tools->GetToolNameByType(2), QStringLiteral("Ball"));
    QVERIFY(KorvLanguage::Apply(QStringLiteral("zh")));
    QCOMPARE(tools->GetToolManagementShowImageByType(2), image);
    tools->SetConnectMachineType(true);
    QCOMPARE(tools->GetToolNameByType(2), QStringLiteral("PB Ball"));
    QVERIFY(tools->GetToolManagementShowImageByType(2).isEmpty());
    tools->SetConnectMachineType(false);
}

QTEST_GUILESS_MAIN(TestCamBaseHelpers)
#include "tst_CamBaseHelpers.moc"
