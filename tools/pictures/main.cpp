// Draws the pictures of the user guide: the file panels, the transfer manager, the status page
// and the binding dialogs against the machine simulator and the account service on loopback, and
// the machine list and the machines page of a simulated shop. Usage: korv-pictures [--lang zh|en] OUTPUT_FOLDER
#include "AccountService.h"
#include "BroadCastSender.h"
#include "CSelectMachineBox.h"
#include "CVarnokMessageBox.h"
#include "CamBaseTextHelper.h"
#include "CncSimulator.h"
#include "DiscoveryAddressList.h"
#include "KorvBaseGlobals.h"
#include "KorvLanguage.h"
#include "MachineFileService.h"
#include "MachineFleet.h"
#include "MachinePortMap.h"
#include "SimShop.h"
#include "device/DeviceVerifyDialog.h"
#include "device/VerificationImageWindow.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"
#include "fleetpage/FleetPage.h"
#include "history/HistoryController.h"
#include "history/ProgramCompareDialog.h"
#include "history/ProgramHistoryDialog.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <cstdio>
#include <functional>
#include <memory>

namespace {

QDir g_out;

// A scene stops at the first thing that did not happen, saying what and where.
#define NEED(condition)                                                                                                \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "korv-pictures: line %d: %s\n", __LINE__, #condition);                                \
            return false;                                                                                              \
        }                                                                                                              \
    } while (false)

