#pragma once

#include <QStyledItemDelegate>

// Shows the modification time of a row as the tool tip of the time column.
class CTimeTooltipDelegate final : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CTimeTooltipDelegate)

public:
    explicit CTimeTooltipDelegate(QObject* parent = nullptr);

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
};
