#pragma once

#include "WorkbenchPlugin.h"

#include <QPointer>

class Workspace;

namespace CamPlugin {

// The "文件" workbench as the host sees it: fixed answers to the host's queries,
// two flags, and the Workspace it creates (owned by the window it is placed in, if any).
class CamPluginFile : public Plugin::WorkbenchPlugin
{
public:
    CamPluginFile();
    ~CamPluginFile() override;

    static Base::Type getClassTypeId();
    static void* create();
    Base::Type getTypeId() const override;

    std::string getName() const override;
    std::string getVersion() const override;
    std::string getDescription() const override;
    std::string getVendor() const override;
    bool initialize() override;
    void cleanup() override;
    bool isInitialized() const override;
    void registerPythonBindings() override;
    std::vector<std::string> getDependencies() const override;
    bool isActive() const override;
    void setActive(bool on) override;
    int getWorkbenchType() const override;
    std::string getCategory() const override;
    std::string getDisplayName() const override;
    std::vector<unsigned char> getIcon(int state) const override;
    std::string getCategoryDescription() const override;
    std::string getTooltip() const override;
    int getPluginType() const override;
    bool hasSettingsPage() const override;
    QWidget* createWidget(QWidget* parent) override;
    void sendWorkbenchOperationNotice(int type, int wType) override;

    Workspace* workspace() const;

private:
    static Base::Type classTypeId;

    bool initialized = false;
    bool active = false;
    QPointer<Workspace> m_pWorkspace;
};

} // namespace CamPlugin
