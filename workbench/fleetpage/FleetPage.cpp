#include "FleetPage.h"

#include "FleetModel.h"
#include "MachineFleet.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

FleetPage::FleetPage(MachineFleet* fleet, QWidget* parent)
    : QWidget(parent), m_pFleet(fleet), m_pModel(new FleetModel(fleet, this)),
      m_pProxy(new QSortFilterProxyModel(this)), m_pTable(new QTableView(this)), m_pFilter(new QLineEdit(this)),
      m_pConnect(new QPushButton(tr("连接"), this)), m_pSend(new QPushButton(tr("发送程序…"), this)),
      m_pDiscover(new QPushButton(tr("查找机床"), this))
{
    setObjectName(QStringLiteral("m_widgetMachinesPage"));
    m_pProxy->setSourceModel(m_pModel);
    m_pProxy->setSortRole(FleetModel::RawRole);
    m_pProxy->setFilterKeyColumn(-1);
    m_pProxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_pProxy->setDynamicSortFilter(true);

    m_pTable->setModel(m_pProxy);
    m_pTable->setSortingEnabled(true);
    m_pTable->sortByColumn(FleetModel::ColumnAddress, Qt::AscendingOrder);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTable->verticalHeader()->hide();
    m_pTable->setWordWrap(false);
    // Short columns take what their texts need and the four free-text ones share the rest, so the
    // table fits a small screen without a horizontal scroll bar.
    QHeaderView* header = m_pTable->horizontalHeader();
    header->setMinimumSectionSize(60);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    for (const int column :
         {FleetModel::ColumnName, FleetModel::ColumnProgram, FleetModel::ColumnAlarm, FleetModel::ColumnSendResult})
        header->setSectionResizeMode(column, QHeaderView::Stretch);

    m_pFilter->setPlaceholderText(tr("筛选：机床、地址、状态、程序或报警"));
    m_pFilter->setClearButtonEnabled(true);
    connect(m_pFilter, &QLineEdit::textChanged, m_pProxy, &QSortFilterProxyModel::setFilterFixedString);

    auto* bar = new QHBoxLayout;
    bar->addWidget(m_pFilter, 1);
    bar->addWidget(m_pDiscover);
    bar->addWidget(m_pConnect);
    bar->addWidget(m_pSend);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(m_pTable, 1);

    connect(m_pTable, &QTableView::doubleClicked, this, &FleetPage::RequestConnect);
    connect(m_pConnect, &QPushButton::clicked, this, [this] { RequestConnect(m_pTable->currentIndex()); });
    connect(m_pSend, &QPushButton::clicked, this, [this] { Q_EMIT SignalSendRequested(SelectedRows()); });
    connect(m_pDiscover, &QPushButton::clicked, fleet, &MachineFleet::Discover);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::selectionChanged, this, &FleetPage::UpdateButtons);
    UpdateButtons();
}

QList<int> FleetPage::SelectedRows() const
{
    QList<int> rows;
    for (const QModelIndex& index : m_pTable->selectionModel()->selectedRows())
        rows.append(m_pProxy->mapToSource(index).row());
    return rows;
}

void FleetPage::RequestConnect(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const FleetMachine& machine = m_pFleet->At(m_pProxy->mapToSource(index).row());
    if (!machine.bConnected)
        Q_EMIT SignalConnectRequested(machine.strIp, machine.strSn);
}

void FleetPage::UpdateButtons()
{
    const int selected = int(m_pTable->selectionModel()->selectedRows().size());
    m_pConnect->setEnabled(selected == 1);
    m_pSend->setEnabled(selected > 0);
}
