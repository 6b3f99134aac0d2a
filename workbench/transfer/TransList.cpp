#include "TransList.h"

#include "CDebugLog.h"
#include "CFileNameDelegate.h"
#include "CProgressDelegate.h"
#include "CTransHeaderView.h"
#include "CommonDefine.h"
#include "KorvFonts.h"
#include "LocalClock.h"
#include "WorkbenchLog.h"
#include "ui_TransList.h"

#include <QDebug>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QResizeEvent>
#include <QStandardItemModel>
#include <algorithm>
#include <utility>

namespace {
constexpr int RowHeight = 24;
constexpr int HeaderHeight = 24;
const QColor ItemTextColor(51, 51, 51);
constexpr Qt::Alignment CentredAlignment = Qt::AlignHCenter | Qt::AlignVCenter;

QStandardItem* MakeItem(const QString& strText, bool bToolTip)
{
    auto* item = new QStandardItem(strText);
    if (bToolTip)
        item->setToolTip(strText);
    item->setForeground(ItemTextColor);
    item->setFont(FontCnMedium_15);
    return item;
}

// Sets display text and tool tip together; unchanged values emit nothing.
void SetTextAndToolTip(QStandardItem* item, const QString& strText)
{
    item->setText(strText);
    item->setToolTip(strText);
}

QString SpeedText(double dSpeed)
{
    if (dSpeed > 1048576)
        return QString::number(dSpeed / 1024 / 1024, 'f', 2) + QStringLiteral(" MB/s");
    if (dSpeed > 1024)
        return QString::number(dSpeed / 1024, 'f', 2) + QStringLiteral(" KB/s");
    return QString::number(dSpeed, 'g', 6) + QStringLiteral(" B/s");
}

// A queued transfer has no speed yet; its row says that it waits for its turn.
QString SpeedTextOf(const TanslateInfo& info, double dSpeed)
{
    return info.state == TanslateInfo::StateWaiting ? TransList::tr("等待中") : SpeedText(dSpeed);
}

QString StateTimeText(const TanslateInfo& info, const QString& strTimeLeft)
{
    return info.state == TanslateInfo::StateCancelled ? TransList::tr("已取消") : strTimeLeft;
}

QString TimeLeftText(qint64 iSeconds)
{
    if (iSeconds >= 60)
        return QStringLiteral("%1 m %2 s").arg(iSeconds / 60).arg(iSeconds % 60);
    return QStringLiteral("%1 s").arg(iSeconds);
}

QString CompletionTimeText(qint64 iNow)
{
    return LocalClock::At(iNow).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}
} // namespace

TransList::TransList(QWidget* parent)
    : QWidget(parent), m_pUi(new Ui::TransList), m_iconDownload(QString::fromLatin1(IconArrowLeftBlue)),
      m_iconUpload(QString::fromLatin1(IconArrowRightGreen))
{
    RegisterTanslateInfoMetaType();
    m_pUi->setupUi(this);
    m_pModel = new QStandardItemModel(this);
    SetUpTable();
    m_frameTimer.setSingleShot(true);
    m_frameTimer.setInterval(FrameMs);
    connect(&m_frameTimer, &QTimer::timeout, this, &TransList::ShowPending);
}

TransList::~TransList()
{
    delete m_pUi;
}

QStandardItemModel* TransList::Model()
{
    ShowPending();
    return m_pModel;
}

QTableView* TransList::TableView() const
{
    return m_pUi->m_tableView;
}

void TransList::SetClock(TransferClock clock)
{
    m_clock = std::move(clock);
}

