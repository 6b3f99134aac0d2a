#pragma once

#include "CommonDefine.h"

#include <QColor>
#include <QObject>

class MachineCommandSender;
class MachineConnection;
class MachineFileService;
class MachineStatusWidget;
class QWidget;

// The status page's wiring: real-time records in, machine commands out over the polling
// client, and the program list's file changes through the same funnel as the file page's.
class StatusPageController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StatusPageController)

public:
    StatusPageController(QWidget* window, MachineConnection* connection, MachineFileService* files,
                         MachineStatusWidget* page);

    // Wiring of the connection's ends: the workspace's own signals carry them.
    void OnConnected(const QString& ip, const QString& sn);
    void OnOffline();
    void OnRealTimeData(const StructRealTimeData& record);

Q_SIGNALS:
    void SignalAppendLog(const QString& text, const QColor& color);

private:
    MachineConnection* m_pConnection;
    MachineStatusWidget* m_pPage;
    MachineCommandSender* m_pCommandSender;
};
