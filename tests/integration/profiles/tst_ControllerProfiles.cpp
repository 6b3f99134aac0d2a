#include "CVarnokMessageBox.h"
#include "CamBaseTextHelper.h"
#include "CncSimulator.h"
#include "FtpNameRules.h"
#include "FtpSettings.h"
#include "KorvBaseGlobals.h"
#include "MachineFileService.h"
#include "MachinePortMap.h"
#include "SimFtpServer.h"
#include "SimMachine.h"
#include "SimWorkspaceFixture.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "transfer/CProgressDelegate.h"
#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QDir>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
const QString Ip = QStringLiteral("127.0.0.1");
const QColor Red(220, 50, 50);
const QColor Orange(220, 150, 0);
} // namespace

// The workspace's file page against cnc-sim in the controller profiles: what the operator does,
// and what arrives on either disk, in the transfer list and in the log.
class TestControllerProfiles : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void profileRoundTrip_data();
    void profileRoundTrip();
    void uploadFailuresKeepTheOldProgram_data();
    void uploadFailuresKeepTheOldProgram();
    void foreignNamesSuggestTheEncoding();

private:
    int RowState(const QString& machinePath, bool upload) const;
    bool LogContains(const QString& text, const QColor& color) const;
};

void TestControllerProfiles::initTestCase()
{
    SetUpFixture();
}

void TestControllerProfiles::init()
{
    ResetFixture();
    FtpSettings::SetNameEncodingFor(Ip, "UTF-8");
    FtpNameRules::Save(Ip, FtpNameRules());
}

void TestControllerProfiles::cleanup()
{
    TearDownFixture();
}

int TestControllerProfiles::RowState(const QString& machinePath, bool upload) const
{
    const QString key = QStringLiteral("ftp://%1:21%2").arg(Ip, machinePath) +
                        (upload ? QStringLiteral("*Upload") : QStringLiteral("*Download"));
    TransList* list = m_workspace->GetTransManager()->TransferList();
    const int row = list->RowOfKey(key);
    return row < 0 ? -1
                   : list->Model()
                         ->index(row, TransList::ColumnProgress)
                         .data(CProgressDelegate::InfoRole)
                         .value<TanslateInfo>()
                         .state;
}

bool TestControllerProfiles::LogContains(const QString& text, const QColor& color) const
{
    const TransLogModel* model = m_workspace->GetTransManager()->LogPane()->LogModel();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, TransLogModel::ColumnMessage);
        if (index.data().toString().contains(text) && index.data(Qt::ForegroundRole).value<QColor>() == color)
            return true;
    }
    return false;
}

void TestControllerProfiles::profileRoundTrip_data()
{
    QTest::addColumn<QString>("profile");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("name");
    QTest::newRow("single-session-dos-gbk") << "single-session-dos-gbk" << QByteArray("GBK") << "零件程序.nc";
    QTest::newRow("single-session-unix-year-sjis")
        << "single-session-unix-year-sjis" << QByteArray("Shift_JIS") << "加工プログラム.nc";
    QTest::newRow("pc-control") << "pc-control" << QByteArray("UTF-8") << "程序 A.nc";
}

// Listing, upload (new and over an existing program whose rename the machine refuses),
// download, rename and delete, with the names on the wire in the machine's encoding.
void TestControllerProfiles::profileRoundTrip()
{
    QFETCH(QString, profile);
    QFETCH(QByteArray, encoding);
    QFETCH(QString, name);
    FtpSettings::SetNameEncodingFor(Ip, encoding);
    const QString present = QStringLiteral("旧") + name;
    const QByteArray presentBytes = RandomBytes(20 * 1024);
    Write(MachineFile(present), presentBytes);
    StartSimulator({"--profile", profile});
    ConnectWorkspace();
    QVERIFY(MachineNames().contains(present));

    const QByteArray first = RandomBytes(200 * 1024);
    Write(LocalFile(name), first);
    m_workspace->SlotUpLoadFile(LocalFile(name), QLatin1Char('/') + name);
    QTRY_COMPARE_WITH_TIMEOUT(RowState(QLatin1Char('/') + name, true), int(TanslateInfo::StateSucceeded), 10000);
    QCOMPARE(Read(MachineFile(name)), first);
    const QByteArray second = RandomBytes(90 * 1024);
    Write(LocalFile(name), second);
    // The machine holds the name now: the upload asks first (answered yes) and then replaces it.
    m_workspace->SlotUpLoadFile(LocalFile(name), QLatin1Char('/') + name);
    QTRY_COMPARE_WITH_TIMEOUT(Read(MachineFile(name)), second, 10000);
    QTRY_VERIFY_WITH_TIMEOUT(!m_workspace->FileService()->IsBusy(), 10000);
    // Nothing is left under a temporary or set-aside name.
    QStringList expected{name, present};
    expected.sort();
    QCOMPARE(QDir(m_rootDir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name), expected);

    m_workspace->SlotDownLoadFile(LocalFile(present), QLatin1Char('/') + present);
    QTRY_COMPARE_WITH_TIMEOUT(RowState(QLatin1Char('/') + present, false), int(TanslateInfo::StateSucceeded), 10000);
    QCOMPARE(Read(LocalFile(present)), presentBytes);

    const QString renamed = QStringLiteral("新") + name;
    m_workspace->SlotRenameTriggered(QLatin1Char('/') + name, QLatin1Char('/') + renamed);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(MachineFile(renamed)), 10000);
    QCOMPARE(Read(MachineFile(renamed)), second);
    m_workspace->SlotDeleteTriggered(QLatin1Char('/') + present, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(MachineFile(present)), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(MachineNames().contains(renamed) && !MachineNames().contains(present), 10000);
}

