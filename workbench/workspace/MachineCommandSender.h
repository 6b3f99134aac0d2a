#pragma once

#include "CommonDefine.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <functional>

class FileTransferClient;
class QWidget;

// Decides whether a command of the status page may go to the machine, asks the
// operator where a command changes what the machine does, and sends it over the
// given client. Every refusal and failure ends as a red log line.
class MachineCommandSender : public QObject
{
    Q_OBJECT

public:
    // `client` gives the machine client in use at the moment of sending (connections make
    // new ones); boxes are parented to `window`.
    MachineCommandSender(std::function<FileTransferClient*()> client, QWidget* window, QObject* parent = nullptr);

    void SetConnected(bool connected);
    // The latest record tells the machine's state and the program a start would run.
    void SetRealTimeData(const StructRealTimeData& record);

public Q_SLOTS:
    void SlotStartRequested();
    void SlotStopRequested();
    void SlotResetRequested();
    void SlotLoadProgramRequested(const QString& machinePath);

Q_SIGNALS:
    void SignalAppendLog(const QString& text, const QColor& color);

private:
    enum Command
    {
        CommandStart,
        CommandStop,
        CommandReset,
        CommandLoad,
    };
    static QString CommandName(Command command);
    bool RefuseUnlessConnected(Command command);
    void Send(Command command, const QString& machinePath = QString());
    void AskThenSend(Command command, const QString& question);
    void OnFinished(const QString& replyType, bool ok, const QString& message);
    void Log(const QString& text, const QColor& color);

    std::function<FileTransferClient*()> m_client;
    QPointer<QWidget> m_pWindow;
    bool m_bConnected = false;
    int m_iStatus = 0;
    QString m_strProgram;
};
