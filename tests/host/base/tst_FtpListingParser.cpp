#include <FtpListingParser.h>
#include <QTest>
#include <QTimeZone>

namespace {
QDateTime Utc(int y, int mo, int d, int h = 0, int mi = 0, int s = 0)
{
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), QTimeZone::utc());
}

const QDateTime kNow = Utc(2024, 3, 10, 12, 0);
} // namespace

class TestFtpListingParser : public QObject
{
    Q_OBJECT

private slots:
    void parsesLine_data();
    void parsesLine();
    void ignoresLine_data();
    void ignoresLine();
    void parsesWholeListing();
    void survivesInsertedBlanksAndBreaks();
};

void TestFtpListingParser::parsesLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("type");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QDateTime>("time");
    // Listings as the test servers write them are the FTP listing tests' business; these are the
    // other controllers' quirks and the boundaries.
    const auto row = [](const char* tag, const char* line, const char* name, const char* type, qint64 size,
                        const QDateTime& time) {
        QTest::newRow(tag) << QString::fromUtf8(line) << QString::fromUtf8(name) << type << size << time;
    };
    row("unix-time-tomorrow-is-this-year", "-rw-r--r-- 1 ftp ftp 1 Mar 11 23:59 t.nc", "t.nc", "file", 1,
        Utc(2024, 3, 11, 23, 59));
    row("unix-time-future-is-last-year", "-rw-r--r-- 1 ftp ftp 1 Nov 23 04:45 last.nc", "last.nc", "file", 1,
        Utc(2023, 11, 23, 4, 45));
    row("unix-symlink", "lrwxrwxrwx 1 0 0 8 Jan  2  2020 link.nc -> plain.nc", "link.nc", "file", 8, Utc(2020, 1, 2));
    row("unix-no-group", "-rw-r--r-- 1 owner 77 Dec 31  1999 a.nc", "a.nc", "file", 77, Utc(1999, 12, 31));
    row("unix-double-spaces", "-rw-r--r-- 1 a b 5 Jan  2  2020 two  spaces.nc", "two  spaces.nc", "file", 5,
        Utc(2020, 1, 2));
    row("unix-year-name-leading-spaces", "-rw-r--r-- 1 a b 5 Jan  2  2020   lead.nc", "  lead.nc", "file", 5,
        Utc(2020, 1, 2));
    row("unix-time-name-leading-space", "drwxr-xr-x 2 a b 4096 Mar  9 04:45  sub", " sub", "dir", 4096,
        Utc(2024, 3, 9, 4, 45));
    row("dos-file-name-leading-spaces", "12-31-99  11:05PM              1234   old.nc", "  old.nc", "file", 1234,
        Utc(1999, 12, 31, 23, 5));
    row("dos-dir-name-leading-space", "01-02-20  10:30AM       <DIR>           folder", " folder", "dir", 0,
        Utc(2020, 1, 2, 10, 30));
    row("dos-dir-narrow-padding", "05/01/2024 09:30   <DIR>  sub dir", "sub dir", "dir", 0, Utc(2024, 5, 1, 9, 30));
    row("dos-noon", "03-04-2021  12:15PM  10 noon.nc", "noon.nc", "file", 10, Utc(2021, 3, 4, 12, 15));
    row("dos-iso-24h", "2020-01-02  17:45    5,678 iso file.nc", "iso file.nc", "file", 5678, Utc(2020, 1, 2, 17, 45));
    row("mlsd-dir-upper-facts", "Type=dir;Sizd=4096;Modify=20200102030405.123; sub dir", "sub dir", "dir", 4096,
        Utc(2020, 1, 2, 3, 4, 5));
    row("mlsd-signed-size-unknown", "type=file;size=-23;modify=20200102030405; neg.nc", "neg.nc", "file", 0,
        Utc(2020, 1, 2, 3, 4, 5));
    row("mlsd-name-with-semicolon", "type=file;size=1;modify=20200102030405; a; b=c.nc", "a; b=c.nc", "file", 1,
        Utc(2020, 1, 2, 3, 4, 5));
}

