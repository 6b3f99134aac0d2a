#include "CSelectMachineBox.h"
#include "FtpSettings.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class tst_CSelectMachineBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void ipv4Validation_data();
    void ipv4Validation();
    void discoveryRepliesFillTheList_data();
    void discoveryRepliesFillTheList();
    void sameMachineIsUpdatedInPlace();
    void badTypedIpIsRefused();
    void typedIpIsEmitted();
    void selectedMachineIsEmitted();
    void offlineMachineCannotBeChosen();
    void connectResultStates();
    void refreshAndClear();
    void nameEncodingIsKeptPerMachine();

private:
    QListWidget* List() const { return m_pBox->findChild<QListWidget*>(); }
    QLineEdit* IpEdit() const { return m_pBox->findChild<QLineEdit*>(QStringLiteral("m_editIp")); }
    QPushButton* ConnectButton() const { return m_pBox->findChild<QPushButton*>(QStringLiteral("m_btnConfirm")); }

    CSelectMachineBox* m_pBox = nullptr;
    QTemporaryDir m_configDir;
};

void tst_CSelectMachineBox::initTestCase()
{
    // Confirming saves the machine's name encoding: into a throw-away settings file.
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
}

void tst_CSelectMachineBox::init()
{
    m_pBox = new CSelectMachineBox;
    m_pBox->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pBox));
}

void tst_CSelectMachineBox::cleanup()
{
    delete m_pBox;
    m_pBox = nullptr;
}

void tst_CSelectMachineBox::ipv4Validation_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("plain") << "192.168.1.100" << true;
    QTest::newRow("zeros") << "0.0.0.0" << true;
    QTest::newRow("max") << "255.255.255.255" << true;
    QTest::newRow("octet-over-255") << "192.168.1.256" << false;
    QTest::newRow("three-octets") << "192.168.1" << false;
    QTest::newRow("five-octets") << "1.2.3.4.5" << false;
    QTest::newRow("leading-zero") << "192.168.01.1" << false;
    QTest::newRow("short-form") << "10.1" << false;
    QTest::newRow("letters") << "a.b.c.d" << false;
    QTest::newRow("trailing-dot") << "1.2.3.4." << false;
    QTest::newRow("spaces") << "1.2. 3.4" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("ipv6") << "::1" << false;
}

void tst_CSelectMachineBox::ipv4Validation()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QCOMPARE(CSelectMachineBox::IsValidIpv4(text), valid);
}

void tst_CSelectMachineBox::discoveryRepliesFillTheList_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("sn");
    QTest::addColumn<QString>("ip");
    QTest::newRow("six-fields") << "KV*SN001*0*192.168.1.23*1*eth0" << true << "SN001"
                                << "192.168.1.23";
    QTest::newRow("four-fields") << "KV*SN002*0*10.0.0.7" << true << "SN002"
                                 << "10.0.0.7";
    QTest::newRow("no-serial") << "KV**0*10.0.0.8" << true << ""
                               << "10.0.0.8";
    QTest::newRow("three-fields") << "KV*SN003*0" << false << ""
                                  << "";
    QTest::newRow("bad-ip") << "KV*SN004*0*10.0.0.999" << false << ""
                            << "";
    QTest::newRow("empty") << "" << false << ""
                           << "";
}

void tst_CSelectMachineBox::discoveryRepliesFillTheList()
{
    QFETCH(QString, reply);
    QFETCH(bool, accepted);
    QFETCH(QString, sn);
    QFETCH(QString, ip);
    QCOMPARE(m_pBox->SetMachineInfo(reply, true), accepted);
    QCOMPARE(m_pBox->MachineCount(), accepted ? 1 : 0);
    if (accepted) {
        QListWidgetItem* item = List()->item(0);
        QCOMPARE(item->data(CSelectMachineBox::RoleSn).toString(), sn);
        QCOMPARE(item->data(CSelectMachineBox::RoleIp).toString(), ip);
        QVERIFY(item->text().contains(ip));
        QVERIFY(item->text().contains(QStringLiteral("在线")));
    }
}

void tst_CSelectMachineBox::sameMachineIsUpdatedInPlace()
{
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23*1*eth0"), true);
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN002*0*192.168.1.24*1*eth0"), true);
    // The same machine answering on another interface, then going quiet.
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.5.9*1*wlan0"), false);
    QCOMPARE(m_pBox->MachineCount(), 2);
    QListWidgetItem* item = List()->item(0);
    QCOMPARE(item->data(CSelectMachineBox::RoleIp).toString(), QStringLiteral("192.168.5.9"));
    QCOMPARE(item->data(CSelectMachineBox::RoleOnline).toBool(), false);
    QVERIFY(item->text().contains(QStringLiteral("离线")));
}

void tst_CSelectMachineBox::badTypedIpIsRefused()
{
    QSignalSpy selected(m_pBox, &CSelectMachineBox::SignalMachineSelected);
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23"), true);
    List()->setCurrentRow(0);
    QTest::keyClicks(IpEdit(), QStringLiteral("192.168.1.300"));
    QVERIFY(List()->selectedItems().isEmpty()); // typing overrides the list
    QTest::mouseClick(ConnectButton(), Qt::LeftButton);
    QCOMPARE(selected.count(), 0);
    QCOMPARE(m_pBox->StatusText(), QStringLiteral("IP地址格式不正确，请重新输入"));
    QCOMPARE(IpEdit()->property("invalid").toBool(), true);
    QVERIFY(!m_pBox->IsConnecting());
    QVERIFY(m_pBox->isVisible());

    // Nothing typed and nothing chosen is refused too.
    IpEdit()->clear();
    QTest::mouseClick(ConnectButton(), Qt::LeftButton);
    QCOMPARE(selected.count(), 0);
    QCOMPARE(m_pBox->StatusText(), QStringLiteral("请选择机床或输入机床IP地址"));
}

