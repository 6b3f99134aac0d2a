#include "StatusPageFixture.h"

#include "WorkspaceLogProbe.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "MachinePortMap.h"
#include "machinestatus/MachineStatusWidget.h"
#include "transfer/TransInfo.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"

#include <QDir>
#include <QLabel>
#include <QSettings>
#include <QTabBar>
#include <QTest>

StatusPageFixture::StatusPageFixture()
{
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    // The machine model is copied beside the host executable, not beside the tests.
    qputenv("KORV_RESOURCE_DIR", (qgetenv("KORV_BINARY_DIR") + "/bin/resources"));
    CVarnokMessageBox::SetTestResponder([this](const StructMsgBoxRequest& request) {
        m_listBoxes << request.strText;
        return StructMsgBoxAnswer{m_iAnswer, false};
    });
    const QDir demo(qEnvironmentVariable("KORV_SOURCE_DIR") + QStringLiteral("/simulator/demo"));
    for (const QString& name : demo.entryList(QDir::Files))
        QFile::copy(demo.filePath(name), QDir(m_rootDir.path()).filePath(name));
    QSettings test(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat);
    test.setValue(QStringLiteral("TimerInterval"), PollMs);
}

StatusPageFixture::~StatusPageFixture()
{
    m_pWorkspace.reset();
    m_pSim.reset();
    CVarnokMessageBox::SetTestResponder({});
}

SimOptions StatusPageFixture::Options() const
{
    SimOptions options;
    options.rootDir = m_rootDir.path();
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    options.serialNumber = QStringLiteral("PB01SIM0001");
    options.runProgram = QStringLiteral("bracket_6061.nc");
    return options;
}

bool StatusPageFixture::Start(const SimOptions& options, QString* error)
{
    m_pSim = std::make_unique<CncSimulator>(options);
    if (!m_pSim->Start(error))
        return false;
    CamBaseTextHelper::instance()->SetLocalSettingCache(
        CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingFtpPortMapping), m_pSim->FtpPort(), true);
    MachinePortMap::Set(30001, m_pSim->InfoPort());
    MachinePortMap::Set(5002, m_pSim->SnPort());
    m_pWorkspace = std::make_unique<Workspace>();
    m_pWorkspace->SetCheckInterval(50);
    m_pWorkspace->resize(1440, 900);
    m_pWorkspace->show();
    m_pWorkspace->ConnectToMachine(QStringLiteral("127.0.0.1"), options.serialNumber);
    if (!QTest::qWaitFor([this]() { return m_pWorkspace->PageBar()->isTabEnabled(Workspace::PageMachineStatus); },
                         10000)) {
        *error = QStringLiteral("the status page was not enabled");
        return false;
    }
    m_pWorkspace->ShowPage(Workspace::PageMachineStatus);
    return QTest::qWaitForWindowExposed(m_pWorkspace.get());
}

MachineStatusWidget& StatusPageFixture::Page()
{
    return *m_pWorkspace->StatusWidget();
}

QString StatusPageFixture::Text(const char* name)
{
    return m_pWorkspace->findChild<QLabel*>(QLatin1String(name))->text();
}

bool StatusPageFixture::HasLog(const QString& text, const QColor& color) const
{
    return WorkspaceLogHas(*m_pWorkspace, text, color);
}
