#include "CVarnokMessageBox.h"
#include "CamBaseTextHelper.h"
#include "CncSimulator.h"
#include "KorvBaseGlobals.h"
#include "MachinePortMap.h"
#include "SimFtpServer.h"
#include "SimMachine.h"
#include "SimWorkspaceFixture.h"
#include "WorkspaceLogProbe.h"
#include "filepanel/FileClipboardPayload.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "transfer/CProgressDelegate.h"
#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"
#include "MachineFileService.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDropEvent>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
const QString Ip = QStringLiteral("127.0.0.1");
const QColor Grey(51, 51, 51);
const QColor Red(220, 50, 50);

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
    const QAbstractItemModel* model = panel->TreeView()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        if (names.contains(index.data(FileItemRole::Name).toString()))
            selection->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}
} // namespace

// The file page of a real, shown Workspace against the simulator on loopback: what the
// operator presses, and what arrives on either disk, in the list and in the log.
class TestFilePage : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void uploadAndDownloadArriveByteForByte();
    void refusalsSendNothing_data();
    void refusalsSendNothing();
    void busyPathIsDroppedAndPanelsStayLockedToTheEnd();
    void cutTransferEndings_data();
    void cutTransferEndings();
    void disconnectStopsTransfersAndRetryResumes();
    void thirtyFilesNeverExceedTheLimit();
    void dropsGoThroughThePasteChecks();
    void cutPasteClearsTheClipboardOnlyAfterTheUpload();

private:
    void StartSimulator(qint64 rate = 0, qint64 dropAfter = -1);
    bool HasLine(const QString& text, const QColor& color) const;
    int RowState(const QString& key) const;
    QString RowSpeedText(const QString& key) const;
    QString Key(const QString& machinePath, bool upload) const;
};

void TestFilePage::initTestCase()
{
    SetUpFixture();
}

void TestFilePage::init()
{
    ResetFixture();
}

void TestFilePage::cleanup()
{
    TearDownFixture();
    QApplication::clipboard()->clear();
}

void TestFilePage::StartSimulator(qint64 rate, qint64 dropAfter)
{
    SimOptions options = DefaultSimOptions();
    options.ftpRate = rate;
    options.ftpDropAfter = dropAfter;
    SimWorkspaceFixture::StartSimulator(options);
}

bool TestFilePage::HasLine(const QString& text, const QColor& color) const
{
    return WorkspaceLogHas(*m_workspace, text, color);
}

QString TestFilePage::Key(const QString& machinePath, bool upload) const
{
    return QStringLiteral("ftp://%1:21%2").arg(Ip, machinePath) +
           (upload ? QStringLiteral("*Upload") : QStringLiteral("*Download"));
}

int TestFilePage::RowState(const QString& key) const
{
    TransList* list = m_workspace->GetTransManager()->TransferList();
    const int row = list->RowOfKey(key);
    if (row < 0)
        return -1;
    return list->Model()
        ->index(row, TransList::ColumnProgress)
        .data(CProgressDelegate::InfoRole)
        .value<TanslateInfo>()
        .state;
}

QString TestFilePage::RowSpeedText(const QString& key) const
{
    TransList* list = m_workspace->GetTransManager()->TransferList();
    const int row = list->RowOfKey(key);
    return row < 0
               ? QString()
               : list->Model()->index(row, TransList::ColumnProgress).data(CProgressDelegate::SpeedTextRole).toString();
}

