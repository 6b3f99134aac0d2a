#include "TransInfo.h"

#include "KorvFonts.h"
#include "TransLogModel.h"
#include "ui_TransInfo.h"

#include <QIcon>
#include <QPushButton>
#include <QTimer>

TransInfo::TransInfo(QWidget* parent) : QWidget(parent), m_pUi(new Ui::TransInfo)
{
    m_pUi->setupUi(this);
    m_pLogModel = new TransLogModel(this);
    m_frameTimer.setSingleShot(true);
    m_frameTimer.setInterval(FrameMs);
    connect(&m_frameTimer, &QTimer::timeout, this, &TransInfo::ShowPending);

    QTableView* view = m_pUi->tableView;
    m_pUi->iconLabel->hide();
    view->setFont(FontCnMedium_15);
    m_pUi->textLabel->setFont(FontCnMedium_15);
    view->setModel(m_pLogModel);
    view->horizontalHeader()->setSectionResizeMode(TransLogModel::ColumnTime, QHeaderView::Fixed);
    view->horizontalHeader()->resizeSection(TransLogModel::ColumnTime, 100);
    view->horizontalHeader()->setSectionResizeMode(TransLogModel::ColumnMessage, QHeaderView::Stretch);
    view->verticalHeader()->hide();
    view->horizontalHeader()->hide();
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setAlternatingRowColors(true);
    view->setSelectionMode(QAbstractItemView::NoSelection);

    // The header's square button empties the log.
    m_pUi->pushButton->setIcon(QIcon(QStringLiteral(":/icon/MachineStatus/ico_machine_status_files_del.png")));
    m_pUi->pushButton->setIconSize(QSize(14, 14));
    m_pUi->pushButton->setToolTip(tr("清空日志"));
    m_pUi->pushButton->setFlat(true);
    connect(m_pUi->pushButton, &QPushButton::clicked, this, [this] {
        m_frameTimer.stop();
        m_listPending.clear();
        m_pLogModel->ClearLog();
    });

    view->installEventFilter(this);
}

TransInfo::~TransInfo()
{
    delete m_pUi;
}

TransLogModel* TransInfo::LogModel()
{
    ShowPending();
    return m_pLogModel;
}

QTableView* TransInfo::TableView() const
{
    return m_pUi->tableView;
}

void TransInfo::AddLog(const QString& strMessage, const QColor& color)
{
    m_listPending.append({m_pLogModel->Now(), strMessage, color});
    if (!m_frameTimer.isActive())
        m_frameTimer.start();
}

void TransInfo::ShowPending()
{
    m_frameTimer.stop();
    if (m_listPending.isEmpty())
        return;
    m_pLogModel->AddLogs(m_listPending);
    m_listPending.clear();
    m_pUi->tableView->scrollToBottom();
}

bool TransInfo::eventFilter(QObject* watched, QEvent* event)
{
    // A hidden view scrolls against a stale size; once shown and laid out again, it catches up.
    if (watched == m_pUi->tableView && (event->type() == QEvent::Show || event->type() == QEvent::Resize))
        QTimer::singleShot(0, m_pUi->tableView, &QAbstractItemView::scrollToBottom);
    return QWidget::eventFilter(watched, event);
}
