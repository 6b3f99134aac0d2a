#include "CVarnokMessageBox.h"
#include "SimWorkspaceFixture.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileSortProxyModel.h"
#include "filepanel/FileTreeView.h"

#include <QApplication>
#include <QDesktopServices>
#include <QHeaderView>
#include <QLineEdit>
#include <QLocalServer>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <sys/stat.h>

namespace {
// Receives the open requests that QDesktopServices would hand to the desktop.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> listUrls;

public Q_SLOTS:
    void Open(const QUrl& url) { listUrls.append(url); }
};
} // namespace

class TestFileSelectPanelLocal : public QObject
{
    Q_OBJECT

private:
    QString m_strHome; // the test's own home folder, set in main()
    QString m_strRoot; // a folder with known content

    // Runs an action that lists a folder and waits until the rows are in.
    bool Listed(FileSelectPanel& panel, const std::function<void()>& action)
    {
        return SimWorkspaceFixture::WaitForListing(panel, action);
    }

    void EditPath(FileSelectPanel& panel, const QString& text)
    {
        auto* edit = panel.findChild<QLineEdit*>(QStringLiteral("pathLineEdit"));
        QVERIFY(edit);
        panel.showPathEdit();
        edit->setText(text);
        panel.SlotPathEditReturnPressed();
        panel.SlotPathEditFinished();
    }

    bool GoTo(FileSelectPanel& panel, const QString& path)
    {
        return Listed(panel, [&] { EditPath(panel, path); });
    }

    QPushButton* Button(FileSelectPanel& panel, const char* name)
    {
        return panel.findChild<QPushButton*>(QLatin1String(name));
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_strHome = qEnvironmentVariable("HOME");
        // Desktop and downloads exist, documents does not.
        for (const char* folder : {"Desktop", "Downloads", "root"})
            QVERIFY(QDir(m_strHome).mkpath(QLatin1String(folder)));
        m_strRoot = (m_strHome + "/" + QStringLiteral("root"));
        QDir root(m_strRoot);
        for (const char* name : {"part10.nc", "part9.NC", "notes.Tap", "tool.exe", "README", ".hidden.nc"})
            SimWorkspaceFixture::Write(root.filePath(QLatin1String(name)), "x");
        QVERIFY(root.mkpath(QStringLiteral("sub.exe/deeper")));
        QVERIFY(root.mkpath(QStringLiteral("folder2")));
        // Entries that a file manager does not show.
        QVERIFY(QFile::link(root.filePath(QStringLiteral("gone")), root.filePath(QStringLiteral("broken-link"))));
        QCOMPARE(::mkfifo(QFile::encodeName(root.filePath(QStringLiteral("fifo"))).constData(), 0600), 0);
        QLocalServer::removeServer(root.filePath(QStringLiteral("socket")));
        auto* server = new QLocalServer(this);
        QVERIFY(server->listen(root.filePath(QStringLiteral("socket"))));
    }

    void startsInComputerView()
    {
        FileSelectPanel panel(true);
        QCOMPARE(panel.HistoryPaths(), QStringList{QString()});
        const QStringList names = SimWorkspaceFixture::PanelNames(panel);
        QCOMPARE(names.mid(0, 2), (QStringList{"桌面", "下载"})); // documents is missing
        QVERIFY2(names.size() >= 3, "at least one volume");
        const QModelIndex volume = panel.TreeView()->model()->index(2, 0);
        QVERIFY(QFileInfo(volume.data(FileItemRole::FullPath).toString()).isDir());

        // The computer view cannot be sorted.
        panel.SlotHeaderClicked(3);
        QVERIFY(!panel.TreeView()->header()->isSortIndicatorShown());
        QCOMPARE(panel.SortModel()->SortRoleValue(), 0);
    }

    void filterHidesOtherFileTypesOnly()
    {
        FileSelectPanel panel(true);
        QVERIFY(GoTo(panel, m_strRoot));
        QSignalSpy selected(&panel, &FileSelectPanel::SignalItemSelected);
        QVERIFY(Listed(panel, [&] { panel.on_filiterBox_checkStateChanged(Qt::Checked); }));
        QStringList names = SimWorkspaceFixture::PanelNames(panel).mid(2);
        names.sort();
        QCOMPARE(names, (QStringList{".hidden.nc", "folder2", "notes.Tap", "part10.nc", "part9.NC", "sub.exe"}));
        // The naming lists still know every entry.
        QCOMPARE(panel.FileNames().size(), 6);
        QCOMPARE(selected.count(), 1);
        QCOMPARE(selected.at(0).at(0).value<StructItemInfo>().path, m_strRoot);

        QVERIFY(Listed(panel, [&] { panel.on_filiterBox_checkStateChanged(Qt::Unchecked); }));
        QCOMPARE(SimWorkspaceFixture::PanelNames(panel).size(), 2 + 8);
    }

