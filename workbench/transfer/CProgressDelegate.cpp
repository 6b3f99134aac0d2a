#include "CProgressDelegate.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
constexpr int MinimumRowHeight = 24;

bool HoldsInfo(const QVariant& value)
{
    return value.metaType() == QMetaType::fromType<TanslateInfo>();
}
} // namespace

CProgressDelegate::CProgressDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

QSize CProgressDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), MinimumRowHeight));
    return size;
}

void CProgressDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QVariant value = index.data(InfoRole);
    if (!HoldsInfo(value)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    // The item's own font, as the base painting would use it.
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    m_painter.Paint(painter, opt.rect, value.value<TanslateInfo>(), index.data(SpeedTextRole).toString(), opt.font);
}

bool CProgressDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                    const QModelIndex& index)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const QVariant value = index.data(InfoRole);
        if (mouse->button() == Qt::LeftButton && HoldsInfo(value) &&
            TanslateInfo::IsRetryable(value.value<TanslateInfo>().state) &&
            TransProgressPainter::RestartIconRect(option.rect).contains(mouse->position().toPoint())) {
            emit SignalRestartClicked(index);
            return true;
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}