void tst_CSelectMachineBox::typedIpIsEmitted()
{
    QSignalSpy selected(m_pBox, &CSelectMachineBox::SignalMachineSelected);
    QTest::keyClicks(IpEdit(), QStringLiteral("127.0.0.1"));
    QTest::keyClick(IpEdit(), Qt::Key_Return);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toString(), QStringLiteral("127.0.0.1"));
    QCOMPARE(selected.at(0).at(1).toString(), QString());
    QVERIFY(m_pBox->IsConnecting());
    QVERIFY(!ConnectButton()->isEnabled());
    QCOMPARE(m_pBox->StatusText(), QStringLiteral("正在连接机床，请稍候..."));
    // A second confirm while connecting does not start a second attempt.
    m_pBox->SlotConfirm();
    QCOMPARE(selected.count(), 1);
}

void tst_CSelectMachineBox::selectedMachineIsEmitted()
{
    QSignalSpy selected(m_pBox, &CSelectMachineBox::SignalMachineSelected);
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23"), true);
    m_pBox->SetMachineInfo(QStringLiteral("KV*PB01X*0*192.168.1.57"), true);
    QTest::keyClicks(IpEdit(), QStringLiteral("10.0.0.1"));
    List()->setCurrentRow(1);
    QCOMPARE(IpEdit()->text(), QString()); // choosing from the list clears the typed address
    QTest::mouseClick(ConnectButton(), Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toString(), QStringLiteral("192.168.1.57"));
    QCOMPARE(selected.at(0).at(1).toString(), QStringLiteral("PB01X"));
}

void tst_CSelectMachineBox::offlineMachineCannotBeChosen()
{
    QSignalSpy selected(m_pBox, &CSelectMachineBox::SignalMachineSelected);
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23"), false);
    List()->setCurrentRow(0);
    m_pBox->SlotConfirm();
    QCOMPARE(selected.count(), 0);
}

void tst_CSelectMachineBox::connectResultStates()
{
    QSignalSpy finished(m_pBox, &QDialog::finished);
    QTest::keyClicks(IpEdit(), QStringLiteral("127.0.0.1"));
    m_pBox->SlotConfirm();
    m_pBox->OnConnectResult(false);
    QVERIFY(m_pBox->isVisible());
    QVERIFY(!m_pBox->IsConnecting());
    QVERIFY(ConnectButton()->isEnabled());
    QCOMPARE(m_pBox->StatusText(), QStringLiteral("连接失败，请检查网络连接和机床IP地址"));
    QCOMPARE(finished.count(), 0);

    m_pBox->SlotConfirm();
    m_pBox->OnConnectResult(true);
    QVERIFY(!m_pBox->isVisible());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), int(QDialog::Accepted));
}

void tst_CSelectMachineBox::refreshAndClear()
{
    QSignalSpy refresh(m_pBox, &CSelectMachineBox::SignalSelectRefresh);
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23"), true);
    QTest::mouseClick(m_pBox->findChild<QPushButton*>(QStringLiteral("m_btnRefresh")), Qt::LeftButton);
    QCOMPARE(refresh.count(), 1);
    QCOMPARE(m_pBox->MachineCount(), 0);
    QCOMPARE(m_pBox->StatusText(), QStringLiteral("正在搜索机床..."));
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23"), true);
    QCOMPARE(m_pBox->StatusText(), QString());

    QTest::keyClicks(IpEdit(), QStringLiteral("10.0.0.1"));
    m_pBox->SlotConfirm();
    m_pBox->ClearBoxInfo();
    QCOMPARE(m_pBox->MachineCount(), 0);
    QCOMPARE(IpEdit()->text(), QString());
    QVERIFY(!m_pBox->IsConnecting());
    QVERIFY(ConnectButton()->isEnabled());
}

void tst_CSelectMachineBox::nameEncodingIsKeptPerMachine()
{
    auto* combo = m_pBox->findChild<QComboBox*>(QStringLiteral("m_comboNameEncoding"));
    QTest::keyClicks(IpEdit(), QStringLiteral("10.0.0.7"));
    QCOMPARE(combo->currentData().toByteArray(), QByteArray("UTF-8"));
    combo->setCurrentIndex(combo->findData(QByteArray("GBK")));
    QTest::keyClick(IpEdit(), Qt::Key_Return);
    QCOMPARE(FtpSettings::NameEncodingFor(QStringLiteral("10.0.0.7")), QByteArray("GBK"));
    QCOMPARE(FtpSettings::Load(QStringLiteral("10.0.0.7")).nameEncoding, QByteArray("GBK"));
    QCOMPARE(FtpSettings::NameEncodingFor(QStringLiteral("10.0.0.8")), QByteArray("UTF-8"));

    // The next time that machine is picked the box shows its encoding again.
    CSelectMachineBox again;
    auto* againCombo = again.findChild<QComboBox*>(QStringLiteral("m_comboNameEncoding"));
    QTest::keyClicks(again.findChild<QLineEdit*>(QStringLiteral("m_editIp")), QStringLiteral("10.0.0.7"));
    QCOMPARE(againCombo->currentData().toByteArray(), QByteArray("GBK"));
}

QTEST_MAIN(tst_CSelectMachineBox)
#include "tst_CSelectMachineBox.moc"