void TransList::SetUpTable()
{
    QTableView* view = m_pUi->m_tableView;
    m_pHeader = new CTransHeaderView(view);
    m_pHeader->setSectionResizeMode(QHeaderView::Fixed);
    m_pHeader->setDefaultSectionSize(24);
    m_pHeader->setFixedHeight(HeaderHeight);
    m_pHeader->setMinimumSectionSize(160);
    view->setHorizontalHeader(m_pHeader);

    m_pFileNameDelegate = new CFileNameDelegate(this);
    m_pProgressDelegate = new CProgressDelegate(this);
    m_pMachinePathDelegate = new CFileNameDelegate(this);
    m_pMachinePathDelegate->SetElideMode(Qt::ElideMiddle);
    view->setItemDelegateForColumn(ColumnFile, m_pFileNameDelegate);
    view->setItemDelegateForColumn(ColumnProgress, m_pProgressDelegate);
    view->setItemDelegateForColumn(ColumnMachinePath, m_pMachinePathDelegate);
    connect(m_pProgressDelegate, &CProgressDelegate::SignalRestartClicked, this, &TransList::OnRestartClicked);

    view->setModel(m_pModel);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->hide();
    view->setShowGrid(true);
    // Wrapped text is elided only at its last line, which would defeat the middle elision of paths.
    view->setWordWrap(false);
    m_pModel->setColumnCount(ColumnCount);
    const QStringList headers = {tr("文件"), tr("进度"), tr("Varnok路径"), tr("时间")};
    for (int column = 0; column < ColumnCount; ++column)
        m_pModel->setHorizontalHeaderItem(column, new QStandardItem(headers.at(column)));
    m_pModel->horizontalHeaderItem(ColumnTime)->setTextAlignment(CentredAlignment);
    // One current row, visibly marked, is what the Delete key and the row menu act on.
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    for (int column = ColumnFile; column <= ColumnMachinePath; ++column)
        m_pHeader->setSectionResizeMode(column, QHeaderView::Interactive);
    m_pHeader->setSectionResizeMode(ColumnTime, QHeaderView::Stretch);
    m_pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    // Starting and pausing every transfer is not offered; only clearing the list is.
    m_pUi->m_btnAllStart->hide();
    m_pUi->m_btnAllPause->hide();
    m_pUi->m_btnClose->hide();

    m_pUi->m_labelTitleName->setFont(FontCnMedium_15);
    view->setFont(FontCnMedium_15);
    m_pHeader->setFont(FontCnMedium_15);
    m_pUi->m_btnAllStart->setFont(FontCn_13);
    m_pUi->m_btnAllPause->setFont(FontCn_13);
    m_pUi->m_btnAllClear->setFont(FontCn_13);
    view->viewport()->installEventFilter(this);
    view->installEventFilter(this);
    SetUpRowMenu();
}

void TransList::SetUpRowMenu()
{
    QTableView* view = m_pUi->m_tableView;
    m_pRowMenu = new QMenu(this);
    m_pActionCancel = m_pRowMenu->addAction(tr("取消传输"), this, &TransList::CancelCurrentRow);
    m_pActionCancel->setShortcut(QKeySequence(Qt::Key_Delete));
    m_pActionRetry = m_pRowMenu->addAction(tr("重新传输"), this, &TransList::RetryCurrentRow);
    m_pActionOpenFolder = m_pRowMenu->addAction(tr("打开所在文件夹"), this, &TransList::OpenCurrentFolder);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this, &TransList::ShowRowMenu);
}

void TransList::ShowRowMenu(const QPoint& pos)
{
    QTableView* view = m_pUi->m_tableView;
    const QModelIndex index = view->indexAt(pos);
    if (!index.isValid())
        return;
    view->setCurrentIndex(index);
    QString strKey;
    const TanslateInfo info = CurrentInfo(&strKey);
    m_pActionCancel->setEnabled(TanslateInfo::IsActive(info.state));
    m_pActionRetry->setEnabled(TanslateInfo::IsRetryable(info.state));
    m_pActionOpenFolder->setEnabled(!info.localPath.isEmpty());
    // popup, not exec: the menu must not run a nested loop under the list's slots.
    m_pRowMenu->popup(view->viewport()->mapToGlobal(pos));
}

TanslateInfo TransList::CurrentInfo(QString* strKey)
{
    ShowPending();
    const QModelIndex current = m_pUi->m_tableView->currentIndex();
    *strKey = current.isValid() ? KeyOfRow(current.row()) : QString();
    if (strKey->isEmpty()) {
        TanslateInfo none;
        none.state = TanslateInfo::StateFailed;
        return none;
    }
    return m_pModel->item(current.row(), ColumnProgress)->data(CProgressDelegate::InfoRole).value<TanslateInfo>();
}

