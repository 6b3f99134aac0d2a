#include "CamBaseTextHelper.h"
#include "FtpTemporaryName.h"
#include "KorvBaseGlobals.h"
#include "MachineConnection.h"
#include "MachineFileService.h"
#include "MachineJob.h"
#include "SimFtpServer.h"
#include "SimMachine.h"
#include "SimWorkspaceFixture.h"
#include "WorkspaceLogProbe.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "transfer/CProgressDelegate.h"
#include "transfer/TransList.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStandardItemModel>
#include <QTest>
#include <memory>

namespace {
const QString Ip = QStringLiteral("127.0.0.1");

// Drags `mime` over the panel and drops it there, as a drag from another window would;
// false when the panel refused it (the forbidden cursor).
bool DragAndDrop(FileSelectPanel* panel, QMimeData* mime)
{
    const QPoint pos = panel->rect().center();
    QDragEnterEvent enter(pos, Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(panel, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(pos), Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(panel, &drop);
    return drop.isAccepted();
}

void Select(FileSelectPanel* panel, const QStringList& names)
{
    QItemSelectionModel* selection = panel->TreeView()->selectionModel();
    selection->clearSelection();
    for (const QString& name : names)
        selection->select(SimWorkspaceFixture::PanelRow(*panel, name),
                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
}
} // namespace

// The file page of a real, shown Workspace against the simulator on loopback: what the
// operator presses, and what arrives on either disk, in the list and in the log.
class TestFilePage : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private:
    void StartSimulator(qint64 rate = 0, qint64 dropAfter = -1)
    {
        SimOptions options = DefaultSimOptions();
        options.ftpRate = rate;
        options.ftpDropAfter = dropAfter;
        SimWorkspaceFixture::StartSimulator(options);
    }

    bool HasLine(const QString& text, const QColor& color) const { return WorkspaceLogHas(*m_workspace, text, color); }
    int RowCount() const { return m_workspace->GetTransManager()->TransferList()->Model()->rowCount(); }
    QString Key(const QString& machinePath, bool upload) const
    {
        return QStringLiteral("ftp://%1:21%2").arg(Ip, machinePath) +
               (upload ? QStringLiteral("*Upload") : QStringLiteral("*Download"));
    }

    // Waits until the transfer row of `key` reaches `state`.
    bool Reaches(const QString& key, int state, int timeout = 15000) const
    {
        return QTest::qWaitFor([&] { return RowState(key) == state; }, timeout);
    }
    int RowState(const QString& key) const
    {
        TransList* list = m_workspace->GetTransManager()->TransferList();
        const QModelIndex cell = list->Model()->index(list->RowOfKey(key), TransList::ColumnProgress);
        return cell.isValid() ? cell.data(CProgressDelegate::InfoRole).value<TanslateInfo>().state : -1;
    }

    QStringList MachineRootEntries() const
    {
        return QDir(m_rootDir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

private Q_SLOTS:
    void initTestCase() { SetUpFixture(); }
    void init() { ResetFixture(); }
    void cleanup()
    {
        TearDownFixture();
        QApplication::clipboard()->clear();
        QFile::remove(CamBaseTextHelper::instance()->GetLocalTestIniFilePath());
    }

    void uploadAndDownloadArriveByteForByte()
    {
        StartSimulator();
        const QByteArray upload = RandomBytes(700 * 1024);
        const QByteArray download = RandomBytes(300 * 1024);
        Write(LocalFile(QStringLiteral("part.nc")), upload);
        Write(MachineFile(QStringLiteral("fixture.tap")), download);
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();

        Select(manager->LocalPanel(), {QStringLiteral("part.nc")});
        QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
        QVERIFY(Reaches(Key(QStringLiteral("/part.nc"), true), TanslateInfo::StateSucceeded));
        QCOMPARE(Read(MachineFile(QStringLiteral("part.nc"))), upload);
        QVERIFY(HasLine(QStringLiteral("上传文件完成：part.nc"), LogColors::Plain));
        // No temporary name is left behind, and the new file shows in the machine panel.
        QCOMPARE(MachineRootEntries(), QStringList({QStringLiteral("fixture.tap"), QStringLiteral("part.nc")}));
        QTRY_VERIFY_WITH_TIMEOUT(MachineNames().contains(QStringLiteral("part.nc")), 10000);

        Select(manager->MachinePanel(), {QStringLiteral("fixture.tap")});
        QTest::mouseClick(manager->DownloadButton(), Qt::LeftButton);
        QVERIFY(Reaches(Key(QStringLiteral("/fixture.tap"), false), TanslateInfo::StateSucceeded));
        QCOMPARE(Read(LocalFile(QStringLiteral("fixture.tap"))), download);
        QVERIFY(HasLine(QStringLiteral("下载文件完成：fixture.tap"), LogColors::Plain));
        // The download lists the local folder again; a selection made before that listing ends is lost.
        QTRY_VERIFY_WITH_TIMEOUT(manager->LocalPanel()->FileNames().contains(QStringLiteral("fixture.tap")), 10000);

        // A drop from the desktop uploads every file; overwriting after a Yes replaces the machine's file whole.
        const QByteArray second = RandomBytes(50 * 1024);
        const QByteArray other = RandomBytes(70 * 1024);
        Write(LocalFile(QStringLiteral("part.nc")), second);
        Write(LocalFile(QStringLiteral("drop2.tap")), other);
        QMimeData desktop;
        desktop.setUrls({QUrl::fromLocalFile(LocalFile(QStringLiteral("part.nc"))),
                         QUrl::fromLocalFile(LocalFile(QStringLiteral("drop2.tap")))});
        QVERIFY(DragAndDrop(manager->MachinePanel(), &desktop));
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("part.nc"))), second, 15000);
        QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("drop2.tap"))), other, 15000);
        QCOMPARE(m_listBoxes.size(), 1);
    }

    void manyDownloadsTakeTheirSizesFromOneListing()
    {
        StartSimulator();
        QMap<QString, QByteArray> programs;
        for (int i = 0; i < 6; ++i) {
            const QString name = QStringLiteral("m%1.nc").arg(i);
            programs.insert(name, RandomBytes(30 * 1024 + i));
            Write(MachineFile(name), programs.value(name));
        }
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        QTRY_COMPARE_WITH_TIMEOUT(MachineNames().size(), 6, 10000);
        const qint64 sizesBefore = m_sim->FtpServer().CommandCount("SIZE");
        Select(manager->MachinePanel(), programs.keys());
        QTest::mouseClick(manager->DownloadButton(), Qt::LeftButton);
        for (auto it = programs.cbegin(); it != programs.cend(); ++it) {
            QVERIFY(Reaches(Key(QLatin1Char('/') + it.key(), false), TanslateInfo::StateSucceeded));
            QCOMPARE(Read(LocalFile(it.key())), it.value());
        }
        // One listing of the folder told every size: no file was asked for its own.
        QCOMPARE(m_sim->FtpServer().CommandCount("SIZE"), sizesBefore);
    }

    void pasteAndDropAskBeforeReplacing_data()
    {
        // Paste and drop share the route to the question; the drop also meets the panels' own refusal.
        QTest::addColumn<bool>("drop");
        QTest::newRow("paste onto the machine") << false;
        QTest::newRow("drop onto the computer") << true;
    }

    void pasteAndDropAskBeforeReplacing()
    {
        QFETCH(bool, drop);
        const bool upload = !drop;
        StartSimulator();
        const QByteArray local = RandomBytes(700);
        const QByteArray machine = RandomBytes(300);
        Write(LocalFile(QStringLiteral("same.nc")), local);
        Write(MachineFile(QStringLiteral("same.nc")), machine);
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        FileSelectPanel* from = upload ? manager->LocalPanel() : manager->MachinePanel();
        FileSelectPanel* onto = upload ? manager->MachinePanel() : manager->LocalPanel();
        QTRY_VERIFY(PanelNames(*from).contains(QStringLiteral("same.nc")));
        Select(from, {QStringLiteral("same.nc")});
        QTest::keyClick(from->TreeView(), Qt::Key_C, Qt::ControlModifier);
        m_iAnswer = MsgButtonNo;
        if (drop) {
            // A drag between the panels carries what a copy puts on the clipboard.
            const QMimeData* copied = QApplication::clipboard()->mimeData();
            QVERIFY(copied);
            QMimeData dragged;
            for (const QString& format : copied->formats())
                dragged.setData(format, copied->data(format));
            // The machine cannot copy onto itself: its entries are refused by its own panel.
            if (!upload)
                QVERIFY(!DragAndDrop(from, &dragged));
            QVERIFY(DragAndDrop(onto, &dragged));
        } else {
            QTest::keyClick(onto->TreeView(), Qt::Key_V, Qt::ControlModifier);
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_listBoxes.size(), 1, 10000);
        const QString text = m_listBoxes.first().strText;
        QVERIFY2(text.startsWith(QStringLiteral("目标路径已包含同名文件：same.nc，是否覆盖？")), qPrintable(text));
        // Both sides, for the operator to compare: the file that would be sent and the one it would replace.
        QVERIFY2(text.contains(QStringLiteral("700 bytes")) && text.contains(QStringLiteral("300 bytes")),
                 qPrintable(text));
        QTest::qWait(200);
        QCOMPARE(RowCount(), 0);
        QVERIFY(!m_workspace->FileService()->IsBusy());
        QCOMPARE(Read(LocalFile(QStringLiteral("same.nc"))), local);
        QCOMPARE(Read(MachineFile(QStringLiteral("same.nc"))), machine);
    }

    void refusalsSendNothing_data()
    {
        QTest::addColumn<QString>("localName");
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("programRuns");
        QTest::addColumn<QString>("box");
        QTest::newRow("wrong type") << "tool.exe" << true << false << "文件类型不符合要求：tool.exe";
        QTest::newRow("running program") << "same.nc" << true << true
                                         << "机床正在运行程序same.nc，不能覆盖、删除或重命名：/same.nc";
        QTest::newRow("no machine") << "same.nc" << false << false << "当前未与机床进行连接！";
        QTest::newRow("a folder") << "progs/" << true << false
                                  << "文件夹不能直接传输：progs。请打开文件夹选择其中的程序，或使用“同步”";
    }

    void refusalsSendNothing()
    {
        QFETCH(QString, localName);
        QFETCH(bool, connected);
        QFETCH(bool, programRuns);
        QFETCH(QString, box);
        StartSimulator();
        const QByteArray original("G0 X0\nM30\n");
        Write(MachineFile(QStringLiteral("same.nc")), original);
        const bool bFolder = localName.endsWith(QLatin1Char('/'));
        if (bFolder) {
            localName.chop(1);
            QVERIFY(QDir(m_localDir.path()).mkdir(localName));
            Write(LocalFile(localName + QStringLiteral("/in.nc")), RandomBytes(4096));
        } else {
            Write(LocalFile(localName), RandomBytes(4096));
        }
        // Real-time records come every 50 ms, so the running program is known quickly.
        QSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat)
            .setValue(QStringLiteral("TimerInterval"), 50);
        if (connected)
            ConnectWorkspace();
        else
            ShowWorkspace();
        if (programRuns) {
            QString error;
            QVERIFY2(m_sim->Machine().StartProgram(QStringLiteral("/same.nc"), &error), qPrintable(error));
            QTRY_COMPARE_WITH_TIMEOUT(m_workspace->FileService()->RunningProgram(), QStringLiteral("same.nc"), 5000);
        }
        FileManager* manager = m_workspace->GetFileManager();
        QTRY_VERIFY(
            (bFolder ? manager->LocalPanel()->FolderNames() : manager->LocalPanel()->FileNames()).contains(localName));
        Select(manager->LocalPanel(), {localName});
        const int accepted = m_sim->FtpServer().AcceptedSessionCount();
        QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
        QTRY_COMPARE(m_listBoxes.size(), 1);
        QCOMPARE(m_listBoxes.first().strText, box);
        QVERIFY(HasLine(box, LogColors::Warning));
        QCOMPARE(RowCount(), 0);
        QCOMPARE(Read(MachineFile(QStringLiteral("same.nc"))), original);
        QCOMPARE(m_sim->FtpServer().AcceptedSessionCount(), accepted);
        if (!bFolder)
            return;
        // A folder dropped from the desktop meets the same refusal as the arrow's.
        QMimeData desktop;
        desktop.setUrls({QUrl::fromLocalFile(LocalFile(localName))});
        DragAndDrop(manager->MachinePanel(), &desktop);
        QTRY_COMPARE(m_listBoxes.size(), 2);
        QCOMPARE(m_listBoxes.last().strText, box);
        QCOMPARE(RowCount(), 0);
    }

    void busyPathIsDroppedAndPanelsStayLockedToTheEnd()
    {
        StartSimulator(400 * 1024);
        Write(LocalFile(QStringLiteral("long.nc")), RandomBytes(600 * 1024));
        Write(LocalFile(QStringLiteral("short.nc")), RandomBytes(100 * 1024));
        QVERIFY(QDir(m_rootDir.path()).mkdir(QStringLiteral("sub")));
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        MachineFileService* files = m_workspace->FileService();
        QTRY_VERIFY(MachineNames().contains(QStringLiteral("sub")));

        m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("long.nc")), QStringLiteral("/long.nc"));
        m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("long.nc")), QStringLiteral("/long.nc"));
        m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("short.nc")), QStringLiteral("/short.nc"));
        QTRY_COMPARE(files->RunningCount(), 2);
        QCOMPARE(RowCount(), 2);
        QVERIFY(manager->MachinePanel()->IsPanelBusy());
        // A folder opened meanwhile is opened once the last transfer ends.
        FileSelectPanel* machine = manager->MachinePanel();
        machine->SlotTreeDoubleClicked(SimWorkspaceFixture::PanelRow(*machine, QStringLiteral("sub")));
        QCOMPARE(machine->CurrentPath(), QStringLiteral("/"));

        QVERIFY(Reaches(Key(QStringLiteral("/short.nc"), true), TanslateInfo::StateSucceeded, 10000));
        QVERIFY(RowState(Key(QStringLiteral("/long.nc"), true)) != TanslateInfo::StateSucceeded);
        QVERIFY(manager->MachinePanel()->IsPanelBusy());
        QVERIFY(g_bTranslating);

        QVERIFY(Reaches(Key(QStringLiteral("/long.nc"), true), TanslateInfo::StateSucceeded, 10000));
        QVERIFY(!manager->MachinePanel()->IsPanelBusy());
        QVERIFY(!g_bTranslating);
        QTRY_COMPARE(machine->CurrentPath(), QStringLiteral("/sub"));
    }

    void interruptedCutLeavesAllAsItWas_data()
    {
        QTest::addColumn<bool>("cancelled");
        QTest::newRow("data link dropped") << false;
        QTest::newRow("job cancelled") << true;
    }

    void interruptedCutLeavesAllAsItWas()
    {
        QFETCH(bool, cancelled);
        StartSimulator(cancelled ? 200 * 1024 : 0, cancelled ? -1 : 64 * 1024);
        // A program of 50 MB is surely still on its way when the job is cancelled.
        Write(LocalFile(QStringLiteral("cut.nc")),
              cancelled ? QByteArray(50 * 1024 * 1024, 'G') : RandomBytes(400 * 1024));
        Write(MachineFile(QStringLiteral("cut.nc")), "old program");
        ConnectWorkspace();
        auto* clip = new QMimeData;
        clip->setData(QStringLiteral("MimeDataCopy"), R"({"operation":"cut","sourceType":1})");
        QApplication::clipboard()->setMimeData(clip);

        MachineJob* job = m_workspace->FileService()->Transfer(
            m_workspace->Connection()->Endpoint(),
            {TransferItem{true, LocalFile(QStringLiteral("cut.nc")), QStringLiteral("/cut.nc"), OperationCut}},
            RequestOrigin::FilePage, true);
        auto result = MachineJob::Result::Running;
        connect(job, &MachineJob::SignalResult, this, [&result](MachineJob* ended) { result = ended->GetResult(); });
        if (cancelled) {
            QTRY_VERIFY(MachineRootEntries().size() == 2);
            job->Cancel();
        }
        QVERIFY(Reaches(Key(QStringLiteral("/cut.nc"), true), TanslateInfo::StateFailed, 30000));
        QTRY_COMPARE(result, cancelled ? MachineJob::Result::Cancelled : MachineJob::Result::Failed);
        QVERIFY(HasLine(QStringLiteral("上传文件失败：cut.nc"), LogColors::Failure));
        // The source and the clipboard stay for another paste; the machine keeps the old program whole.
        QVERIFY(QFileInfo::exists(LocalFile(QStringLiteral("cut.nc"))));
        QVERIFY(QApplication::clipboard()->mimeData()->hasFormat(QStringLiteral("MimeDataCopy")));
        QCOMPARE(Read(MachineFile(QStringLiteral("cut.nc"))), QByteArray("old program"));
        // The machine is left without the partial upload.
        QTRY_COMPARE(MachineRootEntries(), QStringList{QStringLiteral("cut.nc")});
        QTRY_VERIFY(!g_bTranslating);
    }

    void disconnectStopsTransfersAndRetryResumes()
    {
        StartSimulator(100 * 1024);
        const QByteArray content = RandomBytes(300 * 1024);
        Write(LocalFile(QStringLiteral("slow.nc")), content);
        ConnectWorkspace();
        const QString key = Key(QStringLiteral("/slow.nc"), true);

        m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("slow.nc")), QStringLiteral("/slow.nc"));
        QTRY_VERIFY(MachineRootEntries().size() == 1);
        m_workspace->DisconnectMachine(false);
        QVERIFY(Reaches(key, TanslateInfo::StateFailed, 10000));
        QVERIFY(!QFileInfo::exists(MachineFile(QStringLiteral("slow.nc"))));
        QTRY_VERIFY(!g_bTranslating);

        m_sim->Options().ftpRate = 0;
        m_workspace->ConnectToMachine(Ip, QString::fromLatin1(kSn));
        QTRY_VERIFY_WITH_TIMEOUT(m_workspace->GetFileManager()->IsConnected(), 10000);
        Q_EMIT m_workspace->GetTransManager()->TransferList()->SignalRestartTransfer(key);
        QVERIFY(Reaches(key, TanslateInfo::StateSucceeded, 10000));
        QCOMPARE(Read(MachineFile(QStringLiteral("slow.nc"))), content);
    }

    void shownSpeedFollowsTheLink_data()
    {
        QTest::addColumn<bool>("upload");
        QTest::newRow("download") << false;
        QTest::newRow("upload") << true;
    }

    // What the operator reads in the list while a program crawls over a 1 MiB/s link.
    void shownSpeedFollowsTheLink()
    {
        QFETCH(bool, upload);
        constexpr qint64 Rate = 1024 * 1024;
        StartSimulator(Rate);
        Write(upload ? LocalFile(QStringLiteral("big.nc")) : MachineFile(QStringLiteral("big.nc")),
              QByteArray(10 * Rate, 'G'));
        ConnectWorkspace();
        QStandardItemModel* model = m_workspace->GetTransManager()->TransferList()->Model();
        QElapsedTimer clock;
        // When a speed was shown (ms since the start), bytes per second: each report once, even
        // when it shows the same speed as the one before.
        QList<QPair<qint64, double>> shown;
        connect(model, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex& from, const QModelIndex&, const QList<int>& roles) {
                    if (!roles.contains(CProgressDelegate::InfoRole))
                        return;
                    const QString text = model->index(from.row(), TransList::ColumnProgress)
                                             .data(CProgressDelegate::SpeedTextRole)
                                             .toString();
                    const double factor = text.endsWith(QLatin1String("MB/s"))   ? Rate
                                          : text.endsWith(QLatin1String("KB/s")) ? 1024
                                                                                 : 1;
                    const double speed = text.section(QLatin1Char(' '), 0, 0).toDouble() * factor;
                    if (shown.isEmpty() || shown.last().second != speed || clock.elapsed() - shown.last().first > 500)
                        shown.append({clock.elapsed(), speed});
                });
        clock.start();
        if (upload)
            m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("big.nc")), QStringLiteral("/big.nc"));
        else
            m_workspace->SlotDownLoadFile(LocalFile(QStringLiteral("big.nc")), QStringLiteral("/big.nc"));
        QVERIFY(Reaches(Key(QStringLiteral("/big.nc"), upload), TanslateInfo::StateSucceeded, 40000));
        const qint64 end = clock.elapsed();
        int judged = 0;
        QStringList seen;
        for (const auto& [at, speed] : shown)
            seen.append(QStringLiteral("%1s:%2").arg(at / 1000.0, 0, 'f', 1).arg(speed / Rate, 0, 'f', 2));
        // The first speed counts the bytes that filled the socket's send buffer as well; the last
        // second is cut short by the end.
        bool bBeforeFirstSpeed = true;
        for (const auto& [at, speed] : shown) {
            const bool bSkip = bBeforeFirstSpeed || at > end - 1000;
            bBeforeFirstSpeed = bBeforeFirstSpeed && speed <= 0;
            if (bSkip)
                continue;
            ++judged;
            QVERIFY2(speed >= 0.8 * Rate && speed <= 1.2 * Rate, qPrintable(seen.join(QLatin1Char(' '))));
        }
        QVERIFY2(judged >= 3, qPrintable(seen.join(QLatin1Char(' '))));
    }

    void deadTemporaryFilesOfOursGoWhenTheFolderIsListed()
    {
        StartSimulator();
        const QString marker = FtpTemporaryName::InstallationMarker();
        const QString foreign = marker == QLatin1String("zzzz") ? QStringLiteral("yyyy") : QStringLiteral("zzzz");
        const QString dead = QStringLiteral(".a.nc.%1abcdef.part").arg(marker);
        const QString young = QStringLiteral(".b.nc.%1abcdef.part").arg(marker);
        const QString others = QStringLiteral(".c.nc.%1abcdef.part").arg(foreign);
        for (const QString& name : {dead, young, others}) {
            QFile file(MachineFile(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(RandomBytes(1024));
            file.flush();
            if (name != young)
                file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
        }
        ConnectWorkspace();

        // Only the old one with this installation's marker goes; another computer's upload may still run.
        QTRY_COMPARE_WITH_TIMEOUT(MachineRootEntries(), QStringList({young, others}), 10000);
        QTRY_VERIFY(HasLine(QStringLiteral("已删除中断的上传留下的临时文件：%1").arg(dead), LogColors::Plain));
        // Ours are never shown as programs.
        m_workspace->GetFileManager()->MachinePanel()->RefreshPanel();
        QTRY_VERIFY(MachineNames().contains(others));
        QVERIFY(!MachineNames().contains(young));
    }

    void cutPasteClearsTheClipboardOnlyAfterTheUpload()
    {
        StartSimulator(300 * 1024);
        const QByteArray content = RandomBytes(300 * 1024);
        Write(LocalFile(QStringLiteral("moved.nc")), content);
        ConnectWorkspace();
        FileManager* manager = m_workspace->GetFileManager();
        manager->LocalPanel()->RefreshPanel();
        QTRY_VERIFY(manager->LocalPanel()->FileNames().contains(QStringLiteral("moved.nc")));

        Select(manager->LocalPanel(), {QStringLiteral("moved.nc")});
        QTest::keyClick(manager->LocalPanel()->TreeView(), Qt::Key_X, Qt::ControlModifier);
        QTest::keyClick(manager->MachinePanel()->TreeView(), Qt::Key_V, Qt::ControlModifier);
        const QString key = Key(QStringLiteral("/moved.nc"), true);
        QTRY_COMPARE(RowState(key), int(TanslateInfo::StateRunning));
        QVERIFY(QApplication::clipboard()->mimeData()->hasFormat(QStringLiteral("MimeDataCopy")));
        QVERIFY(QFileInfo::exists(LocalFile(QStringLiteral("moved.nc"))));

        QVERIFY(Reaches(key, TanslateInfo::StateSucceeded));
        QCOMPARE(Read(MachineFile(QStringLiteral("moved.nc"))), content);
        QVERIFY(!QFileInfo::exists(LocalFile(QStringLiteral("moved.nc"))));
        const QMimeData* mime = QApplication::clipboard()->mimeData();
        QVERIFY(!mime || !mime->hasFormat(QStringLiteral("MimeDataCopy")));
    }
};

QTEST_MAIN(TestFilePage)
#include "tst_FilePage.moc"
