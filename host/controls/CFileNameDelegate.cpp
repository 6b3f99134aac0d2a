#include "CFileNameDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
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
    // A wrapped name would never be elided, and rows must keep one line.
    option->features &= ~QStyleOptionViewItem::WrapText;
}

QWidget* CFileNameDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const
{
    auto* editor = new QLineEdit(parent);
    editor->setFrame(false);
    editor->setStyleSheet(QStringLiteral(
        "QLineEdit{border:1px solid #368bd4;border-radius:2px;padding:0px 4px;color:#333333;background:#ffffff;"
        "selection-background-color:#368bd4;}"));
    return editor;
}

void CFileNameDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* edit = qobject_cast<QLineEdit*>(editor);
    if (!edit) {
        QStyledItemDelegate::setEditorData(editor, index);
        return;
    }
    const QString name = index.data(Qt::EditRole).toString();
    edit->setText(name);
    // A leading dot is part of the name (".config"), not the start of a suffix.
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot > 0)
        edit->setSelection(0, dot);
    else
        edit->selectAll();
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
