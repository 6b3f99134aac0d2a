#include "WorkbenchPlugin.h"

#include <QApplication>

#include <algorithm>

namespace Plugin {

WorkbenchPlugin::WorkbenchPlugin() = default;

WorkbenchPlugin::~WorkbenchPlugin() = default;

Base::Type WorkbenchPlugin::getClassTypeId()
{
    static const Base::Type type =
        Base::Type::createType(PluginInterface::getClassTypeId(), "Plugin::WorkbenchPlugin");
    return type;
}

Base::Type WorkbenchPlugin::getTypeId() const
{
    return getClassTypeId();
}

bool WorkbenchPlugin::initializeWorkbench()
{
    if (m_bWorkbenchInitialized)
        return true;
    if (!validateWorkbenchEnvironment())
        return false;
    initializeDefaults();
    m_bWorkbenchInitialized = true;
    return true;
}

void WorkbenchPlugin::cleanupWorkbench()
{
    deactivateWorkbench();
    m_bWorkbenchInitialized = false;
}

bool WorkbenchPlugin::activateWorkbench()
{
    if (!initializeWorkbench())
        return false;
    if (!m_bWorkbenchActive) {
        m_bWorkbenchActive = true;
        notifyHost(PluginOperationType::Activate, ownType());
    }
    return true;
}

void WorkbenchPlugin::deactivateWorkbench()
{
    if (!m_bWorkbenchActive)
        return;
    m_bWorkbenchActive = false;
    notifyHost(PluginOperationType::Deactivate, ownType());
}

bool WorkbenchPlugin::isWorkbenchActive() const
{
    return m_bWorkbenchActive;
}

void WorkbenchPlugin::activate()
{
    notifyHost(PluginOperationType::SwitchTo, ownType());
}

void WorkbenchPlugin::closeApp()
{
    notifyHost(PluginOperationType::CloseApp, ownType());
}

void WorkbenchPlugin::activatePlugin(WorkbenchPluginType type)
{
    notifyHost(PluginOperationType::SwitchTo, type);
}

void WorkbenchPlugin::setPluginEnabled(WorkbenchPluginType type, bool enabled)
{
    const auto it = std::find(m_listDisabled.begin(), m_listDisabled.end(), type);
    if (enabled && it != m_listDisabled.end())
        m_listDisabled.erase(it);
    else if (!enabled && it == m_listDisabled.end())
        m_listDisabled.push_back(type);
    notifyHost(enabled ? PluginOperationType::Enable : PluginOperationType::Disable, type);
}

bool WorkbenchPlugin::isPluginEnabled(WorkbenchPluginType type) const
{
    return std::find(m_listDisabled.begin(), m_listDisabled.end(), type) == m_listDisabled.end();
}

void WorkbenchPlugin::setPluginOperationCallback(PluginOperationCallback callback)
{
    m_callback = std::move(callback);
}

void WorkbenchPlugin::sendWorkbenchOperationNotice(int type, int /*wType*/)
{
    m_iLastNoticeType = type;
}

void WorkbenchPlugin::initializeDefaults()
{
    m_listDisabled.clear();
    m_iLastNoticeType = -1;
}

bool WorkbenchPlugin::validateWorkbenchEnvironment() const
{
    // A workbench builds widgets, which needs a widget application on this process.
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

void WorkbenchPlugin::notifyHost(PluginOperationType operation, WorkbenchPluginType type) const
{
    if (m_callback)
        m_callback(operation, type);
}

WorkbenchPluginType WorkbenchPlugin::ownType() const
{
    return static_cast<WorkbenchPluginType>(getWorkbenchType());
}

} // namespace Plugin