void TestFilePage::uploadAndDownloadArriveByteForByte()
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
    QTRY_COMPARE_WITH_TIMEOUT(RowState(Key(QStringLiteral("/part.nc"), true)), int(TanslateInfo::StateSucceeded),
                              15000);
    QCOMPARE(Read(MachineFile(QStringLiteral("part.nc"))), upload);
    QVERIFY(HasLine(QStringLiteral("开始上传文件：part.nc"), Grey));
    QVERIFY(HasLine(QStringLiteral("上传文件完成：part.nc"), Grey));
    // No temporary name is left behind, and the new file shows in the machine panel.
    QCOMPARE(QDir(m_rootDir.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({QStringLiteral("fixture.tap"), QStringLiteral("part.nc")}));
    QTRY_VERIFY_WITH_TIMEOUT(MachineNames().contains(QStringLiteral("part.nc")), 10000);
    QVERIFY(!g_bTranslating);

    Select(manager->MachinePanel(), {QStringLiteral("fixture.tap")});
    QTest::mouseClick(manager->DownloadButton(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(RowState(Key(QStringLiteral("/fixture.tap"), false)), int(TanslateInfo::StateSucceeded),
                              15000);
    QCOMPARE(Read(LocalFile(QStringLiteral("fixture.tap"))), download);
    QVERIFY(HasLine(QStringLiteral("开始下载文件：fixture.tap"), Grey));
    QVERIFY(HasLine(QStringLiteral("下载文件完成：fixture.tap"), Grey));

    // Overwriting after a Yes replaces the machine's file whole.
    const QByteArray second = RandomBytes(50 * 1024);
    Write(LocalFile(QStringLiteral("part.nc")), second);
    manager->LocalPanel()->RefreshPanel();
    QTRY_VERIFY(manager->LocalPanel()->FileNames().contains(QStringLiteral("part.nc")));
    QTRY_VERIFY_WITH_TIMEOUT(MachineNames().contains(QStringLiteral("part.nc")), 10000);
    Select(manager->LocalPanel(), {QStringLiteral("part.nc")});
    QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
    QCOMPARE(m_listBoxes.size(), 1);
    QCOMPARE(m_listBoxes.first().strText, QStringLiteral("目标路径已包含同名文件：part.nc，是否覆盖？"));
    QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("part.nc"))), second, 15000);
}

void TestFilePage::refusalsSendNothing_data()
{
    QTest::addColumn<QString>("localName");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("programRuns");
    QTest::addColumn<QString>("box");
    QTest::newRow("overwrite answered No")
        << "same.nc" << int(MsgButtonNo) << false << "目标路径已包含同名文件：same.nc，是否覆盖？";
    QTest::newRow("wrong type") << "tool.exe" << int(MsgButtonYes) << false << "文件类型不符合要求：tool.exe";
    QTest::newRow("running program") << "same.nc" << int(MsgButtonYes) << true
                                     << "机床正在运行程序same.nc，不能覆盖、删除或重命名：/same.nc";
}

void TestFilePage::refusalsSendNothing()
{
    QFETCH(QString, localName);
    QFETCH(int, answer);
    QFETCH(bool, programRuns);
    QFETCH(QString, box);
    StartSimulator();
    const QByteArray original("G0 X0\nM30\n");
    Write(MachineFile(QStringLiteral("same.nc")), original);
    Write(LocalFile(localName), RandomBytes(4096));
    // Real-time records come every 50 ms, so the running program is known quickly.
    QSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat)
        .setValue(QStringLiteral("TimerInterval"), 50);
    ConnectWorkspace();
    if (programRuns) {
        QString error;
        QVERIFY2(m_sim->Machine().StartProgram(QStringLiteral("/same.nc"), &error), qPrintable(error));
        QTRY_COMPARE_WITH_TIMEOUT(m_workspace->FileService()->RunningProgram(), QStringLiteral("same.nc"),
                                  5000);
    }
    m_iAnswer = answer;
    FileManager* manager = m_workspace->GetFileManager();
    Select(manager->LocalPanel(), {localName});
    const int accepted = m_sim->FtpServer().AcceptedSessionCount();
    QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
    // The running-program box follows the overwrite question, once the click's call chain has returned.
    QTRY_VERIFY(!m_listBoxes.isEmpty() && m_listBoxes.last().strText == box);
    QCOMPARE(m_workspace->GetTransManager()->TransferList()->Model()->rowCount(), 0);
    QCOMPARE(Read(MachineFile(QStringLiteral("same.nc"))), original);
    QCOMPARE(m_sim->FtpServer().AcceptedSessionCount(), accepted);
    QFile::remove(CamBaseTextHelper::instance()->GetLocalTestIniFilePath());
}

