#include "CVarnokMessageBox.h"
#include "SimWorkspaceFixture.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "filepanel/MachineFileRequests.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

// Both panels in a shown window, driven by keys and by their context menu: what lands on
// the clipboard, on the disk, in the trash, and which requests leave for the workspace.
class TestFilePanelOperations : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private:
    MachineFileRequests m_requests;
    QWidget m_window;
    FileSelectPanel* m_pLocal = nullptr;
    FileSelectPanel* m_pMachine = nullptr;

    void SelectOnly(FileSelectPanel& panel, const QStringList& names)
    {
        panel.TreeView()->clearSelection();
        for (const QString& name : names)
            panel.TreeView()->selectionModel()->select(PanelRow(panel, name),
                                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
        panel.TreeView()->setFocus();
    }

    // Opens the context menu over a row (or the empty area) as a right click does.
    QStringList OpenMenu(FileSelectPanel& panel, const QString& rowName)
    {
        QWidget* viewport = panel.TreeView()->viewport();
        const QPoint pos = rowName.isEmpty() ? QPoint(10, viewport->height() - 5)
                                             : panel.TreeView()->visualRect(PanelRow(panel, rowName)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos));
        QApplication::sendEvent(viewport, &event);
        QStringList texts;
        for (QAction* action : panel.ContextMenu()->actions())
            texts.append(action->text());
        return texts;
    }

    void Trigger(FileSelectPanel& panel, const QString& text)
    {
        for (QAction* action : panel.ContextMenu()->actions()) {
            if (action->text() == text) {
                action->trigger();
                panel.ContextMenu()->hide();
                return;
            }
        }
        QFAIL(qPrintable(QStringLiteral("no menu action ") + text));
    }