bool Save(const QImage& image, const QString& name)
{
    const QString path = g_out.filePath(name + QStringLiteral(".png"));
    if (image.isNull() || !image.save(path)) {
        std::fprintf(stderr, "korv-pictures: cannot write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

// Each top-level window over `base` is drawn where it stands on the screen, or at `at` when given.
QImage Compose(QWidget* base, const QList<QWidget*>& windows, const QPoint& at = {})
{
    QImage image = base->grab().toImage();
    QPainter painter(&image);
    const QPoint origin = base->mapToGlobal(QPoint(0, 0));
    for (QWidget* top : windows)
        painter.drawPixmap(at.isNull() ? top->mapToGlobal(QPoint(0, 0)) - origin : at, top->grab());
    return image;
}

// Folders and files of the given sizes under `root`, for panels to list.
void Populate(const QString& root, const QStringList& folders, const QList<QPair<QString, int>>& files)
{
    const QDir dir(root);
    for (const QString& folder : folders)
        dir.mkpath(folder);
    for (const auto& [name, bytes] : files) {
        QFile file(dir.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(bytes, 'x'));
    }
}

QString Tr(const char* context, const char* source)
{
    return QCoreApplication::translate(context, source);
}

void SetSetting(const QString& key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, key, value, true);
}

// A scene's own settings folder and simulated machine, the host's ports pointed at it.
class Machine
{
public:
    static constexpr auto kSn = "PB01A2406001";

    bool Start(SimOptions options)
    {
        qputenv("KORV_CONFIG_DIR", m_config.path().toUtf8());
        options.rootDir = m_root.path();
        options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
        options.serialNumber = QString::fromLatin1(kSn);
        m_sim = std::make_unique<CncSimulator>(options);
        QString error;
        if (!m_sim->Start(&error)) {
            std::fprintf(stderr, "korv-pictures: %s\n", qPrintable(error));
            return false;
        }
        SetSetting(QString::fromLatin1(g_strSettingFtpPortMapping), m_sim->FtpPort());
        MachinePortMap::Set(30001, m_sim->InfoPort());
        MachinePortMap::Set(5002, m_sim->SnPort());
        return true;
    }

    // Shows a workspace of `size` and connects it; true once `ready` holds.
    bool Connect(const QSize& size, const std::function<bool(Workspace&)>& ready)
    {
        m_workspace = std::make_unique<Workspace>();
        m_workspace->resize(size);
        m_workspace->show();
        if (!QTest::qWaitForWindowExposed(m_workspace.get()))
            return false;
        m_workspace->ConnectToMachine(QStringLiteral("127.0.0.1"), QString::fromLatin1(kSn));
        return QTest::qWaitFor([this, &ready] { return ready(*m_workspace); }, 20000);
    }

    QString Root() const { return m_root.path(); }
    QString ConfigFile(const QString& name) const { return m_config.filePath(name); }
    Workspace& Space() { return *m_workspace; }

private:
    QTemporaryDir m_config;
    QTemporaryDir m_root;
    std::unique_ptr<CncSimulator> m_sim;
    std::unique_ptr<Workspace> m_workspace;
};

bool WaitForListing(FileSelectPanel& panel, const std::function<void()>& action)
{
    QSignalSpy spy(&panel, &FileSelectPanel::SignalListingFinished);
    action();
    return !spy.isEmpty() || spy.wait(20000);
}

QModelIndex RowNamed(const FileSelectPanel& panel, const QString& name)
{
    const QAbstractItemModel* model = panel.TreeView()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        if (model->index(row, 0).data(FileItemRole::Name).toString() == name)
            return model->index(row, 0);
    }
    return {};
}

bool FilePanels()
{
    QTemporaryDir local;
    Populate(local.path(), {QStringLiteral("夹具程序"), QStringLiteral("archive")},
             {{QStringLiteral("part10.nc"), 48213},
              {QStringLiteral("part9.nc"), 1536},
              {QStringLiteral("零件加工 A面.ngc"), 734003},
              {QStringLiteral("readme.txt"), 512},
              {QStringLiteral("a rather long program name for the elision of a cell.tap"), 5 * 1024 * 1024}});
    Machine machine;
    Populate(machine.Root(), {QStringLiteral("programs"), QStringLiteral("日志")},
             {{QStringLiteral("O1001.nc"), 20480},
              {QStringLiteral("刀具测试.tap"), 3100},
              {QStringLiteral("setup.zconf"), 211}});
    NEED(machine.Start({}));

    QWidget window;
    window.setStyleSheet(QStringLiteral("background-color: white;"));
    auto* layout = new QHBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* localPanel = new FileSelectPanel(true);
    auto* machinePanel = new FileSelectPanel(false);
    layout->addWidget(localPanel);
    layout->addWidget(machinePanel);
    window.resize(1600, 520);
    window.show();
    NEED(QTest::qWaitForWindowExposed(&window));
    NEED(WaitForListing(*localPanel, [&] { localPanel->OpenFolder(local.path()); }));
    localPanel->SlotHeaderClicked(0);
    localPanel->TreeView()->setCurrentIndex(RowNamed(*localPanel, QStringLiteral("part9.nc")));
    machinePanel->SetMachineIp(QStringLiteral("127.0.0.1"));
    NEED(WaitForListing(*machinePanel, [&] { machinePanel->RefreshPanel(); }));
    NEED(RowNamed(*machinePanel, QStringLiteral("O1001.nc")).isValid());
    NEED(Save(window.grab().toImage(), QStringLiteral("filepanel_local_and_machine")));

    // The menu over a machine program with a local file copied, so that paste is offered. It is
    // drawn at the pointer: the offscreen screen is smaller than the window and pushes it aside.
    QTest::keyClick(localPanel->TreeView(), Qt::Key_C, Qt::ControlModifier);
    QWidget* viewport = machinePanel->TreeView()->viewport();
    const QModelIndex program = RowNamed(*machinePanel, QStringLiteral("O1001.nc"));
    machinePanel->TreeView()->setCurrentIndex(program);
    const QPoint pos = machinePanel->TreeView()->visualRect(program).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos));
    QApplication::sendEvent(viewport, &event);
    QMenu* menu = machinePanel->ContextMenu();
    NEED(QTest::qWaitFor([menu] { return menu->isVisible(); }));
    const bool saved =
        Save(Compose(&window, {menu}, viewport->mapTo(&window, pos)), QStringLiteral("filepanel_machine_context_menu"));
    menu->hide();
    return saved;
}

