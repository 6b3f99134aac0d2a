#pragma once

#include "KorvControlsExport.h"

#include <QStyledItemDelegate>

// Draws a file name elided to its cell (where the ellipsis goes is settable) and
// shows the whole name as a tool tip when it does not fit. Renaming opens a flat editor
// with the name selected up to its suffix, so typing keeps the file's type.
class KORVCONTROLS_EXPORT CFileNameDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CFileNameDelegate(QObject* parent = nullptr);

    void SetElideMode(Qt::TextElideMode mode);
    Qt::TextElideMode ElideMode() const { return m_eElideMode; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    Qt::TextElideMode m_eElideMode = Qt::ElideMiddle;
};
