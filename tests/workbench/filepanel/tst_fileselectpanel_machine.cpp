#include "KorvBaseGlobals.h"
#include "MachinePanelFixture.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using Fixture = MachinePanelFixture;

class TestFileSelectPanelMachine : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    Fixture m_fixture;

    bool ListRoot(FileSelectPanel& panel)
    {
        panel.SetMachineIp(QStringLiteral("127.0.0.1"));
        bool ok = false;
        return Fixture::WaitForListing(
                   panel, [&] { panel.RefreshPanel(); }, &ok) &&
               ok;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QDir root(m_root.path());
        QVERIFY(root.mkpath(QStringLiteral("zdir/inner")));
        QVERIFY(root.mkpath(QStringLiteral("程序")));
        Fixture::WriteFile(root.filePath(QStringLiteral("a10.nc")), 1536);
        Fixture::WriteFile(root.filePath(QStringLiteral("a9.nc")), 512);
        Fixture::WriteFile(root.filePath(QStringLiteral("b.TAP")), 20480);
        Fixture::WriteFile(root.filePath(QStringLiteral("zdir/inner.nc")), 1);
        QString error;
        QVERIFY2(m_fixture.Start(m_root.path(), &error), qPrintable(error));
    }
    void cleanupTestCase() { m_fixture.Stop(); }
    void cleanup() { g_bTranslating = false; }

    void startsEmptyAndListsFoldersFirst()
    {
        FileSelectPanel panel(false);
        QCOMPARE(panel.TreeView()->model()->rowCount(), 0);
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/"));
        QVERIFY(ListRoot(panel));
        const QStringList names = Fixture::ShownNames(panel);
        QCOMPARE(names.size(), 5);
        QStringList folders = names.mid(0, 2);
        folders.sort();
        QCOMPARE(folders, (QStringList{"zdir", "程序"}));

        const QModelIndex file = Fixture::RowNamed(panel, QStringLiteral("a10.nc"));
        QCOMPARE(file.data(FileItemRole::FullPath).toString(), QStringLiteral("/a10.nc"));
        QCOMPARE(file.data(FileItemRole::SizeText).toString(), QStringLiteral("1.50 KB"));
        QCOMPARE(file.data(FileItemRole::Size).toLongLong(), 1536);
        QCOMPARE(file.data(FileItemRole::Type).toString(), QStringLiteral(".nc"));
        const QDateTime modified = QFileInfo(m_root.filePath(QStringLiteral("a10.nc"))).lastModified();
        // Machine times arrive in UTC with whole seconds and are shown in local time.
        QCOMPARE(file.data(FileItemRole::Time).toString(), modified.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
        QCOMPARE(Fixture::RowNamed(panel, QStringLiteral("zdir")).data(FileItemRole::Kind).toInt(),
                 int(FileItemKind::Folder));

        panel.SlotHeaderClicked(0);
        QCOMPARE(Fixture::ShownNames(panel).mid(2), (QStringList{"a9.nc", "a10.nc", "b.TAP"}));
    }

    void navigatesFoldersUpAndHistory()
    {
        FileSelectPanel panel(false);
        QVERIFY(ListRoot(panel));
        bool ok = false;
        QVERIFY(Fixture::WaitForListing(
            panel, [&] { panel.SlotTreeDoubleClicked(Fixture::RowNamed(panel, QStringLiteral("zdir"))); }, &ok));
        QVERIFY(ok);
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));
        QCOMPARE(panel.HistoryPaths(), (QStringList{"/", "/zdir"}));
        QCOMPARE(Fixture::RowNamed(panel, QStringLiteral("inner.nc")).data(FileItemRole::FullPath).toString(),
                 QStringLiteral("/zdir/inner.nc"));
        QCOMPARE(Fixture::ShownNames(panel).first(), QStringLiteral("inner"));

        // A file row does nothing on double click.
        QSignalSpy listings(&panel, &FileSelectPanel::SignalListingFinished);
        panel.SlotTreeDoubleClicked(Fixture::RowNamed(panel, QStringLiteral("inner.nc")));
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));

        QVERIFY(Fixture::WaitForListing(panel, [&] { panel.on_m_btnUp_clicked(); }));
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/"));
        QCOMPARE(panel.HistoryPaths(), (QStringList{"/", "/zdir", "/"}));
        // Up at the machine root does nothing.
        panel.on_m_btnUp_clicked();
        QCOMPARE(panel.HistoryPaths().size(), 3);

        QVERIFY(Fixture::WaitForListing(panel, [&] { panel.on_m_btnFront_clicked(); }));
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));
        QCOMPARE(listings.count(), 2);
    }

    void failedListingKeepsThePreviousRows()
    {
        FileSelectPanel panel(false);
        QVERIFY(ListRoot(panel));
        const QStringList before = Fixture::ShownNames(panel);
        QSignalSpy logs(&panel, &FileSelectPanel::SignalAppendLog);
        auto* edit = panel.findChild<QLineEdit*>(QStringLiteral("pathLineEdit"));
        bool ok = true;
        QVERIFY(Fixture::WaitForListing(
            panel,
            [&] {
                panel.showPathEdit();
                edit->setText(QStringLiteral("/no such folder"));
                panel.SlotPathEditReturnPressed();
                // While the listing runs, only the placeholder shows.
                QCOMPARE(Fixture::ShownNames(panel), QStringList{"加载中..."});
                QCOMPARE(panel.CurrentPath(), QStringLiteral("/no such folder"));
            },
            &ok));
        QVERIFY(!ok);
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/"));
        QCOMPARE(Fixture::ShownNames(panel), before);
        // The failure, then the server's reason for it.
        QTRY_COMPARE(logs.count(), 2);
        QCOMPARE(logs.at(0).at(0).toString(), QStringLiteral("获取机床文件列表失败！"));
        QCOMPARE(logs.at(0).at(1).value<QColor>(), QColor(220, 50, 50));
        QVERIFY2(logs.at(1).at(0).toString().startsWith(QStringLiteral("获取文件列表失败：")),
                 qPrintable(logs.at(1).at(0).toString()));
    }

    void refusesWhileATransferRuns()
    {
        FileSelectPanel panel(false);
        QVERIFY(ListRoot(panel));
        QVERIFY(Fixture::WaitForListing(
            panel, [&] { panel.SlotTreeDoubleClicked(Fixture::RowNamed(panel, QStringLiteral("zdir"))); }));
        const QStringList rows = Fixture::ShownNames(panel);
        const QStringList history = panel.HistoryPaths();

        g_bTranslating = true;
        QSignalSpy listings(&panel, &FileSelectPanel::SignalListingFinished);
        QSignalSpy logs(&panel, &FileSelectPanel::SignalAppendLog);
        panel.RefreshPanel();
        panel.on_m_btnUp_clicked();
        panel.on_m_btnFront_clicked();
        panel.SlotTreeDoubleClicked(Fixture::RowNamed(panel, QStringLiteral("inner")));
        panel.NavigateAndHighlightFolder(QStringLiteral("/"), QStringLiteral("程序"));
        QTest::qWait(50);
        QCOMPARE(listings.count(), 0);
        QCOMPARE(logs.count(), 5);
        for (const QList<QVariant>& log : logs) {
            QCOMPARE(log.at(0).toString(), QStringLiteral("当前FTP正在进行文件传输，无法访问机器文件！"));
        }
        QCOMPARE(Fixture::ShownNames(panel), rows);
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));
        QCOMPARE(panel.HistoryPaths(), history);

        g_bTranslating = false;
        QVERIFY(Fixture::WaitForListing(panel, [&] { panel.RefreshPanel(); }));
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));
    }

    void locatesUploadedFileAndNavigatedFolder()
    {
        FileSelectPanel panel(false);
        panel.SetFlashInterval(1);
        QVERIFY(ListRoot(panel));
        panel.LocateAndHighlightFile(QStringLiteral("b.TAP"));
        QVERIFY(Fixture::WaitForListing(panel, [&] { panel.RefreshPanel(); }));
        QTRY_COMPARE(panel.TreeView()->currentIndex().data(FileItemRole::Name).toString(), QStringLiteral("b.TAP"));
        QTRY_VERIFY(panel.TreeView()->selectionModel()->isSelected(panel.TreeView()->currentIndex()));

        QVERIFY(Fixture::WaitForListing(
            panel, [&] { panel.NavigateAndHighlightFolder(QStringLiteral("/zdir"), QStringLiteral("inner")); }));
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));
        QCOMPARE(panel.HistoryPaths().last(), QStringLiteral("/zdir"));
        QTRY_COMPARE(panel.TreeView()->currentIndex().data(FileItemRole::Name).toString(), QStringLiteral("inner"));

        // The pending names were used up: a later listing selects nothing by itself.
        panel.TreeView()->clearSelection();
        QVERIFY(Fixture::WaitForListing(panel, [&] { panel.RefreshPanel(); }));
        QTest::qWait(20);
        QVERIFY(panel.TreeView()->selectionModel()->selectedRows().isEmpty());
    }

    void clearPanelDropsRowsAndHistory()
    {
        FileSelectPanel panel(false);
        QVERIFY(ListRoot(panel));
        panel.ClearPanel();
        QCOMPARE(panel.TreeView()->model()->rowCount(), 0);
        QCOMPARE(panel.HistoryPaths(), QStringList{"/"});
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/"));
    }
};

int main(int argc, char** argv)
{
    static QTemporaryDir config;
    qputenv("KORV_CONFIG_DIR", config.path().toUtf8());
    QApplication app(argc, argv);
    TestFileSelectPanelMachine test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_fileselectpanel_machine.moc"
