#include "HistoryController.h"

#include "CVarnokMessageBox.h"
#include "MachineFileService.h"
#include "ProgramHistoryDialog.h"
#include "filepanel/MachineFileRequests.h"
#include "machinestatus/MachineStatusProgramPanel.h"

HistoryController::HistoryController(QWidget* window, ProgramHistory* history, MachineFileService* files,
                                     const MachineFileRequests* requests, MachineStatusProgramPanel* statusPanel)
    : QObject(window), m_pWindow(window), m_pHistory(history), m_pFiles(files)
{
    connect(requests, &MachineFileRequests::SignalShowHistory, this, &HistoryController::ShowHistory);
    connect(statusPanel, &MachineStatusProgramPanel::SignalShowHistoryRequested, this, &HistoryController::ShowHistory);
    // The window restores and compares on the machine it was opened for: never on another one.
    connect(files, &MachineFileService::SignalEndpointChanged, this, [this]() {
        if (m_pDialog)
            m_pDialog->close();
    });
}

void HistoryController::ShowHistory(const QString& machinePath)
{
    // The history belongs to a machine: without one there is no telling whose to show.
    if (!m_pFiles->Endpoint().IsValid()) {
        CVarnokMessageBox::Open(m_pWindow, MsgButtonConfirm, MsgIconWarning, tr("提示"), tr("当前未与机床进行连接！"));
        return;
    }
    // One window at a time: a second request shows the program asked for in a fresh one.
    if (m_pDialog)
        m_pDialog->close();
    m_pDialog = new ProgramHistoryDialog(m_pHistory, m_pFiles, m_pFiles->Endpoint(), machinePath, m_pWindow);
    m_pDialog->setAttribute(Qt::WA_DeleteOnClose);
    m_pDialog->show();
}
