#pragma once

#include "CVarnokMessageBox.h"
#include "CncSimulator.h"
#include "workspace/Workspace.h"

#include <QColor>
#include <QTemporaryDir>
#include <memory>

class MachineStatusWidget;

// A Workspace connected to the simulator on loopback, the demo programs on its FTP root,
// polling every 100 ms, message boxes answered by `answer` and recorded.
class StatusPageFixture
{
public:
    static constexpr int PollMs = 100;

    StatusPageFixture();
    ~StatusPageFixture();

    SimOptions Options() const;
    // Starts the simulator, connects and shows the status page; false with a message in *error.
    bool Start(const SimOptions& options, QString* error);

    CncSimulator& Sim() { return *m_pSim; }
    Workspace& Space() { return *m_pWorkspace; }
    MachineStatusWidget& Page();
    template <typename T> T* Find(const char* name) { return m_pWorkspace->findChild<T*>(QLatin1String(name)); }
    QString Text(const char* name);
    bool HasLog(const QString& text, const QColor& color) const;
    QStringList Boxes() const { return m_listBoxes; }
    void SetAnswer(int button) { m_iAnswer = button; }

private:
    QTemporaryDir m_configDir;
    QTemporaryDir m_rootDir;
    std::unique_ptr<CncSimulator> m_pSim;
    std::unique_ptr<Workspace> m_pWorkspace;
    QStringList m_listBoxes;
    int m_iAnswer = MsgButtonConfirm;
};
