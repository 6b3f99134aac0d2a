#pragma once

#include <QColor>
#include <QObject>
#include <QStringList>

class FleetSendJob;
class MachineFileService;
class MachineFleet;
class QWidget;

// "发送程序" of the machines page: the user picks local programs, they go to the machine root of
// every chosen machine, each machine's row follows its own progress and ends with one line.
class FleetSendController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FleetSendController)

public:
    static constexpr const char* TargetFolder = "/";

    FleetSendController(QWidget* window, MachineFleet* fleet, MachineFileService* files);

    // Opens the file chooser (without blocking) and sends what the user picks.
    void ChoosePrograms(const QList<int>& rows);
    FleetSendJob* Send(const QList<int>& rows, const QStringList& localFiles);

Q_SIGNALS:
    void SignalAppendLog(const QString& text, const QColor& color);

private:
    QWidget* m_pWindow;
    MachineFleet* m_pFleet;
    MachineFileService* m_pFiles;
};
