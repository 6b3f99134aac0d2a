#include <CompareTwoVersion.h>
#include <QTest>

class TestCompareTwoVersion : public QObject
{
    Q_OBJECT

private slots:
    void compares_data();
    void compares();
};

void TestCompareTwoVersion::compares_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("sign");
    QTest::newRow("equal") << "1.4.7"
                           << "1.4.7" << 0;
    QTest::newRow("newer-minor") << "1.5.0"
                                 << "1.4.7" << 1;
    QTest::newRow("numeric-not-text") << "1.10.0"
                                      << "1.9.9" << 1;
    QTest::newRow("missing-part-is-zero") << "1.4"
                                          << "1.4.0" << 0;
    QTest::newRow("longer-is-newer") << "1.4.7.1"
                                     << "1.4.7" << 1;
    QTest::newRow("leading-v") << "v2.0"
                               << "1.99.99" << 1;
    QTest::newRow("suffix-ignored") << "1.4.7-rc1"
                                    << "1.4.7" << 0;
    QTest::newRow("empty-is-oldest") << ""
                                     << "0.0.1" << -1;
    QTest::newRow("spaces-trimmed") << " 1.4.7 "
                                    << "1.4.7" << 0;
}

void TestCompareTwoVersion::compares()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, sign);
    const int result = CompareTwoVersion(a, b);
    QCOMPARE((result > 0) - (result < 0), sign);
    const int reverse = CompareTwoVersion(b, a);
    QCOMPARE((reverse > 0) - (reverse < 0), -sign);
}

QTEST_GUILESS_MAIN(TestCompareTwoVersion)
#include "tst_CompareTwoVersion.moc"
