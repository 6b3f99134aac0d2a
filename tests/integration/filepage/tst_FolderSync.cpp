#include "CamBaseTextHelper.h"
#include "FolderSync.h"
#include "KorvBaseGlobals.h"
#include "MachineFileService.h"
#include "SimFtpServer.h"
#include "SimWorkspaceFixture.h"
#include "WorkspaceLogProbe.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "toolpage/ToolPage.h"
#include "workspace/FolderSyncPreviewDialog.h"
#include "workspace/SyncButtonLook.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDirIterator>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

namespace {
// Every file below a folder with its content, relative paths; hidden temporary names included.
QMap<QString, QByteArray> Tree(const QString& root)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        QFile file(it.filePath());
        files.insert(QDir(root).relativeFilePath(it.filePath()),
                     file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("?"));
    }
    return files;
}
} // namespace

// Folder synchronisation of a shown Workspace against the simulator on loopback.
class TestFolderSync : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private:
    bool HasLine(const QString& text, const QColor& color) const { return WorkspaceLogHas(*m_workspace, text, color); }
    int ButtonState() const { return m_workspace->GetSyncButtonLook()->State(); }
    // One of the synchronisation's settings ("FolderSync/...").
    static void SetOption(const char* name, bool on)
    {
        CamBaseTextHelper::instance()->SetLocalSettingCache(
            CamBaseTextHelper::SettingTypeLocal, QStringLiteral("FolderSync/") + QLatin1String(name), on, true);
    }
    int LinesStartingWith(const QString& prefix) const { return WorkspaceLogCount(*m_workspace, prefix); }
    // `count` local programs prefix00.nc... of random bytes; their contents by name.
    QMap<QString, QByteArray> WriteLocalPrograms(const QString& prefix, int count, int bytes) const
    {
        QMap<QString, QByteArray> written;
        for (int i = 0; i < count; ++i) {
            const QString name = prefix + QStringLiteral("%1.nc").arg(i, 2, 10, QLatin1Char('0'));
            written.insert(name, RandomBytes(bytes));
            Write(LocalFile(name), written.value(name));
        }
        return written;
    }
    void StartSimulator(const std::function<void(SimOptions&)>& adjust = {})
    {
        SimOptions options = DefaultSimOptions();
        if (adjust)
            adjust(options);
        SimWorkspaceFixture::StartSimulator(options);
    }

    void ConnectWorkspace()
    {
        SimWorkspaceFixture::ConnectWorkspace();
        QTRY_COMPARE(m_workspace->GetFileManager()->LocalPanel()->CurrentPath(), m_localDir.path());
        QVERIFY(m_workspace->GetToolPage()->Button(ToolPage::ActionFolderSync)->isEnabled());
    }

    void RunSync()
    {
        QTRY_VERIFY(!g_bTranslating && !m_workspace->FileService()->IsBusy());
        m_workspace->SlotFileSyncBtnClicked();
    }