    void historyDropsLaterEntriesAndUnlockEnablesBoth()
    {
        FileSelectPanel panel(true);
        const QString d1 = m_strRoot, d2 = m_strRoot + "/sub.exe", d3 = m_strRoot + "/sub.exe/deeper";
        const QString d4 = m_strRoot + "/folder2";
        for (const QString& folder : {d1, d2, d3})
            QVERIFY(GoTo(panel, folder));
        QCOMPARE(panel.HistoryPaths(), (QStringList{QString(), d1, d2, d3}));
        QVERIFY(!Button(panel, "m_btnBack")->isEnabled());

        QSignalSpy selected(&panel, &FileSelectPanel::SignalItemSelected);
        for (int step = 0; step < 3; ++step)
            QVERIFY(Listed(panel, [&] { panel.on_m_btnFront_clicked(); }));
        QVERIFY(panel.IsComputerView());
        QVERIFY(!Button(panel, "m_btnFront")->isEnabled());
        QVERIFY(Listed(panel, [&] { panel.on_m_btnBack_clicked(); }));
        QCOMPARE(panel.HistoryIndex(), 1);
        QCOMPARE(selected.last().at(0).value<StructItemInfo>().path, d1);

        // A navigation from the middle drops d2 and d3.
        QVERIFY(GoTo(panel, d4));
        QCOMPARE(panel.HistoryPaths(), (QStringList{QString(), d1, d4}));
        QCOMPARE(panel.HistoryIndex(), 2);
        QVERIFY(!Button(panel, "m_btnBack")->isEnabled());

        for (const bool locked : {true, false}) {
            panel.SetPanelLocked(locked);
            for (const char* name : {"m_btnFront", "m_btnBack", "m_btnUp", "m_btnReset"})
                QVERIFY2(Button(panel, name)->isEnabled() != locked, name);
        }
        // Stepping recomputes them.
        QVERIFY(Listed(panel, [&] { panel.on_m_btnFront_clicked(); }));
        QVERIFY(Listed(panel, [&] { panel.on_m_btnBack_clicked(); }));
        QVERIFY(!Button(panel, "m_btnBack")->isEnabled());
    }

    void upAndComputerEntryReachTheComputerView()
    {
        FileSelectPanel panel(true);
        panel.resize(800, 400);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        // The file-system root is a folder like any other; up from it is the computer view.
        QVERIFY(GoTo(panel, QStringLiteral("/tmp")));
        QVERIFY(Listed(panel, [&] { panel.on_m_btnUp_clicked(); }));
        QCOMPARE(SimWorkspaceFixture::PanelRow(panel, QStringLiteral("tmp")).data(FileItemRole::FullPath).toString(),
                 QStringLiteral("/tmp"));
        QVERIFY(Listed(panel, [&] { panel.on_m_btnUp_clicked(); }));
        QVERIFY(panel.IsComputerView());
        const int depth = panel.HistoryPaths().size();
        panel.on_m_btnUp_clicked();
        QCOMPARE(panel.HistoryPaths().size(), depth);

        // A press on the computer entry goes home, unless the panel is locked.
        QVERIFY(GoTo(panel, m_strRoot));
        panel.SetPanelLocked(true);
        QTest::mouseClick(panel.findChild<QWidget*>(QStringLiteral("m_labelComputer")), Qt::LeftButton);
        QCOMPARE(panel.CurrentPath(), m_strRoot);
        panel.SetPanelLocked(false);
        QTest::mouseClick(panel.findChild<QWidget*>(QStringLiteral("m_labelComputer")), Qt::LeftButton);
        QCOMPARE(panel.HistoryPaths().last(), QString());
    }

    void doubleClickOpensFoldersAndFiles()
    {
        UrlCatcher catcher;
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &catcher, "Open");
        FileSelectPanel panel(true);
        QVERIFY(GoTo(panel, m_strRoot));
        panel.SlotTreeDoubleClicked(SimWorkspaceFixture::PanelRow(panel, QStringLiteral("part10.nc")));
        QCOMPARE(catcher.listUrls, QList<QUrl>{QUrl::fromLocalFile(m_strRoot + QStringLiteral("/part10.nc"))});