void TestFtpListingParser::parsesLine()
{
    QFETCH(QString, line);
    FtpFileInfo info;
    QVERIFY(FtpListingParser(kNow).ParseLine(line, &info));
    QTEST(info.name, "name");
    QTEST(info.type, "type");
    QTEST(info.size, "size");
    QTEST(info.time, "time");
}

void TestFtpListingParser::ignoresLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("total") << "total 12";
    QTest::newRow("blank") << "   \t ";
    QTest::newRow("unix-dot") << "drwxr-xr-x 2 a b 4096 Jan  2  2020 .";
    QTest::newRow("unix-dotdot") << "drwxr-xr-x 2 a b 4096 Jan  2  2020 ..";
    QTest::newRow("mlsd-cdir-full-path") << "type=cdir;modify=20261123090048; /some/dir";
    QTest::newRow("slash-in-name") << "-rw-r--r-- 1 a b 5 Jan  2  2020 ../../etc/passwd";
    QTest::newRow("bad-month") << "-rw-r--r-- 1 a b 5 Foo  2  2020 x.nc";
    QTest::newRow("bad-permissions") << "-rw-r--r-Q 1 a b 5 Jan  2  2020 x.nc";
    QTest::newRow("blank-name") << "-rw-r--r-- 1 a b 5 Jan  2  2020   ";
    QTest::newRow("dos-bad-date") << "13-45-20  10:30AM  5 x.nc";
    QTest::newRow("dos-no-size") << "01-02-20  10:30AM  big x.nc";
    QTest::newRow("mlsd-no-name") << "type=file;size=1;";
}

void TestFtpListingParser::ignoresLine()
{
    QFETCH(QString, line);
    FtpFileInfo info;
    QVERIFY(!FtpListingParser(kNow).ParseLine(line, &info));
}

void TestFtpListingParser::parsesWholeListing()
{
    const QByteArray listing = "total 3\r\n"
                               "drwxr-xr-x 2 a b 4096 Jan  2  2020 .\r\n"
                               "-rw-r--r-- 1 a b 5 Jan  2  2020 one.nc\r\n"
                               "garbage line\r\n"
                               "drwxr-xr-x 2 a b 4096 Jan  2  2020 目录\r\n"
                               "-rw-r--r-- 1 a b 7 Jan  2  2020 last.nc"; // no final line end
    const QList<FtpFileInfo> entries = FtpListingParser(kNow).Parse(listing);
    QCOMPARE(entries.size(), 3);
    QCOMPARE(entries[0].name + entries[1].name + entries[2].name, QStringLiteral("one.nc目录last.nc"));
}

void TestFtpListingParser::survivesInsertedBlanksAndBreaks()
{
    // Any line mangled anywhere must be parsed or dropped, never crash or yield a bad name.
    const QStringList lines{"-rw-r--r-- 1 a b 5 Jan  2  2020 one.nc", "01-02-20  10:30AM       <DIR>          folder",
                            "type=file;size=6;modify=20261123090048; x.nc", "lrwxrwxrwx 1 0 0 8 Jan  2 10:00 l -> t"};
    const FtpListingParser parser(kNow);
    for (const QString& line : lines) {
        for (qsizetype pos = 0; pos <= line.size(); ++pos) {
            for (const QString& insert :
                 {QStringLiteral(" "), QStringLiteral("\t"), QStringLiteral("\r"), QStringLiteral("\n")}) {
                const QString mangled = QString(line).insert(pos, insert);
                const QList<FtpFileInfo> entries = parser.Parse(mangled.toUtf8());
                for (const FtpFileInfo& entry : entries) {
                    QVERIFY(!entry.name.isEmpty());
                    QVERIFY(!entry.name.contains(QLatin1Char('/')));
                    QVERIFY(entry.name != QLatin1String(".") && entry.name != QLatin1String(".."));
                }
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestFtpListingParser)
#include "tst_FtpListingParser.moc"
