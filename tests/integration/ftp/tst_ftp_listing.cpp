#include "FtpTestFixture.h"

#include <ListFtpDirectory.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTimeZone>

class TestFtpListing : public QObject
{
    Q_OBJECT

private slots:
    void listsFolderWithEveryKindOfName_data() { FtpTestFixture::AddServerRows(); }
    void listsFolderWithEveryKindOfName();
    void missingFolderFails_data() { FtpTestFixture::AddServerRows(); }
    void missingFolderFails();

private:
    FtpTestFixture m_fixture;
};

void TestFtpListing::listsFolderWithEveryKindOfName()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const QString folder = m_fixture.NewRemoteFolder(server, QStringLiteral("list"));
    QVERIFY(server->WriteFile(folder + QStringLiteral("/plain.nc"), "G0 X1\n"));
    QVERIFY(server->WriteFile(folder + QStringLiteral("/name with  spaces.nc"), QByteArray(1234, 'x')));
    QVERIFY(server->WriteFile(folder + QStringLiteral("/中文 程序.nc"), "abc"));
    QVERIFY(server->MakeDir(folder + QStringLiteral("/子目录")));
    QVERIFY(server->WriteFile(folder + QStringLiteral("/old.nc"), "o"));
    QFile old(server->LocalPath(folder + QStringLiteral("/old.nc")));
    QVERIFY(old.open(QIODevice::ReadWrite));
    const QDateTime oldTime(QDate(2020, 1, 2), QTime(3, 4, 5), QTimeZone::utc());
    QVERIFY(old.setFileTime(oldTime, QFileDevice::FileModificationTime));
    old.close();
    QVERIFY(QFile::link(QStringLiteral("plain.nc"), server->LocalPath(folder + QStringLiteral("/link.nc"))));

    const QString dirPath = folder + QLatin1Char('/');
    const TaskOutcome outcome = FtpTestFixture::Run(
        new ListFtpDirectory(FtpTestFixture::PlainUrl(dirPath), FtpTestFixture::EncodedUrl(dirPath), dirPath));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QCOMPARE(outcome.listSignals, 1);
    QVERIFY(outcome.bListOk);

    QStringList names;
    for (const FtpFileInfo& entry : outcome.entries)
        names.append(entry.name);
    names.sort();
    QStringList expected{QStringLiteral("link.nc"),  QStringLiteral("name with  spaces.nc"), QStringLiteral("old.nc"),
                         QStringLiteral("plain.nc"), QStringLiteral("中文 程序.nc"),         QStringLiteral("子目录")};
    expected.sort();
    QCOMPARE(names, expected);

    QCOMPARE(outcome.Entry(QStringLiteral("子目录"))->type, QStringLiteral("dir"));
    QCOMPARE(outcome.Entry(QStringLiteral("plain.nc"))->type, QStringLiteral("file"));
    QVERIFY(outcome.Entry(QStringLiteral("link.nc"))->type != QStringLiteral("dir"));
    QCOMPARE(outcome.Entry(QStringLiteral("name with  spaces.nc"))->size, 1234);
    QCOMPARE(outcome.Entry(QStringLiteral("中文 程序.nc"))->size, 3);
    QCOMPARE(outcome.Entry(QStringLiteral("old.nc"))->time.date(), oldTime.date());

    // MLSD carries seconds; LIST shows minutes at best. This tells which path was taken.
    const QDateTime written = QFileInfo(server->LocalPath(folder + QStringLiteral("/plain.nc"))).lastModified().toUTC();
    const QDateTime listed = outcome.Entry(QStringLiteral("plain.nc"))->time;
    if (server->OffersMlsd())
        QCOMPARE(listed.toSecsSinceEpoch(), written.toSecsSinceEpoch());
    else
        QVERIFY(qAbs(listed.secsTo(written)) < 24 * 3600 && listed.time().second() == 0);
}

void TestFtpListing::missingFolderFails()
{
    QString skip;
    TestFtpServer* server = m_fixture.CurrentServer(&skip);
    if (!server)
        QSKIP(qPrintable(skip));
    const QString dirPath = QStringLiteral("/no-such-folder/");
    const TaskOutcome outcome = FtpTestFixture::Run(
        new ListFtpDirectory(FtpTestFixture::PlainUrl(dirPath), FtpTestFixture::EncodedUrl(dirPath), dirPath));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY(!outcome.message.isEmpty());
    QCOMPARE(outcome.listSignals, 1);
    QVERIFY(!outcome.bListOk);
    QVERIFY(outcome.entries.isEmpty());
}

QTEST_GUILESS_MAIN(TestFtpListing)
#include "tst_ftp_listing.moc"
