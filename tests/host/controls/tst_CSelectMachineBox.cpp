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
    void confirmPicksTypedOrListedMachine();
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
    QTest::newRow("octet-over-255") << "192.168.1.256" << false;
    QTest::newRow("three-octets") << "192.168.1" << false;
    QTest::newRow("leading-zero") << "192.168.01.1" << false;
    QTest::newRow("trailing-dot") << "1.2.3.4." << false;
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
                                << QStringLiteral("192.168.1.23");
    QTest::newRow("four-fields") << "KV*SN002*0*10.0.0.7" << true << "SN002" << QStringLiteral("10.0.0.7");
    QTest::newRow("no-serial") << "KV**0*10.0.0.8" << true << "" << QStringLiteral("10.0.0.8");
    QTest::newRow("three-fields") << "KV*SN003*0" << false << "" << QString();
    QTest::newRow("bad-ip") << "KV*SN004*0*10.0.0.999" << false << "" << QString();
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
}

void tst_CSelectMachineBox::confirmPicksTypedOrListedMachine()
{
    QSignalSpy selected(m_pBox, &CSelectMachineBox::SignalMachineSelected);
    m_pBox->SetMachineInfo(QStringLiteral("KV*SN001*0*192.168.1.23"), false);
    m_pBox->SetMachineInfo(QStringLiteral("KV*PB01X*0*192.168.1.57"), true);
    // Offline, nothing chosen, or a bad address: nothing is tried.
    List()->setCurrentRow(0);
    m_pBox->SlotConfirm();
    List()->clearSelection();
    m_pBox->SlotConfirm();
    QTest::keyClicks(IpEdit(), QStringLiteral("192.168.1.300"));
    m_pBox->SlotConfirm();
    QCOMPARE(selected.count(), 0);
    QVERIFY(!m_pBox->IsConnecting());

    // Choosing from the list clears the typed address.
    List()->setCurrentRow(1);
    QCOMPARE(IpEdit()->text(), QString());
    QTest::mouseClick(ConnectButton(), Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0), (QVariantList{QStringLiteral("192.168.1.57"), QStringLiteral("PB01X")}));
    // A second confirm while connecting does not start a second attempt.
    m_pBox->SlotConfirm();
    QCOMPARE(selected.count(), 1);

    // A failed attempt lets the user try again, here with a typed address.
    m_pBox->OnConnectResult(false);
    QVERIFY(ConnectButton()->isEnabled());
    QTest::keyClicks(IpEdit(), QStringLiteral("127.0.0.1"));
    QVERIFY(List()->selectedItems().isEmpty());
    QTest::keyClick(IpEdit(), Qt::Key_Return);
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(1), (QVariantList{QStringLiteral("127.0.0.1"), QString()}));
}

void tst_CSelectMachineBox::nameEncodingIsKeptPerMachine()
{
    auto* combo = m_pBox->findChild<QComboBox*>(QStringLiteral("m_comboNameEncoding"));
    QTest::keyClicks(IpEdit(), QStringLiteral("10.0.0.7"));
    QCOMPARE(combo->currentData().toByteArray(), QByteArray("UTF-8"));
    combo->setCurrentIndex(combo->findData(QByteArray("GBK")));
    QTest::keyClick(IpEdit(), Qt::Key_Return);
    QCOMPARE(FtpSettings::NameEncodingFor(QStringLiteral("10.0.0.7")), QByteArray("GBK"));
    QCOMPARE(FtpSettings::NameEncodingFor(QStringLiteral("10.0.0.8")), QByteArray("UTF-8"));

    // The next time that machine is picked the box shows its encoding again.
    CSelectMachineBox again;
    auto* againCombo = again.findChild<QComboBox*>(QStringLiteral("m_comboNameEncoding"));
    QTest::keyClicks(again.findChild<QLineEdit*>(QStringLiteral("m_editIp")), QStringLiteral("10.0.0.7"));
    QCOMPARE(againCombo->currentData().toByteArray(), QByteArray("GBK"));
}

QTEST_MAIN(tst_CSelectMachineBox)
#include "tst_CSelectMachineBox.moc"
