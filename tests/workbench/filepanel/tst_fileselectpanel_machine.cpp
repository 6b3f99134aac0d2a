#include "KorvBaseGlobals.h"
#include "SimWorkspaceFixture.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

class TestFileSelectPanelMachine : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private:
    bool ListRoot(FileSelectPanel& panel)
    {
        panel.SetMachineIp(QStringLiteral("127.0.0.1"));
        bool ok = false;
        return WaitForListing(
                   panel, [&] { panel.RefreshPanel(); }, &ok) &&
               ok;
    }

private Q_SLOTS:
    void initTestCase()
    {
        SetUpFixture();
        QDir root(m_rootDir.path());
        QVERIFY(root.mkpath(QStringLiteral("zdir/inner")));
        QVERIFY(root.mkpath(QStringLiteral("程序")));
        Write(root.filePath(QStringLiteral("a10.nc")), QByteArray(1536, 'x'));
        Write(root.filePath(QStringLiteral("a9.nc")), QByteArray(512, 'x'));
        Write(root.filePath(QStringLiteral("b.TAP")), QByteArray(20480, 'x'));
        Write(root.filePath(QStringLiteral("zdir/inner.nc")), QByteArray(1, 'x'));
        StartSimulator(DefaultSimOptions());
    }
    void cleanupTestCase() { TearDownFixture(); }
    void cleanup() { g_bTranslating = false; }

    void startsEmptyAndListsFoldersFirst()
    {
        FileSelectPanel panel(false);
        QCOMPARE(panel.TreeView()->model()->rowCount(), 0);
        QVERIFY(ListRoot(panel));
        const QStringList names = PanelNames(panel);
        QCOMPARE(names.size(), 5);
        QStringList folders = names.mid(0, 2);
        folders.sort();
        QCOMPARE(folders, (QStringList{"zdir", "程序"}));

        const QModelIndex file = PanelRow(panel, QStringLiteral("a10.nc"));
        QCOMPARE(file.data(FileItemRole::FullPath).toString(), QStringLiteral("/a10.nc"));
        QCOMPARE(file.data(FileItemRole::Size).toLongLong(), 1536);
        const QDateTime modified = QFileInfo(MachineFile(QStringLiteral("a10.nc"))).lastModified();
        // Machine times arrive in UTC with whole seconds and are shown in local time.
        QCOMPARE(file.data(FileItemRole::Time).toString(), modified.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    }

    void failedListingKeepsThePreviousRows()
    {
        FileSelectPanel panel(false);
        QVERIFY(ListRoot(panel));
        const QStringList before = PanelNames(panel);
        QSignalSpy logs(&panel, &FileSelectPanel::SignalAppendLog);
        auto* edit = panel.findChild<QLineEdit*>(QStringLiteral("pathLineEdit"));
        bool ok = true;
        QVERIFY(WaitForListing(
            panel,
            [&] {
                panel.showPathEdit();
                edit->setText(QStringLiteral("/no such folder"));
                panel.SlotPathEditReturnPressed();
                // While the listing runs, only the placeholder shows.
                QCOMPARE(PanelNames(panel), QStringList{"加载中..."});
                QCOMPARE(panel.CurrentPath(), QStringLiteral("/no such folder"));
            },
            &ok));
        QVERIFY(!ok);
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/"));
        QCOMPARE(PanelNames(panel), before);
        // The failure, then the server's reason for it.
        QTRY_COMPARE(logs.count(), 2);
        QCOMPARE(logs.at(0).at(0).toString(), QStringLiteral("获取机床文件列表失败！"));
        QVERIFY2(logs.at(1).at(0).toString().startsWith(QStringLiteral("获取文件列表失败：")),
                 qPrintable(logs.at(1).at(0).toString()));
    }

    void navigatesAndRefusesWhileATransferRuns()
    {
        FileSelectPanel panel(false);
        QVERIFY(ListRoot(panel));
        QVERIFY(WaitForListing(panel, [&] { panel.SlotTreeDoubleClicked(PanelRow(panel, QStringLiteral("zdir"))); }));
        QCOMPARE(PanelRow(panel, QStringLiteral("inner.nc")).data(FileItemRole::FullPath).toString(),
                 QStringLiteral("/zdir/inner.nc"));
        const QStringList rows = PanelNames(panel);

        g_bTranslating = true;
        QSignalSpy listings(&panel, &FileSelectPanel::SignalListingFinished);
        QSignalSpy logs(&panel, &FileSelectPanel::SignalAppendLog);
        panel.RefreshPanel();
        panel.on_m_btnUp_clicked();
        panel.on_m_btnFront_clicked();
        panel.SlotTreeDoubleClicked(PanelRow(panel, QStringLiteral("inner")));
        panel.NavigateAndHighlightFolder(QStringLiteral("/"), QStringLiteral("程序"));
        QTest::qWait(50);
        QCOMPARE(listings.count(), 0);
        QCOMPARE(logs.count(), 5);
        for (const QList<QVariant>& log : logs)
            QCOMPARE(log.at(0).toString(), QStringLiteral("当前FTP正在进行文件传输，无法访问机器文件！"));
        QCOMPARE(PanelNames(panel), rows);
        QCOMPARE(panel.HistoryPaths(), (QStringList{"/", "/zdir"}));

        g_bTranslating = false;
        // A file row does nothing on double click; up at the machine root does nothing either.
        panel.SlotTreeDoubleClicked(PanelRow(panel, QStringLiteral("inner.nc")));
        QVERIFY(WaitForListing(panel, [&] { panel.on_m_btnUp_clicked(); }));
        panel.on_m_btnUp_clicked();
        QCOMPARE(panel.HistoryPaths(), (QStringList{"/", "/zdir", "/"}));
        QCOMPARE(listings.count(), 1);
    }

    void locatesUploadedFileAndNavigatedFolder()
    {
        FileSelectPanel panel(false);
        panel.SetFlashInterval(1);
        QVERIFY(ListRoot(panel));
        panel.LocateAndHighlightFile(QStringLiteral("b.TAP"));
        QVERIFY(WaitForListing(panel, [&] { panel.RefreshPanel(); }));
        QTRY_COMPARE(panel.TreeView()->currentIndex().data(FileItemRole::Name).toString(), QStringLiteral("b.TAP"));
        QTRY_VERIFY(panel.TreeView()->selectionModel()->isSelected(panel.TreeView()->currentIndex()));

        QVERIFY(WaitForListing(
            panel, [&] { panel.NavigateAndHighlightFolder(QStringLiteral("/zdir"), QStringLiteral("inner")); }));
        QCOMPARE(panel.CurrentPath(), QStringLiteral("/zdir"));
        QCOMPARE(panel.HistoryPaths().last(), QStringLiteral("/zdir"));
        QTRY_COMPARE(panel.TreeView()->currentIndex().data(FileItemRole::Name).toString(), QStringLiteral("inner"));

        // The pending names were used up: a later listing selects nothing by itself.
        panel.TreeView()->clearSelection();
        QVERIFY(WaitForListing(panel, [&] { panel.RefreshPanel(); }));
        QTest::qWait(20);
        QVERIFY(panel.TreeView()->selectionModel()->selectedRows().isEmpty());
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
