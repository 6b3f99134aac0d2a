#pragma once

#include "GcodeDiff.h"

#include <QAbstractTableModel>
#include <QStringList>

// Two programs and the rows of their compare.
struct ProgramComparison
{
    QStringList listLeft;
    QStringList listRight;
    QList<GcodeDiffRow> listRows;
    int iChanged = 0;
};

// The rows of a compare, side by side. Texts are looked up as the view asks for them: a program of a
// million lines costs a list of indices, not four million items.
class ProgramCompareModel final : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProgramCompareModel)

public:
    enum Column
    {
        ColumnLeftLine,
        ColumnLeftText,
        ColumnRightLine,
        ColumnRightText,
        ColumnCount,
    };

    ProgramCompareModel(const QString& leftTitle, const QString& rightTitle, QObject* parent = nullptr);

    void SetComparison(ProgramComparison comparison);
    const ProgramComparison& Comparison() const { return m_comparison; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString m_strLeftTitle;
    QString m_strRightTitle;
    ProgramComparison m_comparison;
};
