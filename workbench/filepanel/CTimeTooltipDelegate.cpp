#include "CTimeTooltipDelegate.h"

#include "FileItemRoles.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

CTimeTooltipDelegate::CTimeTooltipDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

bool CTimeTooltipDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                     const QModelIndex& index)
{
    if (event && event->type() == QEvent::ToolTip && index.isValid() && index.column() == 1) {
        const QString time = index.sibling(index.row(), 0).data(FileItemRole::Time).toString();
        if (!time.isEmpty()) {
            QToolTip::showText(event->globalPos(), time, view);
            return true;
        }
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}
