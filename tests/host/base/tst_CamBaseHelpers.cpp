#include "TestTempDir.h"

#include <CamBaseRegisterHelper.h>
#include <CamBaseTextHelper.h>
#include <CamBaseToolBitHelper.h>
#include <FtpSettings.h>
#include <KorvBaseGlobals.h>
#include <KorvLanguage.h>
#include <QJsonArray>
#include <QSettings>
#include <QTest>

class TestCamBaseHelpers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void settingsPersistInIniUnderConfigDir();
    void ftpSettingsDefaultsAndPortMapping();
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

void TestCamBaseHelpers::settingsPersistInIniUnderConfigDir()
{
    CamBaseTextHelper* helper = CamBaseTextHelper::instance();
    QCOMPARE(helper->GetLocalSettingCache(1, g_strSettingAutoConnectLastMachine, true).toBool(), true);
    helper->SetLocalSettingCache(1, g_strSettingLastConnectMachineSN, QStringLiteral("PB01-0042"), true);
    QSettings ini(m_config.FilePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    QCOMPARE(ini.value(g_strSettingLastConnectMachineSN).toString(), QStringLiteral("PB01-0042"));
    QCOMPARE(helper->GetLocalSettingCache(1, g_strSettingLastConnectMachineSN, QString()).toString(),
             QStringLiteral("PB01-0042"));
}

void TestCamBaseHelpers::ftpSettingsDefaultsAndPortMapping()
{
    FtpSettings settings = FtpSettings::Load();
    QCOMPARE(settings.MapPort(21), 21);
    CamBaseTextHelper::instance()->SetLocalSettingCache(1, g_strSettingFtpPortMapping, 2121, false);
    CamBaseTextHelper::instance()->SetLocalSettingCache(1, g_strSettingFtpUser, QStringLiteral("cnc"), false);
    settings = FtpSettings::Load();
    QCOMPARE(settings.user, QStringLiteral("cnc"));
    QCOMPARE(settings.MapPort(21), 2121);
    QCOMPARE(settings.MapPort(-1), 2121);
    QCOMPARE(settings.MapPort(990), 990);
}

void TestCamBaseHelpers::convertsXmlToJson()
{
    const QByteArray xml = "<?xml version=\"1.0\"?><response><code>0</code>"
                           "<data><imgid>7</imgid><image>QUJD</image><label>请输入</label></data>"
                           "<item id=\"1\">a</item><item>b</item><empty/></response>";
    const QJsonObject json = CamBaseTextHelper::instance()->ConvertXmlToJson(xml);
    QCOMPARE(json.value("code").toString(), QStringLiteral("0"));
    QCOMPARE(json.value("data").toObject().value("label").toString(), QStringLiteral("请输入"));
    const QJsonArray items = json.value("item").toArray();
    QCOMPARE(items.size(), 2);
    QCOMPARE(items[0].toObject().value("@id").toString(), QStringLiteral("1"));
    QCOMPARE(items[1].toString(), QStringLiteral("b"));
    QCOMPARE(json.value("empty").toString(), QString());
    QVERIFY(CamBaseTextHelper::instance()->ConvertXmlToJson("<broken><a></broken>").isEmpty());
    QVERIFY(CamBaseTextHelper::instance()->ConvertXmlToJson("").isEmpty());
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
    QVERIFY(tools->GetToolManagementShowImageByType(2).isEmpty()); // no picture installed
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