void TransList::CancelCurrentRow()
{
    QString strKey;
    if (TanslateInfo::IsActive(CurrentInfo(&strKey).state) && !strKey.isEmpty())
        emit SignalCancelTransfer(strKey);
}

void TransList::RetryCurrentRow()
{
    QString strKey;
    if (TanslateInfo::IsRetryable(CurrentInfo(&strKey).state) && !strKey.isEmpty())
        emit SignalRestartTransfer(strKey);
}

void TransList::OpenCurrentFolder()
{
    QString strKey;
    const TanslateInfo info = CurrentInfo(&strKey);
    if (!info.localPath.isEmpty())
        emit SignalOpenFolder(QFileInfo(info.localPath).absolutePath());
}

void TransList::SlotUpdateTransfer(const TanslateInfo& info, const QString& strKey)
{
    const qint64 iNow = m_clock();
    Shown shown;
    if (m_mapKeyRow.contains(strKey)) {
        shown = UpdatedRowShown(info, strKey, iNow);
    } else {
        shown = NewRowShown(info, iNow);
        // Every key has one row, shown or pending, and rows only go all together.
        m_mapKeyRow.insert(strKey, int(m_mapKeyRow.size()));
        qCDebug(lcWorkbench) << "row " << m_mapKeyRow.value(strKey);
    }
    m_mapKeyLastBytes.insert(strKey, qint64(info.doneSize));
    m_mapKeyLastTime.insert(strKey, iNow);
    const auto pending = m_hashPending.find(strKey);
    if (pending == m_hashPending.end()) {
        m_listPendingKeys.append(strKey);
        m_hashPending.insert(strKey, shown);
    } else {
        shown.bNewRow = pending->bNewRow;
        *pending = shown;
    }
    if (!m_frameTimer.isActive())
        m_frameTimer.start();
}

TransList::Shown TransList::NewRowShown(const TanslateInfo& info, qint64 iNow) const
{
    Shown shown;
    shown.info = info;
    shown.bNewRow = true;
    shown.strSpeed = info.state == TanslateInfo::StateWaiting ? SpeedTextOf(info, 0) : QStringLiteral("0 KB/s");
    shown.strTimeLeft = QStringLiteral("0 s");
    shown.strTime =
        info.state == TanslateInfo::StateSucceeded ? CompletionTimeText(iNow) : StateTimeText(info, shown.strTimeLeft);
    return shown;
}

TransList::Shown TransList::UpdatedRowShown(const TanslateInfo& info, const QString& strKey, qint64 iNow) const
{
    const qint64 iLastBytes = m_mapKeyLastBytes.value(strKey);
    const qint64 iLastTime = m_mapKeyLastTime.value(strKey);

    // Whole seconds only: reports less than a second apart deliberately show no speed.
    double dSpeed = 0;
    qint64 iTimeLeft = 0;
    if (iLastTime >= 1 && iNow > iLastTime) {
        const auto iSeconds = qint64((iNow - iLastTime) / 1000.0);
        const auto iDelta = qint64(info.doneSize - iLastBytes);
        if (iSeconds > 0) {
            dSpeed = double(iDelta / iSeconds);
            if (dSpeed > 0 && info.totalSize > info.doneSize)
                iTimeLeft = qint64((info.totalSize - info.doneSize) / dSpeed);
        }
    }
    Shown shown;
    shown.info = info;
    shown.strSpeed = SpeedTextOf(info, dSpeed);
    shown.strTimeLeft = TimeLeftText(iTimeLeft);
    if (info.state != TanslateInfo::StateSucceeded) {
        shown.strTime = StateTimeText(info, shown.strTimeLeft);
    } else {
        // The same words for both directions, as the host log has always had them.
        CDebugLog::AddLog(QStringLiteral("上传文件到机床完成：%1").arg(info.fileName));
        shown.strTime = CompletionTimeText(iNow);
    }
    return shown;
}

