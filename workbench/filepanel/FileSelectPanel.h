#pragma once

#include "CommonDefine.h"
#include "FilePanelContext.h"
#include "FolderHistory.h"
#include "MachineRecords.h"

#include <QColor>
#include <QItemSelection>
#include <QPersistentModelIndex>
#include <QWidget>

class FilePanelActions;
class FilePanelListing;
class FilePanelOperations;
class FilePanelTitleBar;
class FileSortProxyModel;
class LocalListingSource;
class MachineFileRequests;
class MachineListingSource;
class QMenu;
class QStandardItemModel;
class QTimer;

namespace Ui {
class FileSelectPanel;
}

// One file-browser panel: the local computer (local mode) or the machine's file
// system over FTP (machine mode). It shows the rows of its listing source, navigates
// with a history, an editable path line, up and reset, filters by machine file type,
// reports what the user selected, and offers the file operations by menu, keys and
// drag and drop. The local panel has one more place above its drives: the computer
// view, held in the history as an empty path.
class FileSelectPanel : public QWidget, public FilePanelContext
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileSelectPanel)

public:
    explicit FileSelectPanel(bool bLocal, QWidget* parent = nullptr);
    ~FileSelectPanel() override;

    // Where this panel's acts on the machine's files become requests.
    void SetRequests(MachineFileRequests* requests);

    QWidget* PanelWidget() override { return this; }
    bool IsLocal() const override { return m_bLocal; }

    // The machine whose files a machine panel lists; given by the panel's owner.
    void SetMachineIp(const QString& ip);
    QString MachineIp() const;
    bool HasMachine() const override { return !MachineIp().isEmpty(); }

    // Locks the navigation while the owner runs something that the panel must not disturb.
    void SetPanelLocked(bool locked);
    bool IsPanelBusy() const override { return m_bBusy; }

    // Lists the current folder again (the reset button's action).
    void RefreshPanel() override;
    // Drops the rows and the history: the look of a machine panel without a machine.
    void ClearPanel();
    // Goes to a folder as a navigation of the user's would (pushed on the history).
    void OpenFolder(const QString& path);

    QString CurrentPath() const override;
    bool IsComputerView() const override;
    QStringList FolderNames() const override;
    QStringList FileNames() const override;
    QStringList HistoryPaths() const { return m_history.Paths(); }
    int HistoryIndex() const { return m_history.Index(); }
    FileTreeView* TreeView() const override { return m_pTreeView; }
    QStandardItemModel* ItemModel() const { return m_pModel; }
    FileSortProxyModel* SortModel() const { return m_pProxyModel; }
    FileListingSource* Source() const override { return m_pSource; }
    // The machine panel's source; null on the local panel.
    MachineListingSource* MachineSource() const { return m_pMachineSource; }
    QMenu* ContextMenu() const;
    QList<Entry> SelectedEntries() const override;
    void SelectAfterListing(const QString& name) override;
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
    // A machine folder asked for while transfers ran; the owner opens it once they end.
    void SignalNavigationPostponed(QString folder, QString entry);

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
    void SlotFileNameChanged(QString newName);
    void SlotPathEditReturnPressed();
    void SlotPathEditFinished();
    void showPathEdit();
    void startFlash(QModelIndex index, int count = 4);
    void onFlashTimeout();
    void SlotSelectionChanged(QItemSelection selected, QItemSelection deselected);
    void SlotHeaderClicked(int logicalIndex);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void SetUpView();
    void SetUpHelpers();

    // Goes to a folder (an empty path: the computer view) and pushes it on the history.
    void NavigateTo(const QString& path, const QString& entry = QString());
    void StepHistory(int step);
    void ShowPath(const QString& path);
    void OpenSelected();
    QModelIndex ProxyIndexOfName(const QString& name) const;
    void SelectAndFlash(const QString& name);
    // Reports a row (or, with no name, the folder shown) as the user's choice.
    void ReportItem(int kind, const QString& path, const QString& name);

    void ShowNotice(const QString& text);

    Ui::FileSelectPanel* ui = nullptr;
    const bool m_bLocal;
    bool m_bBusy = false;
    QStandardItemModel* m_pModel = nullptr;
    FileSortProxyModel* m_pProxyModel = nullptr;
    FileTreeView* m_pTreeView = nullptr;

    FolderHistory m_history;
    int m_iLastSortColumn = -1;
    Qt::SortOrder m_eLastSortOrder = Qt::AscendingOrder;

    // Where the rows come from: exactly one of the two is set.
    LocalListingSource* m_pLocalSource = nullptr;
    MachineListingSource* m_pMachineSource = nullptr;
    FileListingSource* m_pSource = nullptr;
    FilePanelListing* m_pListing = nullptr;
    FilePanelTitleBar* m_pTitleBar = nullptr;
    FilePanelOperations* m_pOperations = nullptr;
    FilePanelActions* m_pActions = nullptr;

    QTimer* m_pFlashTimer = nullptr;
    QPersistentModelIndex m_flashIndex;
    int m_iFlashCount = 0;
    bool m_bFlashing = false;
    int m_iFlashIntervalMs = 500;

    // The row being renamed in place.
    QPersistentModelIndex m_renameIndex;
};
