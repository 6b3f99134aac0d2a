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
    m_scrollTimer.setSingleShot(true);
    m_scrollTimer.setInterval(FrameMs);
    connect(&m_scrollTimer, &QTimer::timeout, m_pUi->tableView, &QAbstractItemView::scrollToBottom);

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
    connect(m_pUi->pushButton, &QPushButton::clicked, m_pLogModel, &TransLogModel::ClearLog);

    view->installEventFilter(this);
}

TransInfo::~TransInfo()
{
    delete m_pUi;
}

QTableView* TransInfo::TableView() const
{
    return m_pUi->tableView;
}

void TransInfo::AddLog(const QString& strMessage, const QColor& color)
{
    m_pLogModel->AddLog(strMessage, color);
    // Scrolling lays the view out: once per frame, however many lines many small files bring.
    if (!m_scrollTimer.isActive())
        m_scrollTimer.start();
}

bool TransInfo::eventFilter(QObject* watched, QEvent* event)
{
    // A hidden view scrolls against a stale size; once shown and laid out again, it catches up.
    if (watched == m_pUi->tableView && (event->type() == QEvent::Show || event->type() == QEvent::Resize))
        QTimer::singleShot(0, m_pUi->tableView, &QAbstractItemView::scrollToBottom);
    return QWidget::eventFilter(watched, event);
}