bool TransferManager()
{
    QTemporaryDir config;
    qputenv("KORV_CONFIG_DIR", config.path().toUtf8());
    QWidget host;
    auto* manager = new TransManager(&host);
    qint64 now = QDateTime(QDate(2024, 5, 6), QTime(9, 41, 7)).toMSecsSinceEpoch();
    manager->TransferList()->SetClock([&now] { return now; });
    manager->LogPane()->LogModel()->SetClock([&now] { return now; });
    host.resize(1800, 240);
    host.show();
    NEED(QTest::qWaitForWindowExposed(&host));

    const QString machine = QStringLiteral("ftp://192.168.1.20:21/home/varnok/nc/");
    const struct
    {
        const char* name;
        double done;
        double total;
        int state;
        bool download;
    } rows[] = {
        {"D:/CAM/output/impeller_roughing_pass_with_a_long_name.nc", 3.2e6, 9.0e6, TanslateInfo::StateRunning, false},
        {"D:/CAM/output/bracket.ngc", 7.5e5, 1.0e6, TanslateInfo::StateRunning, true},
        {"D:/CAM/output/face_mill.tap", 2.4e6, 2.4e6, TanslateInfo::StateSucceeded, false},
        {"D:/CAM/output/pocket_finish.nc", 1.1e5, 4.0e5, TanslateInfo::StateFailed, false},
        {"D:/CAM/output/probe_cycle.txt", 0, 5.0e4, TanslateInfo::StateWaiting, true},
    };
    // Two reports per row, two seconds apart, so that speeds show.
    for (int pass = 0; pass < 2; ++pass) {
        for (const auto& row : rows) {
            TanslateInfo info;
            info.fileName = QString::fromUtf8(row.name);
            info.totalSize = row.total;
            info.doneSize = pass == 0 ? 0 : row.done;
            info.state = pass == 0 ? int(TanslateInfo::StateRunning) : row.state;
            info.direction = row.download;
            const QString name = QFileInfo(info.fileName).fileName();
            info.machinePath = QStringLiteral("/home/varnok/nc/") + name;
            manager->TransferList()->SlotUpdateTransfer(info,
                                                        machine + name + (row.download ? "*Download" : "*Upload"));
        }
        now += 2000;
    }
    manager->AddLog(Tr("MachineConnection", "机床连接成功，IP: %1, SN: %2").arg("192.168.1.20", Machine::kSn),
                    QColor(0, 160, 0));
    manager->AddLog(Tr("TransferOrchestrator", "开始上传文件：%1").arg("impeller_roughing_pass_with_a_long_name.nc"),
                    QColor(51, 51, 51));
    manager->AddLog(Tr("TransferOrchestrator", "上传文件完成：%1").arg("face_mill.tap"), QColor(51, 51, 51));
    manager->AddLog(Tr("TransferOrchestrator", "上传文件失败：%1").arg("pocket_finish.nc"), QColor(220, 50, 50));
    manager->AddLog(Tr("MachineConnection", "机床连接失败，重新连接中，次数：%1").arg(3), QColor(220, 150, 0));
    return Save(manager->grab().toImage(), QStringLiteral("transfer_manager"));
}

// The demo programs on the machine, the bracket running four times as fast as real.
bool RunDemoProgram(Machine& machine)
{
    const QDir demo(QStringLiteral(KORV_DEMO_DIR));
    for (const QString& name : demo.entryList(QDir::Files))
        QFile::copy(demo.filePath(name), QDir(machine.Root()).filePath(name));
    SimOptions options;
    options.runProgram = QStringLiteral("bracket_6061.nc");
    options.timeScale = 4;
    return machine.Start(options);
}

bool StatusPage()
{
    Machine machine;
    NEED(RunDemoProgram(machine));
    QSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat)
        .setValue(QStringLiteral("TimerInterval"), 100);
    NEED(machine.Connect(QSize(1440, 900),
                         [](Workspace& space) { return space.PageBar()->isTabEnabled(Workspace::PageMachineStatus); }));
    Workspace& space = machine.Space();
    space.ShowPage(Workspace::PageMachineStatus);
    const auto text = [&space](const char* name) { return space.findChild<QLabel*>(QLatin1String(name))->text(); };
    auto* badge = space.findChild<QPushButton*>(QStringLiteral("BtnCNCStatus"));
    // Let the cut get going, so that loads, feed and the program lines are those of real work.
    NEED(QTest::qWaitFor(
        [&] {
            return badge->text() == Tr("MachineStatusWidget", "运行中") && text("LabelNowNumber").toInt() >= 14 &&
                   text("LabelValueMain") != QStringLiteral("0.0%");
        },
        30000));
    QTest::qWait(500);
    return Save(space.grab().toImage(), QStringLiteral("status_page_running"));
}