        QVERIFY(Listed(
            panel, [&] { panel.SlotTreeDoubleClicked(SimWorkspaceFixture::PanelRow(panel, QStringLiteral("下载"))); }));
        QCOMPARE(panel.CurrentPath(), (m_strHome + "/" + QStringLiteral("Downloads")));
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    void missingEntriesAreReportedInBoxes()
    {
        QList<StructMsgBoxRequest> boxes;
        CVarnokMessageBox::SetTestResponder([&boxes](const StructMsgBoxRequest& request) {
            boxes.append(request);
            return StructMsgBoxAnswer{MsgButtonConfirm, false};
        });
        QTemporaryDir folder;
        QDir dir(folder.path());
        SimWorkspaceFixture::Write(dir.filePath(QStringLiteral("gone.nc")), "x");
        SimWorkspaceFixture::Write(dir.filePath(QStringLiteral("now-a-folder.nc")), "x");
        QVERIFY(dir.mkpath(QStringLiteral("gone-folder")));
        FileSelectPanel panel(true);
        QVERIFY(GoTo(panel, folder.path()));
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("gone.nc"))));
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("now-a-folder.nc"))));
        QVERIFY(dir.mkpath(QStringLiteral("now-a-folder.nc")));
        QVERIFY(dir.rmdir(QStringLiteral("gone-folder")));
        const QStringList history = panel.HistoryPaths();

        for (const char* name : {"gone.nc", "now-a-folder.nc", "gone-folder"})
            panel.SlotTreeDoubleClicked(SimWorkspaceFixture::PanelRow(panel, QLatin1String(name)));
        panel.SlotTreeDoubleClicked(QModelIndex());
        QTRY_COMPARE(boxes.size(), 3);
        QStringList texts;
        for (const StructMsgBoxRequest& box : boxes)
            texts.append(box.strText);
        QCOMPARE(texts, (QStringList{"文件不存在或无权限访问。", "所选路径不是文件。", "目录不存在或无权限访问。"}));
        QCOMPARE(panel.HistoryPaths(), history);

        // A mistyped path is answered a moment later, after the editor has closed; an empty one not at all.
        boxes.clear();
        EditPath(panel, QString());
        EditPath(panel, folder.path() + QStringLiteral("/nowhere"));
        QVERIFY(boxes.isEmpty());
        QTRY_COMPARE(boxes.size(), 1);
        QCOMPARE(boxes.at(0).strText,
                 QStringLiteral("找不到路径\"%1\",请检查拼写并重试。").arg(folder.path() + "/nowhere"));
        QCOMPARE(panel.HistoryPaths(), history);
        CVarnokMessageBox::SetTestResponder({});
    }

    void bigFolderListsOffTheGuiThreadInSlices()
    {
        QTemporaryDir big;
        for (int i = 0; i < 6000; ++i) {
            SimWorkspaceFixture::Write(big.filePath(QStringLiteral("f%1.nc").arg(i)), "x");
        }
        FileSelectPanel panel(true);
        QAbstractItemModel* rows = panel.TreeView()->model();
        QList<int> rowsWhenFinished;
        connect(&panel, &FileSelectPanel::SignalListingFinished, this,
                [&] { rowsWhenFinished.append(rows->rowCount()); });
        panel.SelectAfterListing(QStringLiteral("f5999.nc"));
        EditPath(panel, big.path());
        // The path is current at once; the rows follow when the read is done.
        QCOMPARE(panel.CurrentPath(), big.path());
        QCOMPARE(SimWorkspaceFixture::PanelNames(panel).last(), QStringLiteral("加载中..."));
        // Finished once, with every slice in, and only then the pending name selected.
        QTRY_COMPARE_WITH_TIMEOUT(rowsWhenFinished, QList<int>{2 + 6000}, 10000);
        QTRY_COMPARE(panel.TreeView()->currentIndex().data(FileItemRole::Name).toString(), QStringLiteral("f5999.nc"));

        // A newer listing started between two slices drops the rest of the older one.
        connect(rows, &QAbstractItemModel::rowsInserted, this, [&](const QModelIndex&, int first, int last) {
            if (last - first > 100 && panel.CurrentPath() == big.path()) {
                QTimer::singleShot(0, this, [&] { EditPath(panel, m_strRoot); });
            }
        });
        EditPath(panel, big.path());
        QTRY_COMPARE_WITH_TIMEOUT(rowsWhenFinished.size(), 2, 10000);
        QTest::qWait(100);
        QCOMPARE(rowsWhenFinished.size(), 2);
        QCOMPARE(panel.CurrentPath(), m_strRoot);
        QVERIFY(rowsWhenFinished.last() < 100 && rows->rowCount() == rowsWhenFinished.last());
    }
};

int main(int argc, char** argv)
{
    // The quick-access rows come from the user's folders; give the test its own.
    static QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    qputenv("KORV_CONFIG_DIR", (home.path() + "/korv").toUtf8());
    QApplication app(argc, argv);
    TestFileSelectPanelLocal test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_fileselectpanel_local.moc"
