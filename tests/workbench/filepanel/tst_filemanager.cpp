#include "CVarnokMessageBox.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "filepanel/MachineFileRequests.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransManager.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>

// The file manager without a machine: its layout, and the requests its arrows and slots make.
class TestFileManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
        CVarnokMessageBox::SetTestResponder([](const StructMsgBoxRequest&) {
            return StructMsgBoxAnswer{MsgButtonConfirm, false};
        });
    }

    void arrowsAndSlotsBecomeTransferRequests()
    {
        QTemporaryDir local;
        QFile file(local.filePath(QStringLiteral("a.nc")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        FileManager manager;
        QSignalSpy transfers(manager.Requests(), &MachineFileRequests::SignalTransfer);
        const auto item = [&transfers](int i) {
            const QList<TransferItem> items = transfers.at(i).at(0).value<QList<TransferItem>>();
            return items.size() == 1 ? items.first() : TransferItem{};
        };
        QSignalSpy listed(manager.LocalPanel(), &FileSelectPanel::SignalListingFinished);
        manager.LocalPanel()->OpenFolder(local.path());
        QVERIFY(listed.wait(5000));
        // An empty selection sends nothing.
        manager.UploadButton()->click();
        manager.DownloadButton()->click();
        QCOMPARE(transfers.count(), 0);

        // Folders and shortcuts stay behind; the file goes to the machine panel's folder.
        manager.LocalPanel()->TreeView()->selectAll();
        manager.UploadButton()->click();
        QCOMPARE(transfers.count(), 1);
        QVERIFY(item(0).bUpload);
        QCOMPARE(item(0).strLocalPath, local.filePath(QStringLiteral("a.nc")));
        QCOMPARE(item(0).strMachinePath, QStringLiteral("/a.nc"));

        manager.SlotUploadFileToMachine(local.filePath(QStringLiteral("a.nc")), QStringLiteral("/sub"), OperationCut);
        QCOMPARE(item(1).strMachinePath, QStringLiteral("/sub/a.nc"));
        QCOMPARE(item(1).operation, OperationCut);
        manager.SlotDownloadFileFromMachine(local.path(), QStringLiteral("/sub/b.nc"));
        QVERIFY(!item(2).bUpload);
        QCOMPARE(item(2).strLocalPath, local.filePath(QStringLiteral("b.nc")));
        QCOMPARE(item(2).strMachinePath, QStringLiteral("/sub/b.nc"));
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
};

QTEST_MAIN(TestFileManager)
#include "tst_filemanager.moc"
