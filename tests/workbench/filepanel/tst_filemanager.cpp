#include "CVarnokMessageBox.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransManager.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>

// The file manager without a machine: its layout, and the requests it must not send.
class TestFileManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
        CVarnokMessageBox::SetTestResponder([this](const StructMsgBoxRequest& request) {
            m_listBoxes.append(request.strText);
            return StructMsgBoxAnswer{MsgButtonConfirm, false};
        });
    }

    void layoutOfThePage()
    {
        FileManager manager;
        QSplitter* splitter = manager.Splitter();
        QCOMPARE(splitter->count(), 3);
        QCOMPARE(splitter->widget(0), manager.LocalPanel());
        QCOMPARE(splitter->widget(2), manager.MachinePanel());
        QCOMPARE(splitter->handleWidth(), 0);
        for (int i = 0; i < 3; ++i)
            QVERIFY(!splitter->isCollapsible(i));
        QVERIFY(manager.LocalPanel()->IsLocal());
        QVERIFY(!manager.MachinePanel()->IsLocal());
        QCOMPARE(manager.UploadButton()->size(), QSize(88, 97));
        QCOMPARE(manager.DownloadButton()->size(), QSize(88, 97));
        QCOMPARE(manager.UploadButton()->toolTip(), QStringLiteral("上传至机床"));
        QCOMPARE(manager.DownloadButton()->toolTip(), QStringLiteral("从机床下载"));
        QLayout* column = manager.UploadButton()->parentWidget()->layout();
        QVERIFY(column->indexOf(manager.UploadButton()) < column->indexOf(manager.DownloadButton()));
    }

    void nothingLeavesWithoutSelectionOrMachine()
    {
        QTemporaryDir local;
        QFile file(local.filePath(QStringLiteral("a.nc")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        FileManager manager;
        QSignalSpy uploads(&manager, &FileManager::SignalUpLoadFile);
        QSignalSpy downloads(&manager, &FileManager::SignalDownLoadFile);
        QSignalSpy listed(manager.LocalPanel(), &FileSelectPanel::SignalListingFinished);
        manager.LocalPanel()->OpenFolder(local.path());
        QVERIFY(listed.wait(5000));

        manager.UploadButton()->click();
        manager.DownloadButton()->click();
        manager.SlotUploadFileToMachine(local.filePath(QStringLiteral("a.nc")), QStringLiteral("/"), OperationCopy);
        manager.SlotDownloadFileFromMachine(local.path(), QStringLiteral("/a.nc"));
        // Selected but not connected: still nothing.
        manager.LocalPanel()->TreeView()->selectAll();
        manager.UploadButton()->click();
        QCOMPARE(uploads.count(), 0);
        QCOMPARE(downloads.count(), 0);
        QVERIFY(m_listBoxes.isEmpty());

        // Once connected, the request carries the full machine path.
        manager.SetMachineConnected(QStringLiteral("127.0.0.1"), QStringLiteral("SN"));
        manager.SlotUploadFileToMachine(local.filePath(QStringLiteral("a.nc")), QStringLiteral("/sub"), OperationCut);
        QCOMPARE(uploads.count(), 1);
        QCOMPARE(uploads.first().at(1).toString(), QStringLiteral("/sub/a.nc"));
        QCOMPARE(uploads.first().at(2).value<OperationType>(), OperationCut);
        manager.SlotDownloadFileFromMachine(local.path(), QStringLiteral("/sub/b.nc"));
        QCOMPARE(downloads.count(), 1);
        QCOMPARE(downloads.first().at(0).toString(), local.filePath(QStringLiteral("b.nc")));
    }

    void workspaceHoldsTheFilePage()
    {
        Workspace workspace;
        QSplitter* page = workspace.FilePageSplitter();
        QCOMPARE(page->widget(0), static_cast<QWidget*>(workspace.GetFileManager()));
        QCOMPARE(page->widget(1), static_cast<QWidget*>(workspace.GetTransManager()));
        // The second tab shows the transfer strip alone, and the first gets it back.
        workspace.ShowPage(Workspace::PageTransferList);
        QCOMPARE(page->count(), 1);
        workspace.ShowPage(Workspace::PageFileTransfer);
        QCOMPARE(page->widget(1), static_cast<QWidget*>(workspace.GetTransManager()));

        page->setSizes({500, 200});
        Q_EMIT page->splitterMoved(500, 1);
        Workspace again;
        QCOMPARE(again.FilePageSplitter()->sizes(), page->sizes());
        ToolPage* tools = again.GetToolPage();
        QVERIFY(!tools->Button(ToolPage::ActionDisconnect)->isEnabled());
        QVERIFY(!tools->Button(ToolPage::ActionMachineStatus)->isEnabled());
        QVERIFY(!tools->Button(ToolPage::ActionNewConnection)->isCheckable());
        QVERIFY(!tools->Button(ToolPage::ActionDisconnect)->isCheckable());
    }

private:
    QTemporaryDir m_configDir;
    QStringList m_listBoxes;
};

QTEST_MAIN(TestFileManager)
#include "tst_filemanager.moc"
