#include "MachineCommandSender.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "FileTransferClient.h"
#include "LogColors.h"
#include "ProtocolVocabulary.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace {
constexpr int StatusWaiting = 3;
}

MachineCommandSender::MachineCommandSender(std::function<FileTransferClient*()> client, QWidget* window,
                                           QObject* parent)
    : QObject(parent), m_client(std::move(client)), m_pWindow(window)
{}

void MachineCommandSender::SetConnected(bool connected)
{
    m_bConnected = connected;
    if (!connected) {
        m_iStatus = 0;
        m_strProgram.clear();
    }
}

void MachineCommandSender::SetRealTimeData(const StructRealTimeData& record)
{
    // A failed delivery says nothing about the machine: keep what the last answer said.
    if (record.sn.isEmpty())
        return;
    m_iStatus = record.status;
    m_strProgram = record.program.name;
}

QString MachineCommandSender::CommandName(Command command)
{
    switch (command) {
    case CommandStart:
        return tr("启动");
    case CommandStop:
        return tr("停止");
    case CommandReset:
        return tr("复位");
    case CommandLoad:
        break;
    }
    return tr("设为加工程序");
}

void MachineCommandSender::Log(const QString& text, const QColor& color)
{
    Q_EMIT SignalAppendLog(text, color);
    CDebugLog::AddLog(text);
}

bool MachineCommandSender::RefuseUnlessConnected(Command command)
{
    if (m_bConnected && m_client())
        return false;
    Log(tr("%1命令未发送：当前未与机床进行连接！").arg(CommandName(command)), LogColors::Failure);
    return true;
}

void MachineCommandSender::SlotStartRequested()
{
    if (RefuseUnlessConnected(CommandStart))
        return;
    if (m_iStatus != StatusWaiting || m_strProgram.isEmpty()) {
        Log(m_strProgram.isEmpty() ? tr("启动命令未发送：机床未加载加工程序") : tr("启动命令未发送：机床不在等待状态"),
            LogColors::Failure);
        return;
    }
    AskThenSend(CommandStart, tr("确定启动加工程序 \"%1\" 吗？").arg(m_strProgram));
}

void MachineCommandSender::SlotStopRequested()
{
    if (!RefuseUnlessConnected(CommandStop))
        Send(CommandStop);
}

void MachineCommandSender::SlotResetRequested()
{
    if (!RefuseUnlessConnected(CommandReset))
        AskThenSend(CommandReset, tr("确定复位机床吗？复位将清除报警并使程序回到第一行。"));
}

void MachineCommandSender::SlotLoadProgramRequested(const QString& machinePath)
{
    if (!RefuseUnlessConnected(CommandLoad))
        Send(CommandLoad, machinePath);
}

void MachineCommandSender::AskThenSend(Command command, const QString& question)
{
    // The request may come from inside an event filter or a socket slot: the box never runs a
    // loop of its own, the answer comes back later.
    CVarnokMessageBox::Open(m_pWindow, MsgButtonConfirm | MsgButtonCancel, MsgIconWarning, tr("提示"), question, {},
                            [guard = QPointer<MachineCommandSender>(this), command](int answer) {
                                // The machine may have gone while the box was open.
                                if (guard && answer == MsgButtonConfirm && !guard->RefuseUnlessConnected(command))
                                    guard->Send(command);
                            });
}

void MachineCommandSender::Send(Command command, const QString& machinePath)
{
    FileTransferClient* client = m_client();
    connect(client, &FileTransferClient::SignalCommandFinished, this, &MachineCommandSender::OnFinished,
            Qt::UniqueConnection);
    bool sent = false;
    switch (command) {
    case CommandStart:
        sent = client->StartProgram();
        break;
    case CommandStop:
        sent = client->StopProgram();
        break;
    case CommandReset:
        sent = client->ResetMachine();
        break;
    case CommandLoad:
        sent = client->LoadProgram(machinePath);
        break;
    }
    if (!sent)
        Log(tr("%1命令发送失败：与机床的连接不可用").arg(CommandName(command)), LogColors::Failure);
}

void MachineCommandSender::OnFinished(const QString& replyType, bool ok, const QString& message)
{
    Command command = CommandLoad;
    if (replyType == QLatin1String(Protocol::MsgStartProgramRes))
        command = CommandStart;
    else if (replyType == QLatin1String(Protocol::MsgStopProgramRes))
        command = CommandStop;
    else if (replyType == QLatin1String(Protocol::MsgResetMachineRes))
        command = CommandReset;
    if (ok) {
        Log(tr("%1命令已执行").arg(CommandName(command)), LogColors::Success);
        return;
    }
    Log(tr("%1命令失败：%2").arg(CommandName(command), message.isEmpty() ? tr("机床无应答") : message),
        LogColors::Failure);
}
