#pragma once

#include "CVarnokMessageBox.h"
#include "CncSimulator.h"
#include "workspace/Workspace.h"

#include <QByteArray>
#include <QDir>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <memory>

class FileSelectPanel;

// A shown Workspace against the simulator on loopback, with its own config folder, a machine
// root and a local folder. Message boxes are recorded and answered with m_iAnswer where they
// offer "yes" or m_iAnswer itself, confirmed otherwise. Test classes derive from it beside QObject;
// the simulator alone, without a workspace, serves panels built by the test.
class SimWorkspaceFixture
{
public:
    static constexpr auto kIp = "127.0.0.1";
    static constexpr auto kSn = "PB01SIM0001";

    static QByteArray RandomBytes(int size);
    // Writes `bytes` to `path`, creating the folders above it.
    static void Write(const QString& path, const QByteArray& bytes);
    static QByteArray Read(const QString& path);

    // Runs `action` and waits for the panel's listing to end; *ok tells whether it succeeded.
    static bool WaitForListing(FileSelectPanel& panel, const std::function<void()>& action, bool* ok = nullptr);
    static QStringList PanelNames(const FileSelectPanel& panel);
    static QModelIndex PanelRow(const FileSelectPanel& panel, const QString& name);

protected:
    // Config folder, message box responder and a short connect timeout; call from initTestCase().
    void SetUpFixture();
    // Empties both folders and forgets the recorded boxes; call from init().
    void ResetFixture();
    // Closes the workspace and stops the simulator; call from cleanup().
    void TearDownFixture();

    // The machine root, free loopback ports and the serial number.
    SimOptions DefaultSimOptions() const;
    // Starts the simulator and points the FTP, info, serial number and discovery ports at it.
    void StartSimulator(const SimOptions& options);
    // Copies the simulator's demo programs onto the machine root.
    void CopyDemoPrograms();
    // The same from cnc-sim's command-line switches ("--profile", "pc-control"), on the fixture's
    // root and ports.
    void StartSimulator(const QStringList& switches);
    // Creates and shows the workspace with the local folder open.
    void ShowWorkspace();
    // Shows the workspace, connects and waits until the machine root is listed.
    void ConnectWorkspace();
    QStringList MachineNames() const;
    QString MachineFile(const QString& name) const { return QDir(m_rootDir.path()).filePath(name); }
    QString LocalFile(const QString& name) const { return QDir(m_localDir.path()).filePath(name); }

    QTemporaryDir m_configDir;
    QTemporaryDir m_rootDir;
    QTemporaryDir m_localDir;
    std::unique_ptr<CncSimulator> m_sim;
    std::unique_ptr<Workspace> m_workspace;
    QList<StructMsgBoxRequest> m_listBoxes;
    int m_iAnswer = MsgButtonYes;
    // Whether the boxes' check box ("不再提醒") is ticked in the answers.
    bool m_bTickBoxes = false;
    // When set before ShowWorkspace(), how often the workspace checks the connection.
    int m_iCheckIntervalMs = 0;
};
