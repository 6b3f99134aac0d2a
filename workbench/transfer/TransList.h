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
// speed and the time left worked out from the previous report of the same key. Reports are worked
// out as they come and shown once per frame, so a batch of small files costs one repaint a frame,
// not several per file. A row's menu
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

    // The rows with every report so far shown.
    QStandardItemModel* Model();
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
    // What a row shows after a report.
    struct Shown
    {
        TanslateInfo info;
        QString strSpeed;
        QString strTimeLeft;
        QString strTime;
        bool bNewRow = false;
    };

    void SetUpTable();
    Shown NewRowShown(const TanslateInfo& info, qint64 iNow) const;
    Shown UpdatedRowShown(const TanslateInfo& info, const QString& strKey, qint64 iNow) const;
    void ShowPending();
    void AppendRow(const Shown& shown);
    void ShowInRow(int row, const Shown& shown);
    void OnRestartClicked(const QModelIndex& index);
    void SetUpRowMenu();
    void ShowRowMenu(const QPoint& pos);
    // The report shown in the current row; state failed with an empty key when there is none.
    TanslateInfo CurrentInfo(QString* strKey);
    void CancelCurrentRow();
    void RetryCurrentRow();
    void OpenCurrentFolder();
    void FitColumnsToViewport();

    Ui::TransList* m_pUi = nullptr;
    QStandardItemModel* m_pModel = nullptr;
    const QIcon m_iconDownload;
    const QIcon m_iconUpload;
    // Shows the reports of the current frame and follows the newest row.
    QTimer m_frameTimer;
    QHash<QString, Shown> m_hashPending;
    QStringList m_listPendingKeys; // in order of arrival, so that new rows keep their numbers
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
