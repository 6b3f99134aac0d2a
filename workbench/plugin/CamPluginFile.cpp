#include "CamPluginFile.h"

#include "CDebugLog.h"
#include "CommonDefine.h"
#include "MachineConnection.h"
#include "WorkPool.h"
#include "WorkbenchLog.h"
#include "workspace/Workspace.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <exception>

namespace CamPlugin {

Base::Type CamPluginFile::classTypeId;

namespace {
// The host looks the class up by name as soon as the library is loaded.
[[maybe_unused]] const Base::Type g_registeredType = CamPluginFile::getClassTypeId();
// How long cleanup() waits for the workbench's background work before the host unloads it.
constexpr int CleanupDrainMs = 5000;

QString tr(const char* text)
{
    return QCoreApplication::translate("CamPlugin::CamPluginFile", text);
}
} // namespace

CamPluginFile::CamPluginFile() = default;

CamPluginFile::~CamPluginFile()
{
    if (initialized)
        cleanup();
    // A Workspace inside the host's window belongs to the window; only an orphan is ours.
    if (m_pWorkspace && !m_pWorkspace->parent())
        delete m_pWorkspace;
    else if (m_pWorkspace)
        m_pWorkspace->SetPluginObject(nullptr);
}

Workspace* CamPluginFile::workspace() const
{
    return m_pWorkspace;
}

Base::Type CamPluginFile::getClassTypeId()
{
    if (!classTypeId.isValid())
        classTypeId = Base::Type::createType(Plugin::WorkbenchPlugin::getClassTypeId(), "CamPlugin::CamPluginFile",
                                             &CamPluginFile::create);
    return classTypeId;
}

void* CamPluginFile::create()
{
    return new CamPluginFile();
}

Base::Type CamPluginFile::getTypeId() const
{
    return getClassTypeId();
}

std::string CamPluginFile::getName() const
{
    return "FILE";
}

std::string CamPluginFile::getVersion() const
{
    return "1.0.0";
}

std::string CamPluginFile::getDescription() const
{
    return tr("File Management Workbench Plugin").toStdString();
}

std::string CamPluginFile::getVendor() const
{
    return "Daskell";
}

bool CamPluginFile::initialize()
{
    if (initialized) {
        qCDebug(lcWorkbench) << "[CamPluginFile] Already initialized";
        return true;
    }
    qCDebug(lcWorkbench) << "[CamPluginFile] Initializing...";
    try {
        qCDebug(lcWorkbench) << "[CamPluginFile] Validating environment...";
        RegisterWorkbenchMetaTypes();
        initialized = active = true;
        qCDebug(lcWorkbench) << "[CamPluginFile] Initialization completed successfully";
        return true;
    } catch (const std::exception& e) {
        qCWarning(lcWorkbench) << "[CamPluginFile] Initialization error: " << e.what();
        initialized = false;
        return false;
    }
}

void CamPluginFile::cleanup()
{
    if (!initialized)
        return;
    try {
        qCDebug(lcWorkbench) << "[CamPluginFile] Cleaning up...";
        initialized = active = false;
        // The host unloads the library next: none of its code may still run on a worker. A
        // connect under way (an FTP log-in that may hang for its whole time-out) is told to stop first.
        if (m_pWorkspace)
            m_pWorkspace->Connection()->Disconnect();
        if (!WorkPool::Drain(CleanupDrainMs))
            qCWarning(lcWorkbench) << "[CamPluginFile] background work still running after" << CleanupDrainMs << "ms";
        qCDebug(lcWorkbench) << "[CamPluginFile] Cleanup completed successfully";
    } catch (const std::exception& e) {
        qCWarning(lcWorkbench) << "[CamPluginFile] Cleanup error: " << e.what();
    }
}

bool CamPluginFile::isInitialized() const
{
    return initialized;
}

void CamPluginFile::registerPythonBindings()
{
    try {
        qCDebug(lcWorkbench) << "[CamPluginFile] Registering Python bindings...";
        qCDebug(lcWorkbench) << "[CamPluginFile] Python bindings registered successfully";
    } catch (const std::exception& e) {
        qCWarning(lcWorkbench) << "[CamPluginFile] Python binding registration error: " << e.what();
    }
}

std::vector<std::string> CamPluginFile::getDependencies() const
{
    return {};
}

bool CamPluginFile::isActive() const
{
    return active && initialized;
}

void CamPluginFile::setActive(bool on)
{
    if (!initialized)
        return;
    active = on;
    qCDebug(lcWorkbench) << "[CamPluginFile] Set active: " << on;
}

int CamPluginFile::getWorkbenchType() const
{
    return 5;
}

std::string CamPluginFile::getCategory() const
{
    return "MACHINE";
}

std::string CamPluginFile::getDisplayName() const
{
    return tr("文件").toStdString();
}

std::vector<unsigned char> CamPluginFile::getIcon(int state) const
{
    QString path;
    if (state == 0)
        path = QStringLiteral(":/icon/ico_ltb_file_unsel.png");
    else if (state == 1)
        path = QStringLiteral(":/icon/ico_ltb_file_sel.png");
    else
        return {};
    const QImage image(path);
    if (image.isNull())
        return {};
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    const QByteArray& bytes = buffer.data();
    return std::vector<unsigned char>(bytes.begin(), bytes.end());
}

std::string CamPluginFile::getCategoryDescription() const
{
    return "This is a category";
}

std::string CamPluginFile::getTooltip() const
{
    return tr("文件：管理本地与机床上的文件，上传、下载程序并查看机床状态").toStdString();
}

int CamPluginFile::getPluginType() const
{
    return getWorkbenchType();
}

bool CamPluginFile::hasSettingsPage() const
{
    return false;
}

QWidget* CamPluginFile::createWidget(QWidget* parent)
{
    auto* workspace = new Workspace(parent);
    workspace->SetPluginObject(this);
    m_pWorkspace = workspace;
    return workspace;
}

void CamPluginFile::sendWorkbenchOperationNotice(int type, int wType)
{
    Plugin::WorkbenchPlugin::sendWorkbenchOperationNotice(type, wType);
    qCDebug(lcWorkbench) << "sendWorkbenchOperationNotice" << type << wType;
    CDebugLog::AddLog(QStringLiteral("工作台操作通知: type=%1, wType=%2").arg(type).arg(wType));
    if (type == 6 && m_pWorkspace)
        m_pWorkspace->StartSilentConnect();
}

} // namespace CamPlugin
