#include "FtpTestFixture.h"

#include <DeleteFtpItems.h>
#include <FtpConnection.h>
#include <MakeFtpDirection.h>
#include <QFileInfo>
#include <QTest>
#include <RenameFtpFile.h>
#include <tuple>

class TestFtpFileOps : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void batchDeleteContinuesPastFailures_data() { FtpTestFixture::AddServerRows(); }
    void batchDeleteContinuesPastFailures();
    void renamesFileAndFolder_data() { FtpTestFixture::AddServerRows(); }
    void renamesFileAndFolder();
    void makesFolders_data() { FtpTestFixture::AddServerRows(); }
    void makesFolders();

private:
    bool Exists(const QString& remotePath) const { return QFileInfo::exists(m_pServer->LocalPath(remotePath)); }

    FtpTestFixture m_fixture;
    TestFtpServer* m_pServer = nullptr;
};

void TestFtpFileOps::init()
{
    QString skip;
    if (!(m_pServer = m_fixture.CurrentServer(&skip)))
        QSKIP(qPrintable(skip));
}

// Files and whole trees go in one task, which reports a missing item but deletes the rest; the
// tree's neighbour stays.
void TestFtpFileOps::batchDeleteContinuesPastFailures()
{
    const QString base = m_fixture.NewRemoteFolder(m_pServer, QStringLiteral("batch"));
    for (const char* dir : {"/a/b/c", "/a", "/a/b", "/a/b/d", "/empty"})
        QVERIFY(m_pServer->MakeDir(base + QLatin1String(dir)));
    for (const QString& file : {QStringLiteral("/a/1.nc"), QStringLiteral("/a/b/2.nc"),
                                QStringLiteral("/a/b/c/中文 3.nc"), QStringLiteral("/keep.nc")})
        QVERIFY(m_pServer->WriteFile(base + file, file.toUtf8()));
    const QStringList files{base + QStringLiteral("/x.nc"), base + QStringLiteral("/missing.nc"),
                            base + QStringLiteral("/删除 我.nc")};
    const QStringList folders{base + QStringLiteral("/a"), base + QStringLiteral("/empty")};
    QVERIFY(m_pServer->WriteFile(files[0], "x") && m_pServer->WriteFile(files[2], "y"));

    TaskOutcome outcome = FtpTestFixture::Run(new DeleteFtpItems(QStringLiteral("ftp://127.0.0.1:21/"),
                                                                 FtpTestFixture::EncodedUrl(QStringLiteral("/")), files,
                                                                 folders, QStringLiteral("127.0.0.1")));
    QVERIFY(outcome.bFinished);
    QVERIFY(!outcome.bOk);
    QVERIFY2(outcome.message.contains(QStringLiteral("missing.nc")), qPrintable(outcome.message));
    for (const QString& gone : files + folders)
        QVERIFY2(!Exists(gone), qPrintable(gone));
    QVERIFY(Exists(base + QStringLiteral("/keep.nc")));

    QVERIFY(m_pServer->WriteFile(base + QStringLiteral("/z.nc"), "z"));
    outcome =
        FtpTestFixture::Run(new DeleteFtpItems(QStringLiteral("ftp://127.0.0.1:21/"), QString(),
                                               {base + QStringLiteral("/z.nc")}, {}, QStringLiteral("127.0.0.1")));
    QVERIFY2(outcome.bOk, qPrintable(outcome.message));
    QVERIFY(!Exists(base + QStringLiteral("/z.nc")));
}

void TestFtpFileOps::renamesFileAndFolder()
{
    const QString base = m_fixture.NewRemoteFolder(m_pServer, QStringLiteral("rename"));
    QVERIFY(m_pServer->WriteFile(base + QStringLiteral("/old name.nc"), "content"));
    QVERIFY(m_pServer->MakeDir(base + QStringLiteral("/dir")));

    const std::tuple<QString, QString, bool> cases[] = {
        {base + QStringLiteral("/old name.nc"), base + QStringLiteral("/新 名字.nc"), true},
        {base + QStringLiteral("/dir"), base + QStringLiteral("/目录2"), true},
        {base + QStringLiteral("/absent.nc"), base + QStringLiteral("/whatever.nc"), false},
    };
    for (const auto& [from, to, bOk] : cases) {
        auto* task = new RenameFtpFile(FtpTestFixture::PlainUrl(from), FtpTestFixture::PlainUrl(to), from);
        task->SetFilePath(from, to);
        const TaskOutcome outcome = FtpTestFixture::Run(task);
        QVERIFY(outcome.bFinished);
        QCOMPARE(outcome.bOk, bOk);
        QCOMPARE(Exists(to), bOk);
        QVERIFY(!Exists(from));
    }
}

void TestFtpFileOps::makesFolders()
{
    const QString folder = m_fixture.NewRemoteFolder(m_pServer, QStringLiteral("mkd")) + QStringLiteral("/新建 文件夹");
    for (bool bNew : {true, false}) { // the second time it is there already
        const TaskOutcome outcome = FtpTestFixture::Run(
            new MakeFtpDirection(FtpTestFixture::PlainUrl(folder), FtpTestFixture::EncodedUrl(folder), folder));
        QVERIFY2(outcome.bOk == bNew, qPrintable(outcome.message));
        QVERIFY(QFileInfo(m_pServer->LocalPath(folder)).isDir());
    }

    const QString second = folder + QStringLiteral("/sub");
    QVERIFY(makeFtpDirection(QStringLiteral("127.0.0.1"), second));
    QVERIFY(QFileInfo(m_pServer->LocalPath(second)).isDir());
}

QTEST_GUILESS_MAIN(TestFtpFileOps)
#include "tst_ftp_fileops.moc"
