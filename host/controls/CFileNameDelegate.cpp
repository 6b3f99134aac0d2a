#include "CFileNameDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QStyle>
#include <QToolTip>

CFileNameDelegate::CFileNameDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

void CFileNameDelegate::SetElideMode(Qt::TextElideMode mode)
{
    m_eElideMode = mode;
}

void CFileNameDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = m_eElideMode;
}

bool CFileNameDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                  const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString text = index.data(Qt::DisplayRole).toString();
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    const QWidget* widget = opt.widget ? opt.widget : view;
    QStyle* style = widget ? widget->style() : QApplication::style();
    const QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    if (opt.fontMetrics.horizontalAdvance(text) + 2 * margin > textRect.width())
        QToolTip::showText(event->globalPos(), text, view);
    else
        QToolTip::hideText();
    return true;
}
