#include "filepanel/FileSizeText.h"

#include <QTest>

class TestFileSizeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void format_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("bytes-no-decimals") << qint64(512) << "512 B";
        QTest::newRow("just-below-kb") << qint64(1023) << "1023 B";
        QTest::newRow("one-kb") << qint64(1024) << "1.00 KB";
        QTest::newRow("below-ten-two-decimals") << qint64(1536) << "1.50 KB";
        QTest::newRow("ten-and-above-one-decimal") << qint64(20480) << "20.0 KB";
        QTest::newRow("terabytes") << qint64(2) * 1024 * 1024 * 1024 * 1024 << "2.00 TB";
        QTest::newRow("beyond-tb-stays-tb") << qint64(2048) * 1024 * 1024 * 1024 * 1024 << "2048.0 TB";
    }
    void format()
    {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(FileSizeText::Format(bytes), text);
    }
};

QTEST_APPLESS_MAIN(TestFileSizeText)
#include "tst_filesizetext.moc"