// Both pages as a 1024 x 768 screen shows them: the host's side bar and title bar leave the rest.
bool SmallScreen()
{
    Machine machine;
    NEED(RunDemoProgram(machine));
    NEED(machine.Connect(QSize(1024 - 72, 768 - 30),
                         [](Workspace& space) { return space.PageBar()->isTabEnabled(Workspace::PageMachineStatus); }));
    Workspace& space = machine.Space();
    QTest::qWait(1500);
    NEED(Save(space.grab().toImage(), QStringLiteral("small_screen_file_page")));
    space.ShowPage(Workspace::PageMachineStatus);
    QTest::qWait(1500);
    return Save(space.grab().toImage(), QStringLiteral("small_screen_status_page"));
}

// A program replaced twice from the office: its history, and the two kept versions compared.
bool ProgramHistoryScene()
{
    Machine machine;
    const QStringList versions = {
        QStringLiteral("%\nO2001 (POCKET)\nG90 G54 G17\nT3 M6\nS9000 M3\nG0 X0 Y0 Z5\nG1 Z-2 F200\nG1 X40 F600\n"
                       "G1 Y30\nG1 X0\nG1 Y0\nG0 Z5\nM30\n%\n"),
        QStringLiteral("%\nO2001 (POCKET)\nG90 G54 G17\nT3 M6\nS8000 M3 (SLOWER FOR 6061)\nG0 X0 Y0 Z5\nG1 Z-2 F150\n"
                       "G1 X40 F450\nG1 Y30\nG1 X0\nG1 Y0\nG0 Z5\nM30\n%\n"),
        QStringLiteral("%\nO2001 (POCKET)\nG90 G54 G17\nT3 M6\nS8000 M3\nG0 X0 Y0 Z5\nG1 Z-1 F150\nG1 X40 F450\n"
                       "G1 Y30\nG1 X0\nG1 Y0\nG1 Z-2\nG1 X40 Y30\nG0 Z5\nM30\n%\n")};
    const QString program = QDir(machine.Root()).filePath(QStringLiteral("pocket.nc"));
    QFile first(program);
    NEED(first.open(QIODevice::WriteOnly) && first.write(versions.at(0).toUtf8()) > 0);
    first.close();
    NEED(machine.Start(SimOptions()));
    NEED(machine.Connect(QSize(1280, 800), [](Workspace& space) { return space.FileService()->Endpoint().IsValid(); }));
    Workspace& space = machine.Space();
    QTemporaryDir office;
    for (int i = 1; i < versions.size(); ++i) {
        const QString local = office.filePath(QStringLiteral("pocket.nc"));
        QFile file(local);
        NEED(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(versions.at(i).toUtf8()) > 0);
        file.close();
        space.FileService()->Transfer(space.FileService()->Endpoint(),
                                      {TransferItem{true, local, QStringLiteral("/pocket.nc"), OperationCopy}},
                                      RequestOrigin::FilePage, true);
        NEED(QTest::qWaitFor(
            [&] {
                QFile sent(program);
                return sent.open(QIODevice::ReadOnly) && sent.readAll() == versions.at(i).toUtf8();
            },
            20000));
        NEED(QTest::qWaitFor([&] { return !space.FileService()->IsBusy(); }, 20000));
    }
    space.HistoryViews()->ShowHistory(QStringLiteral("/pocket.nc"));
    ProgramHistoryDialog* dialog = space.HistoryViews()->Dialog();
    NEED(dialog && QTest::qWaitForWindowExposed(dialog));
    QTreeWidget* tree = dialog->VersionTree();
    NEED(tree->topLevelItemCount() == 2);
    tree->topLevelItem(0)->setSelected(true);
    tree->topLevelItem(1)->setSelected(true);
    QTest::qWait(100);
    NEED(Save(dialog->grab().toImage(), QStringLiteral("program_history")));
    QTest::mouseClick(dialog->CompareButton(), Qt::LeftButton);
    auto* compare = dialog->findChild<ProgramCompareDialog*>();
    NEED(compare && QTest::qWaitForWindowExposed(compare));
    compare->resize(1100, 520);
    QTest::qWait(100);
    return Save(compare->grab().toImage(), QStringLiteral("program_compare"));
}

