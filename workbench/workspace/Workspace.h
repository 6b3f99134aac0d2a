#pragma once

#include <QWidget>

namespace CamPlugin {
class CamPluginFile;
}

// The workbench's main widget. It owns the machine connection and every page of
// the workbench.
class Workspace : public QWidget
{
    Q_OBJECT

public:
    explicit Workspace(QWidget* parent = nullptr);
    ~Workspace() override;

    void SetPluginObject(CamPlugin::CamPluginFile* plugin);
    CamPlugin::CamPluginFile* PluginObject() const { return m_pPluginObject; }

    // Connects quietly to the machine used last time, if the user allowed it.
    void StartSilentConnect();

Q_SIGNALS:
    void SignalSilentConnectStarted();

private:
    CamPlugin::CamPluginFile* m_pPluginObject = nullptr;
};
