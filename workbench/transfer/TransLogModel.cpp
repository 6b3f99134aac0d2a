#include "TransLogModel.h"

#include "LocalClock.h"

#include <utility>

namespace {
const QColor TimeColor(118, 118, 118);
}

TransLogModel::TransLogModel(QObject* parent, int iMaxRows) : QAbstractTableModel(parent), m_iMaxRows(iMaxRows) {}

int TransLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_listEntries.size());
}

int TransLogModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant TransLogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !index.model() || index.row() < 0 || index.column() < 0 ||
        index.row() >= m_listEntries.size())
        return {};
    const LogEntry& entry = m_listEntries.at(index.row());
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        // The tool tip gives the whole of a line that a narrow pane cuts short.
        if (index.column() == ColumnTime)
            return role == Qt::DisplayRole ? QVariant(entry.strTime) : QVariant();
        if (index.column() == ColumnMessage)
            return entry.strMessage;
    } else if (role == Qt::ForegroundRole) {
        if (index.column() == ColumnTime)
            return TimeColor;
        if (index.column() == ColumnMessage)
            return entry.color;
    }
    return {};
}

void TransLogModel::AddLog(const QString& strMessage, const QColor& color)
{
    AddLogs({{m_clock(), strMessage, color}});
}

void TransLogModel::AddLogs(const QList<Line>& lines)
{
    qsizetype first = 0;
    if (m_iMaxRows > 0) {
        first = qMax<qsizetype>(0, lines.size() - m_iMaxRows);
        const qsizetype overflow = m_listEntries.size() + lines.size() - first - m_iMaxRows;
        if (overflow > 0)
            DropOldest(int(overflow));
    }
    if (first >= lines.size())
        return;
    const int n = int(m_listEntries.size());
    beginInsertRows(QModelIndex(), n, n + int(lines.size() - first) - 1);
    for (qsizetype i = first; i < lines.size(); ++i) {
        const Line& line = lines.at(i);
        m_listEntries.append(
            {LocalClock::At(line.iMsecs).toString(QStringLiteral("hh:mm:ss")), line.strMessage, line.color});
    }
    endInsertRows();
}

void TransLogModel::ClearLog()
{
    if (m_listEntries.isEmpty())
        return;
    beginResetModel();
    m_listEntries.clear();
    endResetModel();
}

void TransLogModel::SetMaxRows(int iMaxRows)
{
    m_iMaxRows = iMaxRows;
    if (m_iMaxRows > 0 && m_listEntries.size() > m_iMaxRows)
        DropOldest(int(m_listEntries.size()) - m_iMaxRows);
}

void TransLogModel::SetClock(TransferClock clock)
{
    m_clock = std::move(clock);
}

void TransLogModel::DropOldest(int iCount)
{
    beginRemoveRows(QModelIndex(), 0, iCount - 1);
    m_listEntries.remove(0, iCount);
    endRemoveRows();
}
