#pragma once

#include "TransProgressPainter.h"

#include <QStyledItemDelegate>

// The progress column of the transfer list. Rows carry their report under Qt::UserRole and
// the speed text under Qt::UserRole + 1.
class CProgressDelegate final : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CProgressDelegate)

public:
    enum Role
    {
        InfoRole = Qt::UserRole,
        SpeedTextRole = Qt::UserRole + 1,
        TimeLeftTextRole = Qt::UserRole + 2,
    };

    explicit CProgressDelegate(QObject* parent = nullptr);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

Q_SIGNALS:
    // The restart icon of a failed row was clicked.
    void SignalRestartClicked(const QModelIndex& index);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    TransProgressPainter m_painter;
};
