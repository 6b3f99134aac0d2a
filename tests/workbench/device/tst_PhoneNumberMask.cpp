#include "device/PhoneNumberMask.h"

#include <QTest>

class TestPhoneNumberMask : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void masksAllButTheLastFour_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("masked");
        QTest::newRow("mainland mobile") << "13812345678"
                                         << "*******5678";
        QTest::newRow("spaces around") << " 91234567 "
                                       << "****4567";
        QTest::newRow("five digits") << "12345"
                                     << "*2345";
        QTest::newRow("four digits hide all") << "1234"
                                              << "****";
        QTest::newRow("empty") << ""
                               << "";
    }
    void masksAllButTheLastFour()
    {
        QFETCH(QString, number);
        QFETCH(QString, masked);
        QCOMPARE(MaskPhoneNumber(number), masked);
    }
};

QTEST_GUILESS_MAIN(TestPhoneNumberMask)
#include "tst_PhoneNumberMask.moc"
