#pragma once

#include "TanslateInfo.h"
#include "TransferClock.h"

#include <QHash>
#include <QWidget>

class CFileNameDelegate;
class CProgressDelegate;
class CTransHeaderView;
class QStandardItem;
class QStandardItemModel;
class QTableView;

namespace Ui {
class TransList;
}

// The table of transfers: one row per transfer key, updated from every report with the
// speed and the time left worked out from the previous report of the same key.
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
    void SetClock(TransferClock clock);

    // Empties the list and forgets every key, so a later report of a known key starts a new row.
    void ClearList();

public Q_SLOTS:
    void SlotUpdateTransfer(const TanslateInfo& info, const QString& strKey);

Q_SIGNALS:
    // The user asked to run the failed transfer of this key again.
    void SignalRestartTransfer(const QString& strKey);

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
    void FitColumnsToViewport();

    Ui::TransList* m_pUi = nullptr;
    QStandardItemModel* m_pModel = nullptr;
    CTransHeaderView* m_pHeader = nullptr;
    CProgressDelegate* m_pProgressDelegate = nullptr;
    CFileNameDelegate* m_pFileNameDelegate = nullptr;
    CFileNameDelegate* m_pMachinePathDelegate = nullptr;
    QHash<QString, int> m_mapKeyRow;
    QHash<QString, qint64> m_mapKeyLastBytes;
    QHash<QString, qint64> m_mapKeyLastTime;
    TransferClock m_clock = SystemTransferClock;
};