bool BindingDialogs()
{
    Machine machine;
    NEED(machine.Start({}));
    AccountOptions options;
    options.port = 0;
    options.dataFile = machine.ConfigFile(QStringLiteral("bindings.json"));
    options.smsIntervalMs = 0;
    AccountService service(options);
    QString error;
    NEED(service.Start(&error));
    SetSetting(QStringLiteral("Account/BaseUrl"), service.BaseUrl());
    QHash<QString, QString> pictures;
    QObject::connect(service.Store(), &AccountStore::SignalImageIssued,
                     [&pictures](const QString& id, const QString& text) { pictures.insert(id, text); });
    NEED(machine.Connect(QSize(1280, 760), [](Workspace& space) {
        return space.GetToolPage()->Button(ToolPage::ActionBindDevice)->isEnabled();
    }));
    Workspace& space = machine.Space();
    space.GetToolPage()->Button(ToolPage::ActionBindDevice)->click();
    auto* dialog = space.findChild<DeviceVerifyDialog*>();
    NEED(dialog && QTest::qWaitForWindowExposed(dialog));
    dialog->findChild<QLineEdit*>(QStringLiteral("m_editMobile"))->setText(QStringLiteral("13812345678"));
    dialog->findChild<QPushButton*>(QStringLiteral("m_btnSendSms"))->click();
    VerificationImageWindow* window = dialog->VerificationWindow();
    NEED(window && QTest::qWaitForWindowExposed(window));
    auto* confirm = window->findChild<QPushButton*>(QStringLiteral("confirmBtn"));
    NEED(QTest::qWaitFor([confirm] { return confirm->isEnabled(); }, 10000));
    NEED(Save(Compose(&space, {dialog, window}), QStringLiteral("device_verification_window")));

    // The bind dialog once the SMS code is on its way.
    window->findChild<QLineEdit*>(QStringLiteral("inputLineEdit"))->setText(pictures.value(window->ImageId()));
    confirm->click();
    const QString sent = Tr("DeviceVerifyDialog", "验证码已发送，请查看手机短信");
    NEED(QTest::qWaitFor([dialog, &sent] { return dialog->StatusText() == sent; }, 10000));
    return Save(Compose(&space, {dialog}), QStringLiteral("device_bind_dialog"));
}

bool MachineList()
{
    CSelectMachineBox box;
    box.SetMachineInfo(QStringLiteral("KV*KT10023110001*0*192.168.1.23*1*eth0"), true);
    box.SetMachineInfo(QStringLiteral("KV*PB01230900017*0*192.168.1.57*1*wlan0"), true);
    box.SetMachineInfo(QStringLiteral("KV*RW10022120003*0*192.168.1.80*1*eth0"), false);
    box.show();
    NEED(QTest::qWaitForWindowExposed(&box));
    NEED(Save(box.grab().toImage(), QStringLiteral("selectmachine-list")));
    box.findChild<QListWidget*>()->setCurrentRow(1);
    box.SlotConfirm();
    box.OnConnectResult(false);
    return Save(box.grab().toImage(), QStringLiteral("selectmachine-failed"));
}

