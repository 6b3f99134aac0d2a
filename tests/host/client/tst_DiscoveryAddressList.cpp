#include "DiscoveryAddressList.h"

#include <QTest>

// The addresses discovery asks where a broadcast does not reach.
class tst_DiscoveryAddressList : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void hugeRangeIsCapped();
};

void tst_DiscoveryAddressList::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("single") << "10.0.0.5" << QStringList{"10.0.0.5"};
    QTest::newRow("full-range") << "127.0.0.2-127.0.0.4" << QStringList{"127.0.0.2", "127.0.0.3", "127.0.0.4"};
    QTest::newRow("short-range") << "192.168.1.254-255" << QStringList{"192.168.1.254", "192.168.1.255"};
    QTest::newRow("range-over-octet") << "10.0.0.255-10.0.1.0" << QStringList{"10.0.0.255", "10.0.1.0"};
    QTest::newRow("mixed-separators-and-repeats")
        << " 10.0.0.1;10.0.0.1-2 ,\t10.0.0.2 " << QStringList{"10.0.0.1", "10.0.0.2"};
    QTest::newRow("reversed-range-skipped") << "10.0.0.9-10.0.0.1, 10.0.0.3" << QStringList{"10.0.0.3"};
    QTest::newRow("junk-skipped") << "host.local, 10.0.0, ::1, 10.0.0.300, 1.2.3.4-x, 10.0.0.7"
                                  << QStringList{"10.0.0.7"};
    QTest::newRow("empty") << "" << QStringList{};
}

void tst_DiscoveryAddressList::parse()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QStringList actual;
    for (const QHostAddress& address : DiscoveryAddressList::Parse(text))
        actual << address.toString();
    QCOMPARE(actual, expected);
}

void tst_DiscoveryAddressList::hugeRangeIsCapped()
{
    const QList<QHostAddress> addresses = DiscoveryAddressList::Parse("10.0.0.0-10.255.255.255, 11.0.0.1");
    QCOMPARE(addresses.size(), DiscoveryAddressList::MaxAddresses);
    QCOMPARE(addresses.last().toString(), QString("10.0.3.255"));
}

QTEST_GUILESS_MAIN(tst_DiscoveryAddressList)
#include "tst_DiscoveryAddressList.moc"
