#pragma once

#include "CommonDefine.h"
#include "FileRowData.h"
#include "MachineRecords.h"
#include "TaskOwner.h"

#include <QColor>
#include <QItemSelection>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QWidget>

class FileSortProxyModel;
class FileTreeView;
class QAction;
class QMenu;
class QStandardItemModel;
class QTimer;
struct LocalListing;

namespace Ui {
class FileSelectPanel;
}

// One file-browser panel: the local computer (local mode) or the machine's file
// system over FTP (machine mode). It lists a folder into rows, navigates with a
// history, an editable path line, up and reset, filters by machine file type and
// reports what the user selected.
class FileSelectPanel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileSelectPanel)

public:
    explicit FileSelectPanel(bool bLocal, QWidget* parent = nullptr);
    ~FileSelectPanel() override;

    bool IsLocal() const { return m_bLocal; }

    // The machine whose files a machine panel lists; given by the panel's owner.
    void SetMachineIp(const QString& ip) { m_strMachineIp = ip; }
    QString MachineIp() const { return m_strMachineIp; }

    // Locks the navigation while the owner runs something that the panel must not disturb.
    void SetPanelLocked(bool locked);
    bool IsPanelBusy() const { return m_bBusy; }

    // Lists the current folder again (the reset button's action).
    void RefreshPanel();
    // Drops the rows and the history: the look of a machine panel without a machine.
    void ClearPanel();
    // Goes to a folder as a navigation of the user's would (pushed on the history).
    void OpenFolder(const QString& path);

    QString CurrentPath() const { return m_strFullPath; }
    QStringList FolderNames() const { return m_listFolderNames; }
    QStringList FileNames() const { return m_listFileNames; }
    QStringList HistoryPaths() const { return m_listFilePath; }
    int HistoryIndex() const { return m_iCurIndex; }
    StructItemInfo CurrentItemInfo() const { return m_structItemInfo; }
    FileTreeView* TreeView() const { return m_pTreeView; }
    QStandardItemModel* ItemModel() const { return m_pModel; }
    FileSortProxyModel* SortModel() const { return m_pProxyModel; }

    // The flash interval; 500 ms unless a test shortens it.
    void SetFlashInterval(int ms) { m_iFlashIntervalMs = ms; }

    // The filter check box's handler, connected by hand because Qt 6.4's check box
    // has no checkStateChanged signal.
    void on_filiterBox_checkStateChanged(Qt::CheckState state);

Q_SIGNALS:
    void SignalItemSelected(StructItemInfo itemInfo);
    void SignalDeleteTriggered(QString path, int type);
    void SignalDeleteItemsTriggered(QStringList filePathList, QStringList foderPathList);
    void SignalRenameTriggered(QString strOldPath, QString strNewPath);
    void SignalMakeDirTriggered(QString path);
    void SignalSendFileToUpload(QString filePath, QString machinePath, OperationType operation);
    void SignalDownloadFileFromMachine(QString machinePath, QString localPath);
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

private:
    void SetUpView();
    void SetUpTitle();
    void SetUpMenu();

    void scanDirectory(const QString& path, const QString& fileToSelect = QString());
    void showMyComputer();
    bool startListFtp(const QString& path);
    void ApplyLocalListing(const LocalListing& listing, const QString& fileToSelect);
    void ApplyMachineListing(QObject* task, bool ok, const QList<FtpFileInfo>& entries);

    void PushHistory(const QString& path);
    void StepHistory(int step);
    void ShowHistoryEntry();
    void SetCurrentPath(const QString& path);
    void UpdatePathLabel();
    void ReplaceRows(const QList<FileRowData>& rows);
    void AppendRows(const QList<FileRowData>& rows);
    QList<FileRowData> QuickAccessRows() const;
    QModelIndex ProxyIndexOfName(const QString& name) const;
    void SelectAndFlash(const QString& name);

    bool RefuseWhileTransferring();
    void ShowNotice(const QString& text);
    void LogLine(const QString& text);

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
    bool m_bFilter = false;
    int m_iLastSortColumn = -1;
    Qt::SortOrder m_eLastSortOrder = Qt::AscendingOrder;
    StructItemInfo m_structItemInfo;

    // Local listings read the disk on a pool thread; only the newest one is applied.
    quint64 m_nLocalListingSerial = 0;

    // Machine listing: the task in flight, and what to show again if it fails.
    QString m_strMachineIp;
    QPointer<QObject> m_pListTask;
    TaskOwner m_tasks; // listings still running are stopped when the panel goes
    QString m_strSavedPath;
    QList<FileRowData> m_listShownRows;
    QString m_strPendingLocateName;
    QString m_strPendingFolderName;

    QTimer* m_pFlashTimer = nullptr;
    QPersistentModelIndex m_flashIndex;
    int m_iFlashCount = 0;
    bool m_bFlashing = false;
    int m_iFlashIntervalMs = 500;

    // Context menu and clipboard record, used by the file operations.
    QMenu* m_pMenu = nullptr;
    QList<QAction*> m_listActions;
    QStringList m_listClipboardPaths;
    QString m_strClipboardOperation;
    QString m_strClipboardSource;
    QDateTime m_dtClipboard;
};
