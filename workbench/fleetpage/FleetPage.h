#pragma once

#include <QWidget>

class FleetModel;
class MachineFleet;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

// The machines page: every known machine in a sortable, filterable table. A double-click or
// "连接" makes the chosen machine the workbench's current one; "发送程序" sends local programs
// to the chosen machines.
class FleetPage final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FleetPage)

public:
    explicit FleetPage(MachineFleet* fleet, QWidget* parent = nullptr);

    QTableView* Table() const { return m_pTable; }
    QLineEdit* FilterEdit() const { return m_pFilter; }
    QPushButton* ConnectButton() const { return m_pConnect; }
    QPushButton* SendButton() const { return m_pSend; }
    // The fleet rows of the selected table rows, in table order.
    QList<int> SelectedRows() const;

Q_SIGNALS:
    void SignalConnectRequested(const QString& ip, const QString& sn);
    void SignalSendRequested(const QList<int>& rows);

private:
    void RequestConnect(const QModelIndex& index);
    void UpdateButtons();

    MachineFleet* m_pFleet;
    FleetModel* m_pModel;
    QSortFilterProxyModel* m_pProxy;
    QTableView* m_pTable;
    QLineEdit* m_pFilter;
    QPushButton* m_pConnect;
    QPushButton* m_pSend;
    QPushButton* m_pDiscover;
};