void TestControllerProfiles::uploadFailuresKeepTheOldProgram_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<bool>("programRuns");
    QTest::addColumn<int>("maxLength");
    QTest::addColumn<bool>("caseInsensitive");
    QTest::addColumn<QString>("reason");
    QTest::newRow("short file answered 226")
        << QStringList{"--truncate-at", "1000"} << false << 0 << false << "原文件未改动";
    QTest::newRow("running program locked") << QStringList{"--busy-while-running", "--time-scale", "0.001"} << true << 0
                                            << false << "Program run.nc is running; file is locked.";
    QTest::newRow("name too long") << QStringList{} << false << 5 << false << "超过机床允许的长度（最多5个字符）";
    QTest::newRow("case collision") << QStringList{} << false << 0 << true << "与已有的“RUN.NC”冲突";
}

void TestControllerProfiles::uploadFailuresKeepTheOldProgram()
{
    QFETCH(QStringList, switches);
    QFETCH(bool, programRuns);
    QFETCH(int, maxLength);
    QFETCH(bool, caseInsensitive);
    QFETCH(QString, reason);
    const QByteArray old("G0 X0\nG1 X10 F100\nG1 X0\nM30\n");
    Write(MachineFile(QStringLiteral("run.nc")), old);
    Write(MachineFile(QStringLiteral("RUN.NC")), old);
    Write(LocalFile(QStringLiteral("run.nc")), RandomBytes(64 * 1024));
    FtpNameRules rules;
    rules.maxLength = maxLength;
    rules.bCaseInsensitive = caseInsensitive;
    FtpNameRules::Save(Ip, rules);
    StartSimulator(switches);
    QString error;
    if (programRuns)
        QVERIFY2(m_sim->Machine().StartProgram(QStringLiteral("/run.nc"), &error), qPrintable(error));
    ConnectWorkspace();
    // The workbench's own running-program guard is bypassed: this is about the machine's answer.
    m_workspace->FileService()->SetRunningProgram(QString());
    m_workspace->SlotUpLoadFile(LocalFile(QStringLiteral("run.nc")), QStringLiteral("/run.nc"));
    if (maxLength > 0) {
        // A name the machine's rules refuse is refused before anything is sent.
        QTRY_VERIFY2_WITH_TIMEOUT(LogContains(reason, Orange), qPrintable(reason), 10000);
        QCOMPARE(RowState(QStringLiteral("/run.nc"), true), -1);
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(RowState(QStringLiteral("/run.nc"), true), int(TanslateInfo::StateFailed), 10000);
        QVERIFY2(LogContains(reason, Red), qPrintable(reason));
    }
    QCOMPARE(Read(MachineFile(QStringLiteral("run.nc"))), old);
    QCOMPARE(QDir(m_rootDir.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({QStringLiteral("RUN.NC"), QStringLiteral("run.nc")}));
}

void TestControllerProfiles::foreignNamesSuggestTheEncoding()
{
    Write(MachineFile(QStringLiteral("零件.nc")), "M30\n");
    StartSimulator({"--name-encoding", "gbk"});
    m_workspace = std::make_unique<Workspace>();
    m_workspace->show();
    m_workspace->ConnectToMachine(Ip, QStringLiteral("PB01SIM0001"));
    QTRY_VERIFY_WITH_TIMEOUT(LogContains(QStringLiteral("选择文件名编码（如GBK或Shift-JIS）"), Red), 10000);
    QVERIFY(!MachineNames().contains(QStringLiteral("零件.nc")));

    // The other way round: GBK chosen for a machine that speaks UTF-8 would show garbage, not fail.
    m_workspace.reset();
    m_sim.reset();
    FtpSettings::SetNameEncodingFor(Ip, "GBK");
    StartSimulator(QStringList());
    m_workspace = std::make_unique<Workspace>();
    m_workspace->show();
    m_workspace->ConnectToMachine(Ip, QStringLiteral("PB01SIM0001"));
    QTRY_VERIFY_WITH_TIMEOUT(LogContains(QStringLiteral("为该机床选择UTF-8"), Red), 10000);
    QVERIFY(MachineNames().isEmpty());
}

QTEST_MAIN(TestControllerProfiles)
#include "tst_ControllerProfiles.moc"
