#include "SimPathJail.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

class tst_SimPathJail : public QObject
{
    Q_OBJECT
private slots:
    void resolve_data();
    void resolve();
    void linksOutOfTheRootAreOutside();
};

void tst_SimPathJail::resolve_data()
{
    QTest::addColumn<QString>("cwd");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("expected");
    QTest::newRow("relative") << "/a"
                              << "b.nc" << true << "/a/b.nc";
    QTest::newRow("absolute-is-from-root") << "/a"
                                           << "/etc/passwd" << true << "/etc/passwd";
    QTest::newRow("dot-and-double-slash") << "/"
                                          << "./a//b/." << true << "/a/b";
    QTest::newRow("dotdot-inside") << "/a/b"
                                   << "../c" << true << "/a/c";
    QTest::newRow("dotdot-to-root") << "/a"
                                    << ".." << true << "/";
    QTest::newRow("dotdot-above-root") << "/"
                                       << ".." << false << "";
    QTest::newRow("dotdot-above-root-deep") << "/a"
                                            << "../../x" << false << "";
    QTest::newRow("absolute-dotdot") << "/a"
                                     << "/../x" << false << "";
    QTest::newRow("backslash") << "/"
                               << "..\\x" << false << "";
    QTest::newRow("line-break") << "/"
                                << "a\r\nDELE b" << false << "";
    QTest::newRow("chinese") << "/"
                             << "程序/零件.nc" << true << "/程序/零件.nc";
}

void tst_SimPathJail::resolve()
{
    QFETCH(QString, cwd);
    QFETCH(QString, path);
    QFETCH(bool, ok);
    QFETCH(QString, expected);
    const SimPathJail jail(QDir::tempPath());
    QString result;
    QCOMPARE(jail.Resolve(cwd, path, &result), ok);
    if (ok)
        QCOMPARE(result, expected);
}

void tst_SimPathJail::linksOutOfTheRootAreOutside()
{
    QTemporaryDir outside;
    QTemporaryDir root;
    QVERIFY(QDir(root.path()).mkdir("sub"));
    QVERIFY(QFile::link(outside.path(), root.filePath("out")));
    QVERIFY(QFile::link(root.filePath("sub"), root.filePath("in")));
    QVERIFY(QFile::link(root.filePath("missing"), root.filePath("dangling")));
    // Relative links: the kernel's one-call resolution judges these without the slow check.
    QVERIFY(::symlink("sub", QFile::encodeName(root.filePath("near")).constData()) == 0);
    QVERIFY(::symlink("../..", QFile::encodeName(root.filePath("sub/up")).constData()) == 0);
    const SimPathJail jail(root.path());
    QVERIFY(jail.IsInside(jail.LocalPath("/near/new.nc")));
    QVERIFY(!jail.IsInside(jail.LocalPath("/sub/up")));
    QVERIFY(!jail.IsInside(jail.LocalPath("/sub/up/new.nc")));
    QVERIFY(jail.IsEntryInside(QFileInfo(root.filePath("near"))));
    QVERIFY(!jail.IsEntryInside(QFileInfo(root.filePath("sub/up"))));
    QVERIFY(jail.IsInside(jail.LocalPath("/")));
    QVERIFY(jail.IsInside(jail.LocalPath("/sub/new.nc")));
    QVERIFY(jail.IsInside(jail.LocalPath("/in/new.nc")));
    QVERIFY(!jail.IsInside(jail.LocalPath("/out")));
    QVERIFY(!jail.IsInside(jail.LocalPath("/out/new.nc")));
    QVERIFY(!jail.IsInside(jail.LocalPath("/dangling")));
    QVERIFY(!jail.IsInside(jail.LocalPath("/nofolder/new.nc")));
}

QTEST_GUILESS_MAIN(tst_SimPathJail)
#include "tst_SimPathJail.moc"
