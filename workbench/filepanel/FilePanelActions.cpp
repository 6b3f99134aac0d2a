#include "FilePanelActions.h"

#include "CDebugLog.h"
#include "FileItemRoles.h"
#include "FilePanelContext.h"
#include "FilePanelOperations.h"
#include "FileTreeView.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QMenu>

Q_LOGGING_CATEGORY(lcPanelActions, "korv.filepanel", QtInfoMsg)

namespace {
// The menu's actions by position in m_listActions.
enum MenuAction
{
    ActionNewFile,
    ActionNewFolder,
    ActionDelete,
    ActionRename,
    ActionOpen,
    ActionCopy,
    ActionCut,
    ActionPaste,
    ActionHistory, // machine panel only
    ActionRefresh, // keys only
    ActionUp,      // keys only
};
} // namespace

FilePanelActions::FilePanelActions(FilePanelContext* panel, FilePanelOperations* operations)
    : QObject(panel->PanelWidget()), m_pPanel(panel), m_pOperations(operations)
{
    m_pMenu = new QMenu(panel->PanelWidget());
    m_pMenu->setStyleSheet(
        QStringLiteral("QMenu { background-color: white; border: 1px solid gray; }QMenu::item { background-color: "
                       "transparent; padding: 5px 20px; }QMenu::item:selected { background-color: lightblue; }"));
    // The texts keep the panel's translation context.
    const QString texts[] = {QCoreApplication::translate("FileSelectPanel", "新建文件"),
                             QCoreApplication::translate("FileSelectPanel", "新建文件夹"),
                             QCoreApplication::translate("FileSelectPanel", "删除"),
                             QCoreApplication::translate("FileSelectPanel", "重命名"),
                             QCoreApplication::translate("FileSelectPanel", "打开"),
                             QCoreApplication::translate("FileSelectPanel", "复制"),
                             QCoreApplication::translate("FileSelectPanel", "剪切"),
                             QCoreApplication::translate("FileSelectPanel", "粘贴"),
                             QCoreApplication::translate("FileSelectPanel", "历史版本…")};
    for (const QString& text : texts) {
        auto* action = new QAction(text, panel->PanelWidget());
        const int index = int(m_listActions.size());
        connect(action, &QAction::triggered, this, [this, index] { Trigger(index); });
        m_listActions.append(action);
    }
    panel->TreeView()->installEventFilter(this);
    panel->PanelWidget()->installEventFilter(this);
}

void FilePanelActions::ShowMenu(const QPoint& pos)
{
    if (m_pPanel->IsPanelBusy()) {
        return;
    }
    FileTreeView* view = m_pPanel->TreeView();
    m_pMenu->clear();
    const QModelIndex index = view->indexAt(pos);
    QItemSelectionModel* selection = view->selectionModel();
    if (index.isValid() && !selection->isRowSelected(index.row(), index.parent())) {
        view->setCurrentIndex(index);
    }
    const int count = int(selection->selectedRows().size());
    const bool bComputerView = m_pPanel->IsComputerView();
    const bool bPaste = !bComputerView && m_pOperations->CanPaste();
    qCDebug(lcPanelActions) << QStringLiteral("SlotShowContextMenu size:%1").arg(count);
    QList<int> actions;
    if (!index.isValid()) {
        if (bComputerView) {
            return;
        }
        actions << ActionNewFolder;
        if (m_pPanel->IsLocal()) {
            actions << ActionNewFile;
        }
        if (bPaste) {
            actions << ActionPaste;
        }
    } else {
        const QModelIndex item = index.sibling(index.row(), 0);
        Q_EMIT SignalRowChosen(item);
        if (item.data(FileItemRole::QuickAccess).toBool() ||
            item.data(FileItemRole::Kind).toInt() == FileItemKind::Loading) {
            return;
        }
        if (bComputerView) {
            actions << ActionOpen; // a drive: nothing to copy, rename or delete
        } else {
            if (count == 1) {
                actions << ActionOpen;
            }
            actions << ActionCopy << ActionCut;
            if (bPaste) {
                actions << ActionPaste;
            }
            actions << ActionDelete;
            if (count == 1) {
                actions << ActionRename;
            }
            actions << ActionNewFolder;
            if (m_pPanel->IsLocal()) {
                actions << ActionNewFile;
            }
        }
    }
    if (!m_pPanel->IsLocal() && !bComputerView) {
        actions << ActionHistory;
    }
    for (const int action : std::as_const(actions)) {
        m_pMenu->addAction(m_listActions.at(action));
    }
    m_pMenu->popup(view->viewport()->mapToGlobal(pos));
}

void FilePanelActions::Trigger(int action)
{
    switch (action) {
    case ActionNewFile:
        m_pOperations->NewFile();
        break;
    case ActionNewFolder:
        m_pOperations->NewFolder();
        break;
    case ActionDelete:
        m_pOperations->DeleteSelected();
        break;
    case ActionRename:
        Q_EMIT SignalRename();
        break;
    case ActionOpen:
        Q_EMIT SignalOpen();
        break;
    case ActionCopy:
        m_pOperations->Copy();
        break;
    case ActionCut:
        m_pOperations->Cut();
        break;
    case ActionPaste:
        m_pOperations->Paste();
        break;
    case ActionHistory:
        m_pOperations->ShowHistory();
        break;
    case ActionRefresh:
        m_pPanel->RefreshPanel();
        break;
    case ActionUp:
        Q_EMIT SignalUp();
        break;
    default:
        break;
    }
}

bool FilePanelActions::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        return HandleKey(static_cast<QKeyEvent*>(event));
    }
    return QObject::eventFilter(watched, event);
}

bool FilePanelActions::HandleKey(QKeyEvent* event)
{
    if (m_pPanel->TreeView()->IsEditing()) {
        return false;
    }
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    int action = 0;
    if (modifiers == Qt::ControlModifier && key == Qt::Key_C) {
        action = ActionCopy;
    } else if (modifiers == Qt::ControlModifier && key == Qt::Key_X) {
        action = ActionCut;
    } else if (modifiers == Qt::ControlModifier && key == Qt::Key_V) {
        action = ActionPaste;
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_Delete) {
        action = ActionDelete;
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_F2) {
        action = ActionRename;
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_F5) {
        action = ActionRefresh;
    } else if (modifiers == Qt::NoModifier && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        action = ActionOpen;
    } else if ((modifiers == Qt::NoModifier && key == Qt::Key_Backspace) ||
               (modifiers == Qt::AltModifier && key == Qt::Key_Up)) {
        action = ActionUp;
    } else {
        return false;
    }
    // While the owner runs something, the keys do what the locked buttons and menu do: nothing.
    if (!m_pPanel->IsPanelBusy()) {
        if (action == ActionPaste) {
            CDebugLog::AddLog(QStringLiteral("快捷键执行粘贴操作"));
        }
        Trigger(action);
    }
    event->accept();
    return true;
}