void TestFilePage::busyPathIsDroppedAndPanelsStayLockedToTheEnd()
{
    StartSimulator(400 * 1024);
    Write(LocalFile(QStringLiteral("long.nc")), RandomBytes(600 * 1024));
    Write(LocalFile(QStringLiteral("short.nc")), RandomBytes(100 * 1024));
    ConnectWorkspace();
    FileManager* manager = m_workspace->GetFileManager();
    TransferOrchestrator* transfers = m_workspace->FileService();

    m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("long.nc")), QStringLiteral("/long.nc"));
    m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("long.nc")), QStringLiteral("/long.nc"));
    m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("short.nc")), QStringLiteral("/short.nc"));
    QCOMPARE(transfers->RunningUrls().size(), 2);
    QCOMPARE(m_workspace->GetTransManager()->TransferList()->Model()->rowCount(), 2);
    QVERIFY(manager->MachinePanel()->IsPanelBusy());
    // A navigation asked for meanwhile waits for the last transfer.
    QSignalSpy navigations(transfers, &TransferOrchestrator::SignalMachineNavigation);
    transfers->NavigateMachinePanel(QStringLiteral("/"), QStringLiteral("short.nc"));
    QCOMPARE(navigations.count(), 0);

    QTRY_COMPARE_WITH_TIMEOUT(RowState(Key(QStringLiteral("/short.nc"), true)), int(TanslateInfo::StateSucceeded),
                              10000);
    QVERIFY(RowState(Key(QStringLiteral("/long.nc"), true)) != TanslateInfo::StateSucceeded);
    QVERIFY(manager->MachinePanel()->IsPanelBusy());
    QVERIFY(g_bTranslating);

    QTRY_COMPARE_WITH_TIMEOUT(RowState(Key(QStringLiteral("/long.nc"), true)), int(TanslateInfo::StateSucceeded),
                              10000);
    QVERIFY(!manager->MachinePanel()->IsPanelBusy());
    QVERIFY(!g_bTranslating);
    QCOMPARE(navigations.count(), 1);
}

void TestFilePage::cutTransferEndings_data()
{
    QTest::addColumn<qint64>("dropAfter");
    QTest::addColumn<bool>("vanish");
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("cut succeeds") << qint64(-1) << false << true;
    QTest::newRow("data link dropped") << qint64(64 * 1024) << false << false;
    QTest::newRow("machine vanishes") << qint64(-1) << true << false;
}

void TestFilePage::cutTransferEndings()
{
    QFETCH(qint64, dropAfter);
    QFETCH(bool, vanish);
    QFETCH(bool, succeeds);
    StartSimulator(vanish ? 200 * 1024 : 0, dropAfter);
    const QByteArray content = RandomBytes(400 * 1024);
    Write(LocalFile(QStringLiteral("cut.nc")), content);
    Write(MachineFile(QStringLiteral("cut.nc")), "old program");
    ConnectWorkspace();
    auto* clip = new QMimeData;
    clip->setData(QStringLiteral("MimeDataCopy"), R"({"operation":"cut","sourceType":1})");
    QApplication::clipboard()->setMimeData(clip);

    m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("cut.nc")), QStringLiteral("/cut.nc"), OperationCut);
    if (vanish) {
        QTRY_VERIFY(
            QFileInfo(LocalFile(QStringLiteral("cut.nc"))).exists() &&
            !QDir(m_rootDir.path()).entryList({QStringLiteral(".cut.nc.*")}, QDir::Files | QDir::Hidden).isEmpty());
        m_sim->Vanish();
    }
    const int expected = succeeds ? TanslateInfo::StateSucceeded : TanslateInfo::StateFailed;
    QTRY_COMPARE_WITH_TIMEOUT(RowState(Key(QStringLiteral("/cut.nc"), true)), expected, 30000);
    QCOMPARE(QFileInfo::exists(LocalFile(QStringLiteral("cut.nc"))), !succeeds);
    const QMimeData* mime = QApplication::clipboard()->mimeData();
    QCOMPARE(mime && mime->hasFormat(QStringLiteral("MimeDataCopy")), !succeeds);
    // The machine has either the whole new program or the old one under the real name.
    QCOMPARE(Read(MachineFile(QStringLiteral("cut.nc"))), succeeds ? content : QByteArray("old program"));
    if (!succeeds)
        QVERIFY(HasLine(QStringLiteral("上传文件失败：cut.nc"), Red));
}

