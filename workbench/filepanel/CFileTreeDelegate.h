#pragma once

#include <QStyledItemDelegate>

// Edits a file name in place. The editor refuses the characters that no file
// name may hold; a committed name loses surrounding blanks and trailing dots.
class CFileTreeDelegate final : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CFileTreeDelegate)

public:
    explicit CFileTreeDelegate(QObject* parent = nullptr);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    // The name a committed edit stores: trimmed, trailing dots removed; empty when nothing is left.
    static QString CleanName(const QString& text);

Q_SIGNALS:
    void SignalDataChanged(QString dValue) const;
};
