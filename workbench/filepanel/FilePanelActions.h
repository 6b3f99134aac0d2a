#pragma once

#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QPoint>

class FilePanelContext;
class FilePanelOperations;
class QAction;
class QKeyEvent;
class QMenu;

// The panel's context menu and file-manager keys, which offer the same acts: the file operations
// directly, what belongs to the panel (rename, open, up) as signals. Nothing runs while the panel
// is busy.
class FilePanelActions final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePanelActions)

public:
    FilePanelActions(FilePanelContext* panel, FilePanelOperations* operations);

    QMenu* Menu() const { return m_pMenu; }
    // Fills the menu for what lies under `pos` (viewport coordinates) and pops it up.
    void ShowMenu(const QPoint& pos);

Q_SIGNALS:
    void SignalRename();
    void SignalOpen();
    void SignalUp();
    // A right click chose this row (column 0).
    void SignalRowChosen(const QModelIndex& index);

protected:
    // The keys reach the panel before the view's own handling (Backspace would search).
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool HandleKey(QKeyEvent* event);
    void Trigger(int action);

    FilePanelContext* m_pPanel = nullptr;
    FilePanelOperations* m_pOperations = nullptr;
    QMenu* m_pMenu = nullptr;
    QList<QAction*> m_listActions;
};
