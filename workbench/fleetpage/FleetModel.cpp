#include "FleetModel.h"

#include "MachineFleet.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QColor>
#include <QHostAddress>

namespace {
QString StatusKey(int status)
{
    return status == FleetMachine::StatusUnreachable ? QStringLiteral("offline")
                                                     : MachineStatusWidget::StatusKey(status);
}

int ProgressPercent(const StructProgramInfo& program)
{
    if (program.isFinish)
        return 100;
    return program.totalLine > 0 ? qBound(0, 100 * program.curLine / program.totalLine, 100) : 0;
}
} // namespace

FleetModel::FleetModel(MachineFleet* fleet, QObject* parent) : QAbstractTableModel(parent), m_pFleet(fleet)
{
    connect(fleet, &MachineFleet::SignalAboutToAdd, this, [this](int row) { beginInsertRows({}, row, row); });
    connect(fleet, &MachineFleet::SignalAdded, this, [this] { endInsertRows(); });
    connect(fleet, &MachineFleet::SignalChanged, this, [this](int row) {
        if (IsHighlighted(row) && !m_listHighlighted.contains(row)) {
            m_listHighlighted.append(row);
            if (!m_fadeTimer.isActive())
                m_fadeTimer.start();
        }
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    });
    // One timer for all tints: a row is repainted once when its tint ends, never polled.
    m_fadeTimer.setInterval(1000);
    connect(&m_fadeTimer, &QTimer::timeout, this, &FleetModel::FadeHighlights);
}

int FleetModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_pFleet->Count();
}

int FleetModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString FleetModel::StateText(int status)
{
    return MachineStatusWidget::StatusRows().value(StatusKey(status)).strText;
}

QColor FleetModel::StateColor(int status)
{
    return QColor(MachineStatusWidget::StatusRows().value(StatusKey(status)).strColor);
}

bool FleetModel::IsHighlighted(int row) const
{
    const QDateTime since = m_pFleet->At(row).stateSince;
    return since.isValid() && since.secsTo(QDateTime::currentDateTime()) < HighlightSeconds;
}

void FleetModel::FadeHighlights()
{
    for (int i = int(m_listHighlighted.size()) - 1; i >= 0; --i) {
        const int row = m_listHighlighted.at(i);
        if (row < m_pFleet->Count() && IsHighlighted(row))
            continue;
        m_listHighlighted.removeAt(i);
        if (row < m_pFleet->Count())
            Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1), {Qt::BackgroundRole});
    }
    if (m_listHighlighted.isEmpty())
        m_fadeTimer.stop();
}

QVariant FleetModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_pFleet->Count())
        return {};
    const FleetMachine& machine = m_pFleet->At(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return Display(index.row(), index.column());
    case RawRole:
        return Raw(index.row(), index.column());
    case Qt::ForegroundRole:
        if (index.column() == ColumnState)
            return StateColor(machine.Status());
        if (index.column() == ColumnAlarm)
            return QColor(220, 50, 50);
        return {};
    case Qt::BackgroundRole:
        return IsHighlighted(index.row()) ? QVariant(QColor(0xff, 0xf4, 0xd6)) : QVariant();
    case Qt::ToolTipRole:
        return index.column() == ColumnAlarm || index.column() == ColumnSendResult
                   ? Display(index.row(), index.column())
                   : QVariant();
    default:
        return {};
    }
}

QVariant FleetModel::Display(int row, int column) const
{
    const FleetMachine& machine = m_pFleet->At(row);
    const bool bRecord = machine.bReachable;
    switch (column) {
    case ColumnName:
        return machine.bConnected ? tr("%1（已连接）").arg(machine.strSn) : machine.strSn;
    case ColumnAddress:
        return machine.strIp;
    case ColumnState:
        return StateText(machine.Status());
    case ColumnProgram:
        return bRecord ? machine.record.program.name : QString();
    case ColumnProgress:
        return bRecord && !machine.record.program.name.isEmpty()
                   ? QStringLiteral("%1%").arg(ProgressPercent(machine.record.program))
                   : QString();
    case ColumnTimeLeft:
        return bRecord && machine.record.status == 1 ? MachineStatusWidget::RunTimeText(machine.record.program.timeLeft)
                                                     : QString();
    case ColumnAlarm:
        return bRecord ? machine.record.alarm : QString();
    case ColumnLastHeard:
        return machine.lastHeard.isValid() ? machine.lastHeard.toString(QStringLiteral("HH:mm:ss")) : tr("从未");
    case ColumnSendResult:
        return machine.strSendResult;
    default:
        return {};
    }
}

QVariant FleetModel::Raw(int row, int column) const
{
    const FleetMachine& machine = m_pFleet->At(row);
    switch (column) {
    case ColumnAddress:
        return QHostAddress(machine.strIp).toIPv4Address();
    case ColumnState:
        return machine.Status();
    case ColumnProgress:
        return machine.bReachable ? ProgressPercent(machine.record.program) : -1;
    case ColumnTimeLeft:
        return machine.bReachable && machine.record.status == 1 ? machine.record.program.timeLeft : -1;
    case ColumnLastHeard:
        return machine.lastHeard.isValid() ? machine.lastHeard.toMSecsSinceEpoch() : qint64(0);
    default:
        return Display(row, column);
    }
}

QVariant FleetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case ColumnName:
        return tr("机床");
    case ColumnAddress:
        return tr("地址");
    case ColumnState:
        return tr("状态");
    case ColumnProgram:
        return tr("当前程序");
    case ColumnProgress:
        return tr("进度");
    case ColumnTimeLeft:
        return tr("剩余时间");
    case ColumnAlarm:
        return tr("报警");
    case ColumnLastHeard:
        return tr("最后响应");
    case ColumnSendResult:
        return tr("发送结果");
    default:
        return {};
    }
}
