#include "CamPluginFile.h"

#include "CDebugLog.h"
#include "CommonDefine.h"
#include "workspace/Workspace.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDebug>
#include <QImage>

#include <exception>
#include <iostream>

namespace CamPlugin {

Base::Type CamPluginFile::classTypeId;

namespace {
// The host looks the class up by name as soon as the library is loaded.
[[maybe_unused]] const Base::Type g_registeredType = CamPluginFile::getClassTypeId();

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
    if (m_pWorkspace) {
        delete m_pWorkspace;
        m_pWorkspace = nullptr;
    }
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
        std::cout << "[CamPluginFile] Already initialized" << std::endl;
        return true;
    }
    std::cout << "[CamPluginFile] Initializing..." << std::endl;
    try {
        std::cout << "[CamPluginFile] Validating environment..." << std::endl;
        RegisterWorkbenchMetaTypes();
        initialized = active = true;
        std::cout << "[CamPluginFile] Initialization completed successfully" << std::endl;
        return true;
    } catch (const std::exception& e) {
        std::cerr << "[CamPluginFile] Initialization error: " << e.what() << std::endl;
        initialized = false;
        return false;
    }
}

void CamPluginFile::cleanup()
{
    if (!initialized)
        return;
    try {
        std::cout << "[CamPluginFile] Cleaning up..." << std::endl;
        initialized = active = false;
        std::cout << "[CamPluginFile] Cleanup completed successfully" << std::endl;
    } catch (const std::exception& e) {
        std::cerr << "[CamPluginFile] Cleanup error: " << e.what() << std::endl;
    }
}

bool CamPluginFile::isInitialized() const
{
    return initialized;
}

void CamPluginFile::registerPythonBindings()
{
    try {
        std::cout << "[CamPluginFile] Registering Python bindings..." << std::endl;
        std::cout << "[CamPluginFile] Python bindings registered successfully" << std::endl;
    } catch (const std::exception& e) {
        std::cerr << "[CamPluginFile] Python binding registration error: " << e.what() << std::endl;
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
    std::cout << "[CamPluginFile] Set active: " << (on ? "true" : "false") << std::endl;
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
    return "This is a tooltip";
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
    qInfo() << "sendWorkbenchOperationNotice" << type << wType;
    CDebugLog::AddLog(QStringLiteral("工作台操作通知: type=%1, wType=%2").arg(type).arg(wType));
    if (type == 6 && m_pWorkspace)
        m_pWorkspace->StartSilentConnect();
}

} // namespace CamPlugin
