#pragma once

#include "BaseClass.h"
#include "KorvPluginExport.h"

#include <string>
#include <vector>

class QWidget;

namespace Plugin {

enum class PluginType
{
    Unknown = 0,
    Workbench = 1,
};

// What every plug-in library hands the host through its createPlugin() entry.
class KORVPLUGIN_EXPORT PluginInterface : public Base::BaseClass
{
public:
    ~PluginInterface() override;

    static Base::Type getClassTypeId();
    Base::Type getTypeId() const override;

    virtual std::string getName() const = 0;
    virtual std::string getVersion() const = 0;
    virtual std::string getDescription() const = 0;
    virtual std::string getVendor() const = 0;
    virtual PluginType getType() const = 0;
    virtual bool initialize() = 0;
    virtual void cleanup() = 0;
    virtual bool isInitialized() const = 0;
    virtual void registerPythonBindings() = 0;
    virtual std::vector<std::string> getDependencies() const = 0;
    virtual bool isActive() const = 0;
    virtual void setActive(bool active) = 0;
    virtual int getWorkbenchType() const = 0;
    virtual std::string getCategory() const = 0;
    virtual std::string getDisplayName() const = 0;
    // PNG bytes; state 0 is the unselected look, 1 the selected one.
    virtual std::vector<unsigned char> getIcon(int state) const = 0;
    virtual std::string getCategoryDescription() const = 0;
    virtual std::string getTooltip() const = 0;
    virtual int getPluginType() const = 0;
    virtual bool hasSettingsPage() const = 0;
    // Called once; the returned widget is parented to `parent` and shown by the host.
    virtual QWidget* createWidget(QWidget* parent) = 0;
};

} // namespace Plugin