void TestFilePage::disconnectStopsTransfersAndRetryResumes()
{
    StartSimulator(100 * 1024);
    const QByteArray content = RandomBytes(300 * 1024);
    Write(LocalFile(QStringLiteral("slow.nc")), content);
    ConnectWorkspace();
    const QString key = Key(QStringLiteral("/slow.nc"), true);

    m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("slow.nc")), QStringLiteral("/slow.nc"));
    QTRY_VERIFY(
        !QDir(m_rootDir.path()).entryList({QStringLiteral(".slow.nc.*")}, QDir::Files | QDir::Hidden).isEmpty());
    m_workspace->DisconnectMachine(false);
    QTRY_COMPARE_WITH_TIMEOUT(RowState(key), int(TanslateInfo::StateFailed), 10000);
    QVERIFY(!QFileInfo::exists(MachineFile(QStringLiteral("slow.nc"))));
    QVERIFY(!m_workspace->GetFileManager()->IsConnected());
    QCOMPARE(m_workspace->GetFileManager()->MachinePanel()->ItemModel()->rowCount(), 0);
    QTRY_VERIFY(!g_bTranslating);

    m_sim->Options().ftpRate = 0;
    m_workspace->ConnectToMachine(Ip, QStringLiteral("PB01SIM0001"));
    QTRY_VERIFY_WITH_TIMEOUT(m_workspace->GetFileManager()->IsConnected(), 10000);
    Q_EMIT m_workspace->GetTransManager()->TransferList()->SignalRestartTransfer(key);
    QTRY_COMPARE_WITH_TIMEOUT(RowState(key), int(TanslateInfo::StateSucceeded), 10000);
    QCOMPARE(Read(MachineFile(QStringLiteral("slow.nc"))), content);
}