private Q_SLOTS:
    void initTestCase()
    {
        SetUpFixture();
        QDir root(m_rootDir.path());
        Write(root.filePath(QStringLiteral("O1.nc")), QByteArray(100, 'x'));
        Write(root.filePath(QStringLiteral("old.bin")), QByteArray(10, 'x'));
        QVERIFY(root.mkpath(QStringLiteral("sub")));
        StartSimulator(DefaultSimOptions());

        auto* layout = new QHBoxLayout(&m_window);
        m_pLocal = new FileSelectPanel(true);
        m_pMachine = new FileSelectPanel(false);
        layout->addWidget(m_pLocal);
        layout->addWidget(m_pMachine);
        m_pLocal->SetRequests(&m_requests);
        m_pMachine->SetRequests(&m_requests);
        m_window.resize(1400, 500);
        m_window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&m_window));
        m_pMachine->SetMachineIp(QStringLiteral("127.0.0.1"));
        QVERIFY(WaitForListing(*m_pMachine, [&] { m_pMachine->RefreshPanel(); }));
    }

    void init()
    {
        m_listBoxes.clear();
        QApplication::clipboard()->clear();
        QDir(m_localDir.path()).removeRecursively();
        QVERIFY(QDir().mkpath(m_localDir.path()));
        Write(LocalFile(QStringLiteral("part.nc")), "G0 X1\n");
        QVERIFY(QDir(m_localDir.path()).mkpath(QStringLiteral("dir")));
        QVERIFY(WaitForListing(*m_pLocal, [&] { m_pLocal->OpenFolder(m_localDir.path()); }));
    }

    void cleanupTestCase() { TearDownFixture(); }

    void pasteThatCannotApplyDoesNothing()
    {
        QSignalSpy transfers(&m_requests, &MachineFileRequests::SignalTransfer);
        // Empty clipboard: Ctrl+V only logs.
        QTest::keyClick(m_pLocal->TreeView(), Qt::Key_V, Qt::ControlModifier);
        // Machine to machine: neither the menu nor the key pastes.
        SelectOnly(*m_pMachine, {QStringLiteral("O1.nc")});
        QTest::keyClick(m_pMachine->TreeView(), Qt::Key_C, Qt::ControlModifier);
        // Machine paths are not offered to other programs as local files.
        QVERIFY(QApplication::clipboard()->mimeData()->hasFormat(QStringLiteral("MimeDataCopy")));
        QVERIFY(QApplication::clipboard()->mimeData()->urls().isEmpty());
        QVERIFY(!OpenMenu(*m_pMachine, QString()).contains(QStringLiteral("粘贴")));
        QTest::keyClick(m_pMachine->TreeView(), Qt::Key_V, Qt::ControlModifier);
        QTest::qWait(50);
        QCOMPARE(transfers.count(), 0);
        QVERIFY(m_listBoxes.isEmpty());
        QCOMPARE(QDir(m_localDir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 (QStringList{"dir", "part.nc"}));
    }

    void localPasteNeverOverwrites()
    {
        Write(LocalFile(QStringLiteral("dir/part.nc")), "old program");
        SelectOnly(*m_pLocal, {QStringLiteral("part.nc")});
        QTest::keyClick(m_pLocal->TreeView(), Qt::Key_C, Qt::ControlModifier);
        QVERIFY(WaitForListing(*m_pLocal, [&] { m_pLocal->OpenFolder(LocalFile(QStringLiteral("dir"))); }));
        OpenMenu(*m_pLocal, QString());
        Trigger(*m_pLocal, QStringLiteral("粘贴"));
        QTRY_COMPARE(m_listBoxes.size(), 1);
        QCOMPARE(Read(LocalFile(QStringLiteral("dir/part.nc"))), QByteArray("old program"));
        // The copy arrives under a free name and the source stays.
        for (const char* name : {"dir/part(1).nc", "part.nc"})
            QCOMPARE(Read(LocalFile(QLatin1String(name))), QByteArray("G0 X1\n"));
        QTRY_VERIFY(m_pLocal->FileNames().contains(QStringLiteral("part(1).nc")));
    }

    void localCutMovesWhatItCanAndKeepsTheRest()
    {
        // The folder cannot move into itself; the file next to it moves all the same.
        SelectOnly(*m_pLocal, {QStringLiteral("part.nc"), QStringLiteral("dir")});
        QTest::keyClick(m_pLocal->TreeView(), Qt::Key_X, Qt::ControlModifier);
        QVERIFY(WaitForListing(*m_pLocal, [&] { m_pLocal->OpenFolder(LocalFile(QStringLiteral("dir"))); }));
        QSignalSpy cleared(m_pLocal, &FileSelectPanel::SignalClearLocalClipboardPath);
        m_pLocal->TreeView()->setFocus();
        QTest::keyClick(m_pLocal->TreeView(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(m_listBoxes.size(), 1);
        QCOMPARE(m_listBoxes.first().strText, QStringLiteral("部分文件粘贴失败！"));
        QVERIFY(!QFileInfo::exists(LocalFile(QStringLiteral("part.nc"))));
        QCOMPARE(Read(LocalFile(QStringLiteral("dir/part.nc"))), QByteArray("G0 X1\n"));
        QVERIFY(!QFileInfo::exists(LocalFile(QStringLiteral("dir/dir"))));
        // Moved files cannot be pasted twice.
        QCOMPARE(cleared.count(), 1);
        const QMimeData* mime = QApplication::clipboard()->mimeData();
        QVERIFY(!mime || !mime->hasFormat(QStringLiteral("MimeDataCopy")));
    }

    void machineRenameKeepsToMachineTypes_data()
    {
        // The old name, the typed name and the refusal shown (none: the rename is asked for).
        QTest::addColumn<QStringList>("names");
        QTest::newRow("allowed suffix") << QStringList{"O1.nc", "O2.TAP", ""};
        QTest::newRow("forbidden suffix") << QStringList{"O1.nc", "O1.exe", "机床文件重命名后缀不合法: exe"};
        QTest::newRow("file of another type") << QStringList{"old.bin", "old.nc", "文件类型 bin 不支持，不允许重命名"};
    }

    void machineRenameKeepsToMachineTypes()
    {
        QFETCH(QStringList, names);
        const QString &oldName = names.at(0), &newName = names.at(1), &box = names.at(2);
        // Nothing carries the requests out here: the listing brings the machine's names back.
        QVERIFY(WaitForListing(*m_pMachine, [&] { m_pMachine->RefreshPanel(); }));
        QSignalSpy renames(&m_requests, &MachineFileRequests::SignalRename);
        SelectOnly(*m_pMachine, {oldName});
        QTest::keyClick(m_pMachine->TreeView(), Qt::Key_F2);
        auto* editor = m_pMachine->TreeView()->viewport()->findChild<QLineEdit*>();
        if (editor) {
            editor->setText(newName);
            QTest::keyClick(editor, Qt::Key_Return);
        }
        // The editor commits on a queued call.
        QTRY_VERIFY(!m_pMachine->TreeView()->IsEditing());
        QTRY_COMPARE(m_listBoxes.size(), box.isEmpty() ? 0 : 1);
        if (box.isEmpty()) {
            QTRY_COMPARE(renames.count(), 1);
            QCOMPARE(renames.first(), (QVariantList{QStringLiteral("/O1.nc"), QStringLiteral("/O2.TAP")}));
            return;
        }
        QCOMPARE(m_listBoxes.first().strText, box);
        QCOMPARE(renames.count(), 0);
        // The edit is undone: the row shows the old name.
        QTRY_VERIFY(PanelRow(*m_pMachine, oldName).isValid());
        QVERIFY(!PanelRow(*m_pMachine, newName).isValid());
    }

    void localDeleteGoesToTheTrash()
    {
        const QByteArray content("G1 X2 F100\n");
        Write(LocalFile(QStringLiteral("del.nc")), content);
        QVERIFY(WaitForListing(*m_pLocal, [&] { m_pLocal->RefreshPanel(); }));
        SelectOnly(*m_pLocal, {QStringLiteral("del.nc")});
        QVERIFY(WaitForListing(*m_pLocal, [&] { QTest::keyClick(m_pLocal->TreeView(), Qt::Key_Delete); }));
        QCOMPARE(m_listBoxes.size(), 1);
        QVERIFY(!PanelRow(*m_pLocal, QStringLiteral("del.nc")).isValid());

        // Restoring is what a desktop trash does: the info file names the place, the file moves back.
        const QString trash = qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash");
        QSettings info(trash + QStringLiteral("/info/del.nc.trashinfo"), QSettings::IniFormat);
        QCOMPARE(QUrl::fromPercentEncoding(info.value(QStringLiteral("Trash Info/Path")).toByteArray()),
                 LocalFile(QStringLiteral("del.nc")));
        QVERIFY(QFile::rename(trash + QStringLiteral("/files/del.nc"), LocalFile(QStringLiteral("del.nc"))));
        QCOMPARE(Read(LocalFile(QStringLiteral("del.nc"))), content);
    }

    void machineDeleteIsOneRequestAfterTheQuestion()
    {
        QSignalSpy deletes(&m_requests, &MachineFileRequests::SignalDelete);
        SelectOnly(*m_pMachine, {QStringLiteral("O1.nc"), QStringLiteral("sub")});
        QTest::keyClick(m_pMachine->TreeView(), Qt::Key_Delete);
        // The question does not wait: the request follows its answer.
        QCOMPARE(deletes.count(), 0);
        QTRY_COMPARE(QList<QVariantList>(deletes),
                     QList<QVariantList>{(QVariantList{QStringList{"/O1.nc"}, QStringList{"/sub"}})});
        QCOMPARE(m_listBoxes.size(), 1);
    }

    void newFolderGetsAFreeName()
    {
        QVERIFY(QDir(m_localDir.path()).mkpath(QStringLiteral("NewForder")));
        QVERIFY(WaitForListing(*m_pLocal, [&] { m_pLocal->RefreshPanel(); }));
        OpenMenu(*m_pLocal, QString());
        QVERIFY(WaitForListing(*m_pLocal, [&] { Trigger(*m_pLocal, QStringLiteral("新建文件夹")); }));
        QVERIFY(QFileInfo(LocalFile(QStringLiteral("NewForder(1)"))).isDir());

        QSignalSpy makeDir(&m_requests, &MachineFileRequests::SignalMakeDir);
        OpenMenu(*m_pMachine, QString());
        Trigger(*m_pMachine, QStringLiteral("新建文件夹"));
        QCOMPARE(QList<QVariantList>(makeDir), QList<QVariantList>{QVariantList{QStringLiteral("/NewForder")}});
    }
};

int main(int argc, char** argv)
{
    static QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    // Not created: the panel must make the data folder before it can use the trash.
    qputenv("XDG_DATA_HOME", (home.path() + "/data").toUtf8());
    qputenv("KORV_CONFIG_DIR", (home.path() + "/korv").toUtf8());
    QApplication app(argc, argv);
    TestFilePanelOperations test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_filepanel_operations.moc"
