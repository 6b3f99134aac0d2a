#include "FolderSyncPlan.h"

#include <QTest>

namespace {
// "name:size" for a file, "name/" for a folder.
QList<SyncEntry> Entries(const QStringList& rows)
{
    QList<SyncEntry> entries;
    for (const QString& row : rows) {
        if (row.endsWith(QLatin1Char('/'))) {
            entries.append({row.chopped(1), 0, QDateTime(), true});
            continue;
        }
        const QStringList parts = row.split(QLatin1Char(':'));
        // Times differ on purpose: they must never decide.
        entries.append(
            {parts.at(0), parts.at(1).toLongLong(), QDateTime::currentDateTime().addSecs(entries.size()), false});
    }
    return entries;
}

QStringList Paths(const QList<SyncEntry>& entries)
{
    QStringList paths;
    for (const SyncEntry& entry : entries)
        paths.append(entry.strRelPath);
    return paths;
}
} // namespace

class TestFolderSyncPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void difference_data();
    void difference();
};

void TestFolderSyncPlan::difference_data()
{
    QTest::addColumn<QStringList>("local");
    QTest::addColumn<QStringList>("machine");
    QTest::addColumn<QStringList>("upload");
    QTest::addColumn<QStringList>("download");
    QTest::addColumn<QStringList>("conflicts");
    QTest::addColumn<QStringList>("machineDirs");
    QTest::addColumn<QStringList>("localDirs");
    QTest::addColumn<QString>("leftOut"); // "type,hidden"

    QTest::newRow("equal names and sizes, times ignored")
        << QStringList{"a.nc:10", "b.NC:0"} << QStringList{"a.nc:10", "b.NC:0"} << QStringList() << QStringList()
        << QStringList() << QStringList() << QStringList() << QStringLiteral("0,0");
    QTest::newRow("one side only, both ways")
        << QStringList{"a.nc:1", "b.tap:2"} << QStringList{"b.tap:2", "c.mpf:3"} << QStringList{"a.nc"}
        << QStringList{"c.mpf"} << QStringList() << QStringList() << QStringList() << QStringLiteral("0,0");
    QTest::newRow("size differs is a conflict; case matters in names")
        << QStringList{"a.nc:1", "B.nc:5"} << QStringList{"a.nc:2", "b.nc:5"} << QStringList{"B.nc"}
        << QStringList{"b.nc"} << QStringList{"a.nc"} << QStringList() << QStringList() << QStringLiteral("0,0");
    QTest::newRow("hidden, unfinished and foreign types take no part")
        << QStringList{".hidden.nc:1", "tool.exe:4", "x.nc:1"}
        << QStringList{".x.nc.1f2e.part:1", "notes.doc:2", "x.nc:1"} << QStringList() << QStringList() << QStringList()
        << QStringList() << QStringList() << QStringLiteral("2,2");
    QTest::newRow("tree: missing folders at every depth, parents first, paths in order")
        << QStringList{"d/", "d/top.nc:1", "d/e/", "d/e/deep.nc:7", "s/"}
        << QStringList{"m/", "m/n/", "m/n/far.nc:3", "s/", "s/same.nc:2"} << QStringList{"d/e/deep.nc", "d/top.nc"}
        << QStringList{"m/n/far.nc", "s/same.nc"} << QStringList() << QStringList{"d", "d/e"} << QStringList{"m", "m/n"}
        << QStringLiteral("0,0");
    QTest::newRow("file on one side, folder on the other: left alone")
        << QStringList{"p.nc:1"} << QStringList{"p.nc/"} << QStringList() << QStringList() << QStringList()
        << QStringList() << QStringList() << QStringLiteral("0,0");
    QTest::newRow("inside a hidden folder nothing counts")
        << QStringList{".git/", ".git/x.nc:1"} << QStringList() << QStringList() << QStringList() << QStringList()
        << QStringList() << QStringList() << QStringLiteral("0,1");
}

void TestFolderSyncPlan::difference()
{
    QFETCH(QStringList, local);
    QFETCH(QStringList, machine);
    const FolderSyncPlan plan = FolderSyncPlan::Compute(Entries(local), Entries(machine));
    QTEST(Paths(plan.listUpload), "upload");
    QTEST(Paths(plan.listDownload), "download");
    QStringList conflicts;
    for (const SyncConflict& conflict : plan.listConflict) {
        QCOMPARE(conflict.local.strRelPath, conflict.machine.strRelPath);
        conflicts.append(conflict.local.strRelPath);
    }
    QTEST(conflicts, "conflicts");
    QTEST(plan.listMachineDirs, "machineDirs");
    QTEST(plan.listLocalDirs, "localDirs");
    QTEST(QStringLiteral("%1,%2").arg(plan.iLeftOutType).arg(plan.iLeftOutHidden), "leftOut");
    QFETCH(QStringList, upload);
    QFETCH(QStringList, download);
    QFETCH(QStringList, machineDirs);
    QFETCH(QStringList, localDirs);
    QCOMPARE(plan.IsEmpty(), upload.isEmpty() && download.isEmpty() && conflicts.isEmpty() && machineDirs.isEmpty() &&
                                 localDirs.isEmpty());
}

QTEST_APPLESS_MAIN(TestFolderSyncPlan)
#include "tst_FolderSyncPlan.moc"
