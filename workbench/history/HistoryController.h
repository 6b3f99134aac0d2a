#pragma once

#include "ProgramHistoryDialog.h"

#include <QObject>
#include <QPointer>

class MachineFileRequests;
class MachineFileService;
class MachineStatusProgramPanel;
class ProgramHistory;
class QWidget;

// Opens the program history from the machine panel's menu and the status page's file list.
class HistoryController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryController)

public:
    HistoryController(QWidget* window, ProgramHistory* history, MachineFileService* files,
                      const MachineFileRequests* requests, MachineStatusProgramPanel* statusPanel);

    ProgramHistoryDialog* Dialog() const { return m_pDialog; }
    // An empty path shows every program of the connected machine.
    void ShowHistory(const QString& machinePath);

private:
    QWidget* m_pWindow;
    ProgramHistory* m_pHistory;
    MachineFileService* m_pFiles;
    QPointer<ProgramHistoryDialog> m_pDialog;
};
