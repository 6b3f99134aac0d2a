#include "ProgramCompareModel.h"

#include <QBrush>
#include <QColor>

namespace {
QColor RowColour(GcodeDiffRow::Kind kind)
{
    switch (kind) {
    case GcodeDiffRow::Changed:
        return QColor(255, 236, 179);
    case GcodeDiffRow::LeftOnly:
        return QColor(255, 214, 214);
    case GcodeDiffRow::RightOnly:
        return QColor(214, 245, 214);
    default:
        return QColor();
    }
}
} // namespace

ProgramCompareModel::ProgramCompareModel(const QString& leftTitle, const QString& rightTitle, QObject* parent)
    : QAbstractTableModel(parent), m_strLeftTitle(leftTitle), m_strRightTitle(rightTitle)
{}

void ProgramCompareModel::SetComparison(ProgramComparison comparison)
{
    beginResetModel();
    m_comparison = std::move(comparison);
    endResetModel();
}

int ProgramCompareModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_comparison.listRows.size());
}

int ProgramCompareModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ProgramCompareModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_comparison.listRows.size())
        return {};
    const GcodeDiffRow& row = m_comparison.listRows.at(index.row());
    if (role == Qt::BackgroundRole) {
        const QColor colour = RowColour(row.eKind);
        return colour.isValid() ? QVariant(QBrush(colour)) : QVariant();
    }
    if (role == Qt::TextAlignmentRole && (index.column() == ColumnLeftLine || index.column() == ColumnRightLine))
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case ColumnLeftLine:
        return row.iLeft < 0 ? QString() : QString::number(row.iLeft + 1);
    case ColumnLeftText:
        return row.iLeft < 0 ? QString() : m_comparison.listLeft.at(row.iLeft);
    case ColumnRightLine:
        return row.iRight < 0 ? QString() : QString::number(row.iRight + 1);
    case ColumnRightText:
        return row.iRight < 0 ? QString() : m_comparison.listRight.at(row.iRight);
    default:
        return {};
    }
}

QVariant ProgramCompareModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    if (section == ColumnLeftText)
        return m_strLeftTitle;
    if (section == ColumnRightText)
        return m_strRightTitle;
    return QString();
}