bool MachinesPage()
{
    // Eight machines: most cutting, one in alarm, one behind an open interlock, one idle and one
    // that is switched off after a moment; the workbench is connected to the first.
    QTemporaryDir config;
    QTemporaryDir root;
    qputenv("KORV_CONFIG_DIR", config.path().toUtf8());
    SimOptions options;
    options.rootDir = root.path();
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    options.serialNumber = QString::fromLatin1(Machine::kSn);
    options.machines = 8;
    options.autorun = true;
    options.timeScale = 3;
    SimShop shop(options, [](int index, SimOptions& machine) {
        const QDir demo(QStringLiteral(KORV_DEMO_DIR));
        QDir().mkpath(machine.rootDir);
        for (const QString& name : demo.entryList(QDir::Files))
            QFile::copy(demo.filePath(name), QDir(machine.rootDir).filePath(name));
        // Late enough that the tints of the first programs' start have faded.
        machine.alarmAfter = index == 2 ? 40 : -1;
        machine.forbid = index == 5;
        machine.vanishAfter = index == 6 ? 10 : -1;
        machine.autorun = index != 7;
    });
    QString error;
    if (!shop.Start(&error)) {
        std::fprintf(stderr, "korv-pictures: %s\n", qPrintable(error));
        return false;
    }
    SetSetting(QString::fromLatin1(g_strSettingFtpPortMapping), shop.Options().ftpPort);
    MachinePortMap::Set(30001, shop.Options().infoPort);
    MachinePortMap::Set(5002, shop.Options().snPort);
    MachinePortMap::Set(30002, shop.Options().discoveryPort);
    SetSetting(QString::fromLatin1(DiscoveryAddressList::SettingKey), QStringLiteral("127.0.0.2-9"));

    Workspace space;
    space.resize(1440, 560);
    space.show();
    NEED(QTest::qWaitForWindowExposed(&space));
    MachineFleet* fleet = space.Fleet();
    fleet->DiscoverySender()->SetInterfaceFilter({QStringLiteral("lo")});
    space.ShowPage(Workspace::PageMachines);
    const SimOptions first = SimShop::MachineOptions(shop.Options(), 0);
    space.ConnectToMachine(first.bindAddress.toString(), first.serialNumber);
    const auto status = [fleet](int index) {
        const int row = fleet->RowOf(SimShop::SerialOf(QString::fromLatin1(Machine::kSn), index));
        return row < 0 ? -2 : fleet->At(row).Status();
    };
    NEED(QTest::qWaitFor(
        [&] {
            return fleet->Count() == 8 && status(2) == 2 && status(5) == 4 &&
                   status(6) == FleetMachine::StatusUnreachable && status(0) == 1 &&
                   fleet->At(fleet->RowOf(first.serialNumber)).bConnected;
        },
        40000));
    QTest::qWait(300);
    return Save(space.grab().toImage(), QStringLiteral("machines_page"));
}

} // namespace

int main(int argc, char** argv)
{
    // The local panel's shortcuts and the trash belong to a home of the run's own.
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    for (const char* folder : {"Desktop", "Downloads", "Documents"})
        QDir(home.path()).mkpath(QLatin1String(folder));
    QApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    QString language = QStringLiteral("zh");
    if (arguments.size() >= 2 && arguments.first() == QLatin1String("--lang")) {
        language = arguments.at(1);
        arguments = arguments.mid(2);
    }
    if (arguments.size() != 1 || !KorvLanguage::Apply(language)) {
        std::fprintf(stderr, "usage: korv-pictures [--lang zh|en] OUTPUT_FOLDER\n");
        return 2;
    }
    g_out = QDir(arguments.first());
    if (!g_out.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "korv-pictures: cannot create %s\n", qPrintable(g_out.path()));
        return 1;
    }
    // Boxes that the scenes raise along the way (a notice on disconnect) are confirmed at once.
    CVarnokMessageBox::SetTestResponder([](const StructMsgBoxRequest&) { return StructMsgBoxAnswer{}; });
    int failed = 0;
    for (const auto& scene : {FilePanels, TransferManager, StatusPage, BindingDialogs, MachineList, MachinesPage,
                              ProgramHistoryScene, SmallScreen})
        failed += scene() ? 0 : 1;
    return failed == 0 ? 0 : 1;
}