void TransList::ShowPending()
{
    m_frameTimer.stop();
    if (m_listPendingKeys.isEmpty())
        return;
    bool bAdded = false;
    for (const QString& strKey : std::as_const(m_listPendingKeys)) {
        const Shown& shown = m_hashPending[strKey];
        if (shown.bNewRow)
            AppendRow(shown);
        else
            ShowInRow(m_mapKeyRow.value(strKey), shown);
        bAdded = bAdded || shown.bNewRow;
    }
    m_listPendingKeys.clear();
    m_hashPending.clear();
    if (bAdded)
        m_pUi->m_tableView->scrollTo(m_pModel->index(m_pModel->rowCount() - 1, ColumnFile));
}

void TransList::ShowInRow(int row, const Shown& shown)
{
    SetTextAndToolTip(m_pModel->item(row, ColumnFile), shown.info.fileName);
    QStandardItem* progress = m_pModel->item(row, ColumnProgress);
    // The report last: it changes with every report, and whoever watches it finds the texts of the
    // same report already in place.
    progress->setData(shown.strSpeed, CProgressDelegate::SpeedTextRole);
    progress->setData(shown.strTimeLeft, CProgressDelegate::TimeLeftTextRole);
    progress->setData(QVariant::fromValue(shown.info), CProgressDelegate::InfoRole);
    SetTextAndToolTip(m_pModel->item(row, ColumnMachinePath), shown.info.machinePath);
    QStandardItem* time = m_pModel->item(row, ColumnTime);
    if (shown.info.state == TanslateInfo::StateSucceeded)
        SetTextAndToolTip(time, shown.strTime);
    else
        time->setText(shown.strTime);
    time->setTextAlignment(CentredAlignment);
}

void TransList::AppendRow(const Shown& shown)
{
    const int row = m_pModel->rowCount();
    m_pHeader->setFixedHeight(HeaderHeight);
    QStandardItem* file = MakeItem(shown.info.fileName, true);
    file->setIcon(shown.info.direction ? m_iconDownload : m_iconUpload);
    QStandardItem* progress = MakeItem(QString(), false);
    progress->setData(QVariant::fromValue(shown.info), CProgressDelegate::InfoRole);
    progress->setData(shown.strSpeed, CProgressDelegate::SpeedTextRole);
    progress->setData(shown.strTimeLeft, CProgressDelegate::TimeLeftTextRole);
    QStandardItem* machinePath = MakeItem(shown.info.machinePath, true);
    QStandardItem* time = MakeItem(shown.strTime, true);
    time->setTextAlignment(CentredAlignment);
    m_pModel->appendRow({file, progress, machinePath, time});

    QTableView* view = m_pUi->m_tableView;
    view->setRowHeight(row, RowHeight);
    view->setRowHeight(0, RowHeight);
}

void TransList::ClearList()
{
    m_frameTimer.stop();
    m_listPendingKeys.clear();
    m_hashPending.clear();
    m_pModel->removeRows(0, m_pModel->rowCount());
    m_mapKeyRow.clear();
    m_mapKeyLastBytes.clear();
    m_mapKeyLastTime.clear();
}

void TransList::on_m_btnAllClear_clicked()
{
    ClearList();
}

void TransList::OnRestartClicked(const QModelIndex& index)
{
    const QString strKey = KeyOfRow(index.row());
    if (!strKey.isEmpty())
        emit SignalRestartTransfer(strKey);
}

void TransList::resizeEvent(QResizeEvent* event)
{
    FitColumnsToViewport();
    QWidget::resizeEvent(event);
}

bool TransList::eventFilter(QObject* watched, QEvent* event)
{
    // The viewport also changes width without the list being resized: when the list is first
    // shown (children get their size after the parent) and when the vertical scroll bar comes or goes.
    if (watched == m_pUi->m_tableView->viewport() && event->type() == QEvent::Resize)
        FitColumnsToViewport();
    if (watched == m_pUi->m_tableView && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        CancelCurrentRow();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void TransList::FitColumnsToViewport()
{
    QHeaderView* header = m_pUi->m_tableView->horizontalHeader();
    const int w = m_pUi->m_tableView->viewport()->width();
    if (header->count() != ColumnCount || w < 1)
        return;
    const int iMaxSize = (w - 120) / 3;
    header->setMaximumSectionSize(iMaxSize);
    const int iSize = std::max(std::min(iMaxSize, w / 4), 140);
    for (int column = 0; column < ColumnCount; ++column)
        header->resizeSection(column, iSize);
}
