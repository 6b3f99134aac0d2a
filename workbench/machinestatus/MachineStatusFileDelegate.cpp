#include "MachineStatusFileDelegate.h"

#include <QLineEdit>

QWidget* MachineStatusFileDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const
{
    auto* editor = new QLineEdit(parent);
    editor->setStyleSheet(QStringLiteral(
        "QLineEdit{background:#ffffff;border:1px solid #828282;border-radius:2px;padding:0px 4px;color:#333333;"
        "selection-background-color:#368bd4;}"));
    return editor;
}

void MachineStatusFileDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* line = static_cast<QLineEdit*>(editor);
    const QString name = index.data(Qt::DisplayRole).toString();
    line->setText(name);
    // Select the base name, as file managers do, so typing keeps the suffix.
    const int dot = int(name.lastIndexOf(QLatin1Char('.')));
    line->setSelection(0, dot > 0 ? dot : int(name.size()));
}

void MachineStatusFileDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const
{
    const QString oldName = index.data(Qt::DisplayRole).toString();
    const QString newName = static_cast<QLineEdit*>(editor)->text().trimmed();
    if (newName.isEmpty() || newName == oldName)
        return;
    Q_EMIT signalRenameCommit(QPersistentModelIndex(index), oldName, newName);
}