void TestFilePage::thirtyFilesNeverExceedTheLimit()
{
    StartSimulator(256 * 1024);
    QStringList names;
    for (int i = 0; i < 30; ++i) {
        names.append(QStringLiteral("batch_%1.nc").arg(i, 2, 10, QLatin1Char('0')));
        Write(LocalFile(names.last()), RandomBytes(20 * 1024));
    }
    ConnectWorkspace();
    FileManager* manager = m_workspace->GetFileManager();
    manager->LocalPanel()->RefreshPanel();
    QTRY_COMPARE(manager->LocalPanel()->FileNames().size(), 30);
    const int acceptedBefore = m_sim->FtpServer().AcceptedSessionCount();

    Select(manager->LocalPanel(), names);
    QTest::mouseClick(manager->UploadButton(), Qt::LeftButton);
    QCOMPARE(m_workspace->FileService()->RunningUrls().size(), TransferOrchestrator::DefaultMaxTransfers);
    QCOMPARE(RowSpeedText(Key(QStringLiteral("/batch_29.nc"), true)), QStringLiteral("等待中"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_workspace->FileService()->IsBusy(), 30000);
    for (const QString& name : names)
        QCOMPARE(RowState(Key(QLatin1Char('/') + name, true)), int(TanslateInfo::StateSucceeded));
    QVERIFY2(m_sim->FtpServer().PeakSessionCount() <= TransferOrchestrator::DefaultMaxTransfers,
             qPrintable(QString::number(m_sim->FtpServer().PeakSessionCount())));
    // Logged-in connections are reused: far fewer log-ins than files.
    QVERIFY2(m_sim->FtpServer().AcceptedSessionCount() - acceptedBefore <= TransferOrchestrator::DefaultMaxTransfers,
             qPrintable(QString::number(m_sim->FtpServer().AcceptedSessionCount() - acceptedBefore)));
}

void TestFilePage::dropsGoThroughThePasteChecks()
{
    StartSimulator();
    const QByteArray first = RandomBytes(40 * 1024);
    const QByteArray second = RandomBytes(70 * 1024);
    const QByteArray machine = RandomBytes(10 * 1024);
    Write(LocalFile(QStringLiteral("drop1.nc")), first);
    Write(LocalFile(QStringLiteral("drop2.tap")), second);
    Write(LocalFile(QStringLiteral("tool.exe")), "MZ");
    Write(MachineFile(QStringLiteral("back.nc")), machine);
    ConnectWorkspace();
    FileManager* manager = m_workspace->GetFileManager();

    // Files from the desktop onto the machine panel: both reach the machine.
    QMimeData desktop;
    desktop.setUrls({QUrl::fromLocalFile(LocalFile(QStringLiteral("drop1.nc"))),
                     QUrl::fromLocalFile(LocalFile(QStringLiteral("drop2.tap")))});
    QVERIFY(DragAndDrop(manager->MachinePanel(), &desktop));
    QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("drop2.tap"))), second, 15000);
    QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(QStringLiteral("drop1.nc"))), first, 15000);
    QTRY_VERIFY_WITH_TIMEOUT(!m_workspace->FileService()->IsBusy(), 10000);

    // A type the machine does not run: refused with the same box as a paste, nothing sent.
    QMimeData wrongType;
    wrongType.setUrls({QUrl::fromLocalFile(LocalFile(QStringLiteral("tool.exe")))});
    QVERIFY(DragAndDrop(manager->MachinePanel(), &wrongType));
    QTRY_VERIFY(!m_listBoxes.isEmpty());
    QCOMPARE(m_listBoxes.last().strText, QStringLiteral("以下文件类型不支持上传：\ntool.exe"));
    QVERIFY(!QFileInfo::exists(MachineFile(QStringLiteral("tool.exe"))));

    // Machine entries: onto the machine panel there is nowhere to go; onto the local panel they download.
    FileClipboardPayload payload;
    payload.strOperation = QStringLiteral("copy");
    payload.iSourceType = FileClipboardPayload::SourceMachine;
    payload.listFiles = {{QStringLiteral("/back.nc"), QStringLiteral("back.nc")}};
    std::unique_ptr<QMimeData> fromMachine(payload.ToMimeData());
    QVERIFY(!DragAndDrop(manager->MachinePanel(), fromMachine.get()));
    QVERIFY(DragAndDrop(manager->LocalPanel(), fromMachine.get()));
    QTRY_COMPARE_WITH_TIMEOUT(Read(LocalFile(QStringLiteral("back.nc"))), machine, 15000);
}

void TestFilePage::cutPasteClearsTheClipboardOnlyAfterTheUpload()
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

    QTRY_COMPARE_WITH_TIMEOUT(RowState(key), int(TanslateInfo::StateSucceeded), 15000);
    QCOMPARE(Read(MachineFile(QStringLiteral("moved.nc"))), content);
    QVERIFY(!QFileInfo::exists(LocalFile(QStringLiteral("moved.nc"))));
    const QMimeData* mime = QApplication::clipboard()->mimeData();
    QVERIFY(!mime || !mime->hasFormat(QStringLiteral("MimeDataCopy")));
}

QTEST_MAIN(TestFilePage)
#include "tst_FilePage.moc"
