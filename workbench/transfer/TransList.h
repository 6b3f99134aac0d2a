#pragma once

#include "TanslateInfo.h"
#include "TransferClock.h"

#include <QHash>
#include <QIcon>
#include <QTimer>
#include <QWidget>

class CFileNameDelegate;
class CProgressDelegate;
class CTransHeaderView;
class QAction;
class QMenu;
class QStandardItem;
class QStandardItemModel;
class QTableView;

namespace Ui {
class TransList;
}

// The table of transfers: one row per transfer key, updated from every report with the
// speed and the time left worked out from the previous report of the same key. A row's menu
// (and the Delete key for the current row) asks to cancel, retry or open the local folder;
// the list only asks, the owner of the transfers decides.
class TransList final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransList)

public:
    enum Column
    {
        ColumnFile = 0,
        ColumnProgress,
        ColumnMachinePath,
        ColumnTime,
        ColumnCount,
    };

    explicit TransList(QWidget* parent = nullptr);
    ~TransList() override;

    QStandardItemModel* Model() const { return m_pModel; }
    QTableView* TableView() const;
    int RowOfKey(const QString& strKey) const { return m_mapKeyRow.value(strKey, -1); }
    QString KeyOfRow(int row) const { return m_mapKeyRow.key(row); }
    QMenu* RowMenu() const { return m_pRowMenu; }
    void SetClock(TransferClock clock);

    // Empties the list and forgets every key, so a later report of a known key starts a new row.
    void ClearList();

public Q_SLOTS:
    void SlotUpdateTransfer(const TanslateInfo& info, const QString& strKey);

Q_SIGNALS:
    // The user asked to run the failed transfer of this key again.
    void SignalRestartTransfer(const QString& strKey);
    // The user asked to stop the running or waiting transfer of this key.
    void SignalCancelTransfer(const QString& strKey);
    // The user asked to see the local folder of a transfer's file.
    void SignalOpenFolder(const QString& strFolder);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void on_m_btnAllClear_clicked();

private:
    void SetUpTable();
    void AddRow(const TanslateInfo& info, const QString& strKey, qint64 iNow);
    void UpdateRow(const TanslateInfo& info, const QString& strKey, qint64 iNow);
    void OnRestartClicked(const QModelIndex& index);
    void SetUpRowMenu();
    void ShowRowMenu(const QPoint& pos);
    // The report shown in the current row; state failed with an empty key when there is none.
    TanslateInfo CurrentInfo(QString* strKey) const;
    void CancelCurrentRow();
    void RetryCurrentRow();
    void OpenCurrentFolder();
    void FitColumnsToViewport();

    Ui::TransList* m_pUi = nullptr;
    QStandardItemModel* m_pModel = nullptr;
    const QIcon m_iconDownload;
    const QIcon m_iconUpload;
    // Follows the newest row once per frame.
    QTimer m_scrollTimer;
    CTransHeaderView* m_pHeader = nullptr;
    CProgressDelegate* m_pProgressDelegate = nullptr;
    CFileNameDelegate* m_pFileNameDelegate = nullptr;
    CFileNameDelegate* m_pMachinePathDelegate = nullptr;
    QMenu* m_pRowMenu = nullptr;
    QAction* m_pActionCancel = nullptr;
    QAction* m_pActionRetry = nullptr;
    QAction* m_pActionOpenFolder = nullptr;
    QHash<QString, int> m_mapKeyRow;
    QHash<QString, qint64> m_mapKeyLastBytes;
    QHash<QString, qint64> m_mapKeyLastTime;
    TransferClock m_clock = SystemTransferClock;
};
