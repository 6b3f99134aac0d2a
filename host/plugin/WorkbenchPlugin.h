#pragma once

#include "KorvPluginExport.h"
#include "PluginInterface.h"

#include <functional>

namespace Plugin {

// The host's workbenches, by the number getWorkbenchType() returns.
enum class WorkbenchPluginType
{
    None = -1,
    Start = 0,
    Design = 1,
    Toolpath = 2,
    Simulation = 3,
    ToolLibrary = 4,
    File = 5,
    Machine = 6,
};

// What a workbench asks its host to do through the operation callback.
enum class PluginOperationType
{
    Activate = 0,   // the workbench became the visible one
    Deactivate = 1, // the workbench was left
    SwitchTo = 2,   // please show the workbench of the given type
    Enable = 3,     // the given workbench may be chosen
    Disable = 4,    // the given workbench may not be chosen
    CloseApp = 5,   // please close the application
};

using PluginOperationCallback = std::function<void(PluginOperationType, WorkbenchPluginType)>;

// Base of every workbench plug-in: keeps the workbench's own state and forwards
// requests that only the host can carry out through the operation callback.
class KORVPLUGIN_EXPORT WorkbenchPlugin : public PluginInterface
{
public:
    WorkbenchPlugin();
    ~WorkbenchPlugin() override;

    static Base::Type getClassTypeId();
    Base::Type getTypeId() const override;
    PluginType getType() const override { return PluginType::Workbench; }

    virtual bool initializeWorkbench();
    virtual void cleanupWorkbench();
    virtual bool activateWorkbench();
    virtual void deactivateWorkbench();
    virtual bool isWorkbenchActive() const;
    virtual void activate();
    virtual void closeApp();
    virtual void activatePlugin(WorkbenchPluginType type);
    virtual void setPluginEnabled(WorkbenchPluginType type, bool enabled);
    virtual void setPluginOperationCallback(PluginOperationCallback callback);
    // Notices the host sends to every workbench; the base only remembers the last one.
    virtual void sendWorkbenchOperationNotice(int type, int wType);

    bool isWorkbenchInitialized() const { return m_bWorkbenchInitialized; }
    bool isPluginEnabled(WorkbenchPluginType type) const;
    int lastNoticeType() const { return m_iLastNoticeType; }

protected:
    virtual void initializeDefaults();
    virtual bool validateWorkbenchEnvironment() const;
    void notifyHost(PluginOperationType operation, WorkbenchPluginType type) const;
    WorkbenchPluginType ownType() const;

private:
    PluginOperationCallback m_callback;
    bool m_bWorkbenchInitialized = false;
    bool m_bWorkbenchActive = false;
    int m_iLastNoticeType = -1;
    std::vector<WorkbenchPluginType> m_listDisabled;
};

} // namespace Plugin
