#pragma once

#include "CommonDefine.h"
#include "FileRowData.h"
#include "MachineRecords.h"

#include <QColor>
#include <QItemSelection>
#include <QPersistentModelIndex>
#include <QWidget>

class FileListingSource;
class FilePanelOperations;
class MachineFileRequests;
class FileSortProxyModel;
class FileTreeView;
class LocalListingSource;
class MachineListingSource;
class QAction;
class QDragEnterEvent;
class QDragMoveEvent;
class QDropEvent;
class QKeyEvent;
class QMenu;
class QStandardItemModel;
class QTimer;
struct FileListing;

namespace Ui {
class FileSelectPanel;
}

// One file-browser panel: the local computer (local mode) or the machine's file
// system over FTP (machine mode). It shows the rows of its listing source, navigates
// with a history, an editable path line, up and reset, filters by machine file type,
// reports what the user selected, and offers the file operations by menu, keys and
// drag and drop. The local panel has one more place above its drives: the computer
// view, held in the history as an empty path.
class FileSelectPanel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileSelectPanel)

public:
    // A selected row that operations can act on.
    struct Entry
    {
        QString strPath;
        QString strName;
        int iKind = 0;
    };

    explicit FileSelectPanel(bool bLocal, QWidget* parent = nullptr);
    ~FileSelectPanel() override;

    // Where this panel's acts on the machine's files become requests.
    void SetRequests(MachineFileRequests* requests);

    bool IsLocal() const { return m_bLocal; }

    // The machine whose files a machine panel lists; given by the panel's owner.
    void SetMachineIp(const QString& ip);
    QString MachineIp() const;
    bool HasMachine() const { return !MachineIp().isEmpty(); }

    // Locks the navigation while the owner runs something that the panel must not disturb.
    void SetPanelLocked(bool locked);
    bool IsPanelBusy() const { return m_bBusy; }

    // Lists the current folder again (the reset button's action).
    void RefreshPanel();
    // Drops the rows and the history: the look of a machine panel without a machine.
    void ClearPanel();
    // Goes to a folder as a navigation of the user's would (pushed on the history).
    void OpenFolder(const QString& path);

    // The folder shown; empty in the computer view.
    QString CurrentPath() const { return m_strFullPath; }
    bool IsComputerView() const { return m_bLocal && m_strFullPath.isEmpty(); }
    QStringList FolderNames() const { return m_listFolderNames; }
    QStringList FileNames() const { return m_listFileNames; }
    QStringList HistoryPaths() const { return m_listFilePath; }
    int HistoryIndex() const { return m_iCurIndex; }
    StructItemInfo CurrentItemInfo() const { return m_structItemInfo; }
    FileTreeView* TreeView() const { return m_pTreeView; }
    QStandardItemModel* ItemModel() const { return m_pModel; }
    FileSortProxyModel* SortModel() const { return m_pProxyModel; }
    FileListingSource* Source() const { return m_pSource; }
    QMenu* ContextMenu() const { return m_pMenu; }
    // The selected rows that are real entries (no shortcut, no placeholder).
    QList<Entry> SelectedEntries() const;
    // Selects and flashes an entry of this name once the next listing is in.
    void SelectAfterListing(const QString& name) { m_strPendingFolderName = name; }
    // Opens the in-place editor on the selected entry; false when it may not be renamed.
    bool StartRename();

    // The flash interval; 500 ms unless a test shortens it.
    void SetFlashInterval(int ms) { m_iFlashIntervalMs = ms; }

    // The filter check box's handler, connected by hand because Qt 6.4's check box
    // has no checkStateChanged signal.
    void on_filiterBox_checkStateChanged(Qt::CheckState state);

Q_SIGNALS:
    void SignalItemSelected(StructItemInfo itemInfo);
    void SignalClearLocalClipboardPath();
    void SignalAppendLog(QString text, QColor color);
    // A listing ended: its rows are in place (ok) or the previous ones are back (failed).
    void SignalListingFinished(QString path, bool ok);

public Q_SLOTS:
    void SlotClearLocalClipboardData();
    void LocateAndHighlightFile(QString fileName);
    void NavigateAndHighlightFolder(QString targetDir, QString folderName);
    void on_m_btnFront_clicked();
    void SlotTreeDoubleClicked(QModelIndex index);
    void SlotTreeClicked(QModelIndex index);
    void on_m_btnBack_clicked();
    void on_m_btnUp_clicked();
    void on_pushButton_2_clicked();
    void on_m_btnReset_clicked();
    void SlotShowContextMenu(QPoint pos);
    void SlotActionTriggered();
    void SlotFileNameChanged(QString newName);
    void SlotPathEditReturnPressed();
    void SlotPathEditFinished();
    void showPathEdit();
    void startFlash(QModelIndex index, int count = 4);
    void onFlashTimeout();
    void SlotSelectionChanged(QItemSelection selected, QItemSelection deselected);
    void SlotHeaderClicked(int logicalIndex);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void SetUpView();
    void SetUpTitle();
    void SetUpMenu();

    void showMyComputer();
    // Lists a folder of either side through the source.
    bool StartListing(const QString& path);
    void ApplyListing(const FileListing& listing);

    // Goes to a folder (an empty path: the computer view) and pushes it on the history.
    void NavigateTo(const QString& path);
    void PushHistory(const QString& path);
    void StepHistory(int step);
    void ShowHistoryEntry();
    void ShowPath(const QString& path);
    // The file-manager keys; true when the key was one of them.
    bool HandleKey(QKeyEvent* event);
    void OpenSelected();
    void SetCurrentPath(const QString& path);
    void UpdatePathLabel();
    void ReplaceRows(const QList<FileRowData>& rows);
    void AppendRows(const QList<FileRowData>& rows);
    QList<FileRowData> QuickAccessRows() const;
    QModelIndex ProxyIndexOfName(const QString& name) const;
    void SelectAndFlash(const QString& name);

    void ShowNotice(const QString& text);
    void LogLine(const QString& text);
    bool AcceptDrag(QDropEvent* event);

    Ui::FileSelectPanel* ui = nullptr;
    const bool m_bLocal;
    bool m_bBusy = false;
    QStandardItemModel* m_pModel = nullptr;
    FileSortProxyModel* m_pProxyModel = nullptr;
    FileTreeView* m_pTreeView = nullptr;

    QStringList m_listFilePath;
    int m_iCurIndex = 0;
    QString m_strFullPath;
    QStringList m_listFolderNames;
    QStringList m_listFileNames;
    int m_iLastSortColumn = -1;
    Qt::SortOrder m_eLastSortOrder = Qt::AscendingOrder;
    StructItemInfo m_structItemInfo;

    // Where the rows come from: exactly one of the two is set.
    LocalListingSource* m_pLocalSource = nullptr;
    MachineListingSource* m_pMachineSource = nullptr;
    FileListingSource* m_pSource = nullptr;
    bool m_bListing = false;
    // What to show again if a machine listing fails.
    QString m_strSavedPath;
    QList<FileRowData> m_listShownRows;
    QString m_strPendingLocateName;
    QString m_strPendingFolderName;

    QTimer* m_pFlashTimer = nullptr;
    QPersistentModelIndex m_flashIndex;
    int m_iFlashCount = 0;
    bool m_bFlashing = false;
    int m_iFlashIntervalMs = 500;

    QMenu* m_pMenu = nullptr;
    QList<QAction*> m_listActions;
    FilePanelOperations* m_pOperations = nullptr;
    // The row being renamed in place.
    QPersistentModelIndex m_renameIndex;
};
