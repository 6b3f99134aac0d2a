#pragma once

#include "CncSimulator.h"

#include <QTemporaryDir>
#include <memory>

class FileSelectPanel;

// A simulated machine on a free loopback port, with the host's FTP port mapping
// pointed at it, and helpers to wait for a panel's listings.
class MachinePanelFixture
{
public:
    // Starts the simulator on root; false with a message when it cannot.
    bool Start(const QString& root, QString* error);
    void Stop();

    static bool WaitForListing(FileSelectPanel& panel, const std::function<void()>& action, bool* ok = nullptr);
    static QStringList ShownNames(const FileSelectPanel& panel);
    static QModelIndex RowNamed(const FileSelectPanel& panel, const QString& name);
    static void WriteFile(const QString& path, int bytes);

private:
    std::unique_ptr<CncSimulator> m_pSimulator;
};
