#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

// Edits a file name in place; the rename itself is the panel's decision, so a
// commit is announced instead of written into the model.
class MachineStatusFileDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

Q_SIGNALS:
    void signalRenameCommit(QPersistentModelIndex index, QString oldName, QString newName) const;
};
