#include "Workspace.h"

#include "CDebugLog.h"

#include <QVBoxLayout>

Workspace::Workspace(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Workspace"));
    new QVBoxLayout(this);
}

Workspace::~Workspace() = default;

void Workspace::SetPluginObject(CamPlugin::CamPluginFile* plugin)
{
    m_pPluginObject = plugin;
}

void Workspace::StartSilentConnect()
{
    CDebugLog::AddLog(QStringLiteral("静默连接上次的机床"));
    Q_EMIT SignalSilentConnectStarted();
}
