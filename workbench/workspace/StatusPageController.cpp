#include "StatusPageController.h"

#include "MachineCommandSender.h"
#include "MachineConnection.h"
#include "MachineFileService.h"
#include "machinestatus/MachineStatusFtpManager.h"
#include "machinestatus/MachineStatusProgramPanel.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QTimer>

StatusPageController::StatusPageController(QWidget* window, MachineConnection* connection, MachineFileService* files,
                                           MachineStatusWidget* page)
    : QObject(window), m_pConnection(connection), m_pPage(page)
{
    // Commands go over the polling client: it is the connection kept open all the time.
    m_pCommandSender = new MachineCommandSender([connection]() { return connection->RealTimeClient(); }, window, this);
    connect(page, &MachineStatusWidget::signalStartRequested, m_pCommandSender,
            &MachineCommandSender::SlotStartRequested);
    connect(page, &MachineStatusWidget::signalStopRequested, m_pCommandSender,
            &MachineCommandSender::SlotStopRequested);
    connect(page, &MachineStatusWidget::signalResetRequested, m_pCommandSender,
            &MachineCommandSender::SlotResetRequested);
    connect(page, &MachineStatusWidget::signalLoadProgramRequested, m_pCommandSender,
            &MachineCommandSender::SlotLoadProgramRequested);
    connect(m_pCommandSender, &MachineCommandSender::SignalAppendLog, this, &StatusPageController::SignalAppendLog);
    // The program list's renames and deletes go through the same funnel as the file page's, and
    // every change to the machine's files shows in both.
    MachineStatusProgramPanel* panel = page->ProgramPanel();
    panel->FtpManager()->SetFileService(files);
    connect(files, &MachineFileService::SignalMachineChanged, panel, &MachineStatusProgramPanel::RefreshFiles);
}

void StatusPageController::OnConnected(const QString& ip, const QString& sn)
{
    m_pPage->ProgramPanel()->SetMachineIp(ip);
    m_pCommandSender->SetConnected(true);
    // Polling reads its interval once the connect step is through: two of them without an
    // answer make the shown data stale.
    QTimer::singleShot(0, m_pPage, [this, sn]() {
        if (m_pConnection->Sn() == sn)
            m_pPage->StartStaleWatch(sn, 2 * m_pConnection->RealTimeInterval());
    });
}

void StatusPageController::OnOffline()
{
    m_pPage->ShowOffline();
    m_pPage->ProgramPanel()->SetMachineIp(QString());
    m_pCommandSender->SetConnected(false);
}

void StatusPageController::OnRealTimeData(const StructRealTimeData& record)
{
    m_pPage->SetRealTimeData(record);
    m_pCommandSender->SetRealTimeData(record);
}