private Q_SLOTS:
    void initTestCase() { SetUpFixture(); }
    void init()
    {
        ResetFixture();
        m_iCheckIntervalMs = 0;
    }

    void cleanup()
    {
        TearDownFixture();
        for (const char* name : {"IncludeSubfolders", "Preview", "CompareContent"})
            SetOption(name, false);
    }

    void uploadsKeepToTheLimitAndOneRefusalEndsRed()
    {
        // No connection check meanwhile: its log-in would count among the sessions.
        m_iCheckIntervalMs = 60000;
        StartSimulator([](SimOptions& o) {
            o.ftpRate = 256 * 1024;
            o.ftpRefused = {QStringLiteral("STOR:prog_07")};
        });
        QMap<QString, QByteArray> sent = WriteLocalPrograms(QStringLiteral("prog_"), 12, 64 * 1024);
        ConnectWorkspace();
        QTRY_VERIFY(!g_bTranslating);
        QTest::mouseClick(m_workspace->GetToolPage()->Button(ToolPage::ActionFolderSync), Qt::LeftButton);
        QVERIFY(m_workspace->GetSyncButtonLook()->IsAnimating());
        QTRY_VERIFY_WITH_TIMEOUT(HasLine(QStringLiteral("同步失败：1 个文件传输失败"), LogColors::Failure), 30000);
        QTRY_COMPARE(ButtonState(), int(FolderSync::ButtonIdle));
        QVERIFY(!m_workspace->GetSyncButtonLook()->IsAnimating());
        QVERIFY2(m_sim->FtpServer().PeakSessionCount() <= MachineFileService::DefaultMaxTransfers,
                 qPrintable(QString::number(m_sim->FtpServer().PeakSessionCount())));
        QVERIFY(!QFileInfo::exists(MachineFile(QStringLiteral("prog_07.nc"))));
        sent.remove(QStringLiteral("prog_07.nc"));
        for (auto it = sent.cbegin(); it != sent.cend(); ++it)
            QCOMPARE(Read(MachineFile(it.key())), it.value());
        QVERIFY(HasLine(QStringLiteral("同步开始：计划上传 12 个, 计划下载 0 个, 总任务 12个"), LogColors::Success));
        QCOMPARE(LinesStartingWith(QStringLiteral("同步失败文件：/prog_07.nc")), 1);
    }

    void equalSizesWithOtherTimesNeedNothing_data()
    {
        QTest::addColumn<bool>("compareContent");
        QTest::newRow("sizes decide") << false;
        QTest::newRow("contents compared") << true;
    }

    void equalSizesWithOtherTimesNeedNothing()
    {
        QFETCH(bool, compareContent);
        StartSimulator();
        Write(LocalFile(QStringLiteral("same.nc")), "0123456789");
        Write(MachineFile(QStringLiteral("same.nc")), "abcdefghij");
        Write(LocalFile(QStringLiteral("twin.nc")), "identical");
        Write(MachineFile(QStringLiteral("twin.nc")), "identical");
        QFile older(MachineFile(QStringLiteral("same.nc")));
        QVERIFY(older.open(QIODevice::ReadWrite));
        QVERIFY(older.setFileTime(QDateTime(QDate(2020, 1, 2), QTime(3, 4)), QFileDevice::FileModificationTime));
        older.close();
        SetOption("CompareContent", compareContent);
        ConnectWorkspace();
        RunSync();
        QTRY_COMPARE_WITH_TIMEOUT(ButtonState(), int(FolderSync::ButtonFinished), 10000);
        QTRY_COMPARE(m_listBoxes.size(), 1);
        // With contents compared the differing file is a conflict (answered: keep the local one),
        // asked with the size and time of both copies.
        const QString text = m_listBoxes.first().strText;
        if (compareContent) {
            QVERIFY(text.startsWith(
                QStringLiteral("文件 \"same.nc\" 在本地和机床中均存在，内容不一致。\n\n请选择要保留的版本：")));
            QVERIFY2(text.contains(QStringLiteral("机床：10 bytes, 2020-01-02 03:04")), qPrintable(text));
        } else {
            QCOMPARE(text, QStringLiteral("当前目录已同步，无需操作"));
        }
        QCOMPARE(Read(MachineFile(QStringLiteral("same.nc"))),
                 compareContent ? QByteArray("0123456789") : QByteArray("abcdefghij"));
        QCOMPARE(Read(LocalFile(QStringLiteral("same.nc"))), QByteArray("0123456789"));
        // The comparison's private copies are no transfers left running: the machine panel lists again.
        QTRY_VERIFY(!g_bTranslating);
        QVERIFY(!m_workspace->FileService()->IsBusy());
        FileSelectPanel* machine = m_workspace->GetFileManager()->MachinePanel();
        QVERIFY(WaitForListing(*machine, [machine]() { machine->RefreshPanel(); }));
    }

    void conflictKeepsMachineVersion_data()
    {
        QTest::addColumn<qint64>("dropAfter");
        QTest::newRow("download completes") << qint64(-1);
        QTest::newRow("download cut") << qint64(32 * 1024);
    }

    void conflictKeepsMachineVersion()
    {
        QFETCH(qint64, dropAfter);
        StartSimulator([dropAfter](SimOptions& o) { o.ftpDropAfter = dropAfter; });
        const QByteArray machine = RandomBytes(200 * 1024);
        Write(LocalFile(QStringLiteral("part.nc")), "local version");
        Write(MachineFile(QStringLiteral("part.nc")), machine);
        ConnectWorkspace();
        m_iAnswer = MsgButtonNo;
        RunSync();
        QTRY_VERIFY_WITH_TIMEOUT(ButtonState() != FolderSync::ButtonRunning, 20000);
        QCOMPARE(m_listBoxes.size(), 1);
        const bool bCompletes = dropAfter < 0;
        QCOMPARE(Read(LocalFile(QStringLiteral("part.nc"))), bCompletes ? machine : QByteArray("local version"));
        QCOMPARE(Read(MachineFile(QStringLiteral("part.nc"))), machine);
        QCOMPARE(ButtonState(), int(bCompletes ? FolderSync::ButtonFinished : FolderSync::ButtonIdle));
        // No temporary download is left beside the file.
        QCOMPARE(QDir(m_localDir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("part.nc")});
    }

    void driveRootIsRefusedBeforeListing()
    {
        StartSimulator();
        ConnectWorkspace();
        FileSelectPanel* local = m_workspace->GetFileManager()->LocalPanel();
        local->OpenFolder(QStringLiteral("/"));
        QTRY_COMPARE(local->CurrentPath(), QStringLiteral("/"));
        QTRY_VERIFY(!g_bTranslating);
        // The button turns to running only once the folders are being listed, so a refusal that leaves it
        // untouched came before any listing. (Session counts would race with the periodic connection check.)
        QSignalSpy buttonChanges(m_workspace->GetFolderSync(), &FolderSync::SignalButtonStateChanged);
        RunSync();
        QTRY_COMPARE(m_listBoxes.size(), 1);
        QCOMPARE(m_listBoxes.first().strText, QStringLiteral("本地电脑当前处于根目录，不进行同步操作"));
        QCOMPARE(ButtonState(), int(FolderSync::ButtonIdle));
        QVERIFY(buttonChanges.isEmpty());
    }

    void machineFolderEmptiedBehindItsBackIsFilledAgain()
    {
        StartSimulator();
        QMap<QString, QByteArray> sent = WriteLocalPrograms(QStringLiteral("e"), 20, 4 * 1024);
        ConnectWorkspace();
        for (int run = 0; run < 2; ++run) {
            RunSync();
            QTRY_COMPARE_WITH_TIMEOUT(ButtonState(), int(FolderSync::ButtonFinished), 30000);
            for (auto it = sent.cbegin(); it != sent.cend(); ++it)
                QCOMPARE(Read(MachineFile(it.key())), it.value());
            RunSync();
            QTRY_COMPARE_WITH_TIMEOUT(ButtonState(), int(FolderSync::ButtonFinished), 30000);
            // Someone at the controller clears the folder; the workbench is not told.
            for (auto it = sent.cbegin(); it != sent.cend(); ++it)
                QVERIFY(QFile::remove(MachineFile(it.key())));
        }
    }

    void lostMachineInterruptsAndRerunSendsOnlyTheRest()
    {
        StartSimulator([](SimOptions& o) { o.ftpRate = 128 * 1024; });
        QMap<QString, QByteArray> sent = WriteLocalPrograms(QStringLiteral("f"), 50, 48 * 1024);
        Write(MachineFile(QStringLiteral("only_here.tap")), RandomBytes(96 * 1024));
        ConnectWorkspace();
        RunSync();
        QTRY_VERIFY_WITH_TIMEOUT(QDir(m_rootDir.path()).entryList({QStringLiteral("f*.nc")}, QDir::Files).size() >= 8,
                                 20000);
        m_sim->Vanish();
        QTRY_VERIFY_WITH_TIMEOUT(HasLine(QStringLiteral("同步已中断：与机床断开连接"), LogColors::Failure), 15000);
        // The job's result, and so the button, follows its log line on a later turn.
        QTRY_COMPARE(ButtonState(), int(FolderSync::ButtonIdle));
        QTRY_VERIFY_WITH_TIMEOUT(!m_workspace->FileService()->IsBusy(), 15000);
        // Under its real name every file is whole, on both sides.
        const QMap<QString, QByteArray> machineFiles = Tree(m_rootDir.path());
        int arrived = 0;
        for (auto it = machineFiles.cbegin(); it != machineFiles.cend(); ++it) {
            if (sent.contains(it.key())) {
                QCOMPARE(it.value(), sent.value(it.key()));
                ++arrived;
            }
        }
        QVERIFY(arrived < 50);
        for (const QString& name : QDir(m_localDir.path()).entryList(QDir::Files | QDir::Hidden))
            QVERIFY2(sent.contains(name) || name == QLatin1String("only_here.tap"), qPrintable(name));
        if (QFileInfo::exists(LocalFile(QStringLiteral("only_here.tap"))))
            QCOMPARE(Read(LocalFile(QStringLiteral("only_here.tap"))),
                     Read(MachineFile(QStringLiteral("only_here.tap"))));

        m_workspace->DisconnectMachine(false);
        QVERIFY(!m_workspace->GetToolPage()->Button(ToolPage::ActionFolderSync)->isEnabled());
        StartSimulator();
        ConnectWorkspace();
        const int startedBefore = LinesStartingWith(QStringLiteral("开始上传文件："));
        RunSync();
        QTRY_COMPARE_WITH_TIMEOUT(ButtonState(), int(FolderSync::ButtonFinished), 30000);
        QCOMPARE(LinesStartingWith(QStringLiteral("开始上传文件：")) - startedBefore, 50 - arrived);
        for (auto it = sent.cbegin(); it != sent.cend(); ++it)
            QCOMPARE(Read(MachineFile(it.key())), it.value());
        QCOMPARE(Read(LocalFile(QStringLiteral("only_here.tap"))), Read(MachineFile(QStringLiteral("only_here.tap"))));
    }

    void subfoldersAreCreatedAtEveryDepth()
    {
        StartSimulator();
        Write(LocalFile(QStringLiteral("top.nc")), "top");
        Write(LocalFile(QStringLiteral("a/b/c/deep.nc")), "deep");
        Write(LocalFile(QStringLiteral("a/mid.nc")), "mid");
        QDir().mkpath(LocalFile(QStringLiteral("empty/inner")));
        Write(MachineFile(QStringLiteral("m/n/far.tap")), "far");
        Write(MachineFile(QStringLiteral("a/from_machine.nc")), "machine side");
        SetOption("IncludeSubfolders", true);
        ConnectWorkspace();
        RunSync();
        QTRY_COMPARE_WITH_TIMEOUT(ButtonState(), int(FolderSync::ButtonFinished), 20000);
        const QMap<QString, QByteArray> local = Tree(m_localDir.path());
        QCOMPARE(local.keys(),
                 (QStringList{"a/b/c/deep.nc", "a/from_machine.nc", "a/mid.nc", "m/n/far.tap", "top.nc"}));
        QCOMPARE(Tree(m_rootDir.path()), local);
        QVERIFY(QFileInfo(MachineFile(QStringLiteral("empty/inner"))).isDir());
    }

    void previewSendsOnlyTickedAndDecidesConflicts()
    {
        StartSimulator();
        Write(LocalFile(QStringLiteral("send.nc")), "send");
        Write(LocalFile(QStringLiteral("keep_here.nc")), "keep");
        Write(LocalFile(QStringLiteral("both.nc")), "local, longer");
        Write(MachineFile(QStringLiteral("both.nc")), "machine");
        SetOption("Preview", true);
        ConnectWorkspace();
        QStringList rows;
        bool bNothingSentWhileOpen = false;
        // The dialog is modal: answer it from the event loop it runs.
        auto* poll = new QTimer(m_workspace.get());
        connect(poll, &QTimer::timeout, this, [&]() {
            auto* dialog = qobject_cast<FolderSyncPreviewDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            poll->stop();
            bNothingSentWhileOpen = !QFileInfo::exists(MachineFile(QStringLiteral("send.nc")));
            QTreeWidget* tree = dialog->Tree();
            for (int row = 0; row < tree->topLevelItemCount(); ++row) {
                rows.append(tree->topLevelItem(row)->text(FolderSyncPreviewDialog::ColumnPath));
                if (rows.last() == QLatin1String("keep_here.nc"))
                    tree->topLevelItem(row)->setCheckState(FolderSyncPreviewDialog::ColumnPath, Qt::Unchecked);
                if (rows.last() == QLatin1String("both.nc"))
                    dialog->SetConflictChoice(row, FolderSyncPreviewDialog::ChoiceLocal);
            }
            dialog->accept();
        });
        poll->start(20);
        RunSync();
        QTRY_COMPARE_WITH_TIMEOUT(ButtonState(), int(FolderSync::ButtonFinished), 20000);
        QVERIFY(bNothingSentWhileOpen);
        rows.sort();
        QCOMPARE(rows, (QStringList{"both.nc", "keep_here.nc", "send.nc"}));
        QVERIFY(m_listBoxes.isEmpty());
        QCOMPARE(Read(MachineFile(QStringLiteral("send.nc"))), QByteArray("send"));
        QCOMPARE(Read(MachineFile(QStringLiteral("both.nc"))), QByteArray("local, longer"));
        QVERIFY(!QFileInfo::exists(MachineFile(QStringLiteral("keep_here.nc"))));
    }
};

QTEST_MAIN(TestFolderSync)
#include "tst_FolderSync.moc"
