#include "MachineStatusWidget.h"

#include "CModule3DView.h"
#include "CamBaseTextHelper.h"
#include "CamBaseToolBitHelper.h"
#include "KorvFonts.h"
#include "MachineStatusCoordTableWidget.h"
#include "MachineStatusProgramPanel.h"
#include "MachineStatusRingGauge.h"
#include "ui_MachineStatusWidget.h"

#include <QButtonGroup>
#include <QDebug>
#include <QHeaderView>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>
#include <algorithm>
#include <cmath>

namespace {
constexpr int GaugeMax = 120;
constexpr int OverlayMargin = 8;

const char* const PageStyle = R"(
#MachineStatusWidget{background:#eef1f0;}
#widgetHeader,#widgetSpeedCard,#widgetPosCard,#widgetLoadCard,#widgetToolCard,#widgetProgramCard{
  background:#ffffff;border:1px solid #dfe4e2;border-radius:6px;}
#widgetHeader QLabel,#widgetSpeedCard QLabel,#widgetPosCard QLabel,#widgetLoadCard QLabel,#widgetToolCard QLabel{
  border:none;background:transparent;}
#widgetCncSim{background:#f7f9f8;border:1px solid #dfe4e2;border-radius:6px;}
QLabel#LabelSN{color:#333333;}
QLabel#labelSpeedTitle,QLabel#labelPosTitle,QLabel#labelLoadTitle,QLabel#labelToolTitle{color:#333333;}
QLabel#labelDeviceFCaption,QLabel#labelDeviceSCaption,QLabel#labelTemperatureCaption,QLabel#labelColAxis,
QLabel#labelColPos,QLabel#labelColDtg,QLabel#labelColUnit,QLabel#labelDiameterCaption,QLabel#labelLengthCaption,
QLabel#labelRadiusCaption{color:#888888;}
QLabel#DeviceFValue,QLabel#DeviceSValue{color:#222222;}
QLabel#DeviceFUnit,QLabel#DeviceSUnit,QLabel#CutterLabelUnit,QLabel#CutterLengthUnit,QLabel#CutterRadiusUnit{color:#888888;}
QLabel#LabelTemperature{color:#e67e22;}
QLabel#CutterLabelNumber{color:#17a061;}
QLabel#CutterLabelImage{background:#f3f5f4;border:1px solid #e4e8e6;border-radius:4px;}
#widgetTime{background:rgba(255,255,255,225);border:1px solid #dfe4e2;border-radius:13px;}
#widgetTime QLabel{background:transparent;border:none;color:#555555;}
QLabel#LabelSNTime{color:#17a061;}
QPushButton#BtnCNCStatus{border:none;border-radius:14px;min-height:28px;padding:0px 16px;color:#ffffff;background:#999999;}
QPushButton#BtnCNCStatus[status="running"]{background:#17a061;}
QPushButton#BtnCNCStatus[status="error"]{background:#e53b32;}
QPushButton#BtnCNCStatus[status="forbid"]{background:#e53b32;}
QPushButton#BtnCNCStatus[status="waiting"]{background:#f69e3b;}
QPushButton#BtnCNCStatus[status="offline"]{background:#999999;}
QPushButton#BtnCNCStatus[status="stale"]{background:#6b6b6b;}
QLabel#LabelAlarm{background:#fdecea;border:1px solid #f3b7b2;border-radius:6px;color:#c0392b;padding:8px 14px;}
#BtnStart,#BtnStop,#BtnReset{border-radius:6px;min-height:34px;}
#BtnStart{background:#17a061;} #BtnStart:hover{background:#13884f;}
#BtnStop{background:#e53b32;} #BtnStop:hover{background:#c9302a;}
#BtnReset{background:#f69e3b;} #BtnReset:hover{background:#dd8a2c;}
#BtnStart QLabel,#BtnStop QLabel,#BtnReset QLabel{color:#ffffff;background:transparent;border:none;}
QPushButton#BtnMachineSystem,QPushButton#BtnWorkSystem{border:1px solid #d6dbd9;background:#ffffff;color:#666666;padding:4px 12px;}
QPushButton#BtnMachineSystem{border-top-left-radius:4px;border-bottom-left-radius:4px;}
QPushButton#BtnWorkSystem{border-left:none;border-top-right-radius:4px;border-bottom-right-radius:4px;}
QPushButton#BtnMachineSystem:checked,QPushButton#BtnWorkSystem:checked{background:#17a061;border-color:#17a061;color:#ffffff;}
QTableWidget{border:none;background:transparent;}
QProgressBar{border:none;border-radius:4px;background:#e9edeb;}
QProgressBar::chunk{border-radius:4px;background:qlineargradient(x1:0,y1:0,x2:1,y2:0,stop:0 #27ae60,stop:1 #2ecc71);}
)";

struct AxisColumn
{
    double Pose6Dof::*member;
    const char* unit;
};
// B is never shown: these machines have no B axis.
const AxisColumn AxisRows[] = {
    {&Pose6Dof::x, "mm"}, {&Pose6Dof::y, "mm"}, {&Pose6Dof::z, "mm"}, {&Pose6Dof::a, "deg"}, {&Pose6Dof::c, "deg"}};

const QStringList& AxisTexts()
{
    static const QStringList texts = {QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("Z"),
                                      QStringLiteral("A"), QStringLiteral("C")};
    return texts;
}

void SetCell(QTableWidget* table, int row, int column, const QString& text)
{
    QTableWidgetItem* item = table->item(row, column);
    if (!item) {
        item = new QTableWidgetItem;
        table->setItem(row, column, item);
    }
    if (item->text() == text)
        return;
    item->setText(text);
    item->setToolTip(text);
}

int RoundHalfAway(double value)
{
    return int(std::lround(value));
}
} // namespace

MachineStatusWidget::MachineStatusWidget(QWidget* parent)
    : QWidget(parent), m_pUi(new Ui::MachineStatusWidget), m_pStaleTimer(new QTimer(this))
{
    m_pUi->setupUi(this);
    setStyleSheet(QString::fromLatin1(PageStyle));
    // On a small screen the cards scroll instead of pushing the window past the screen's bottom.
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scrollAreaBody"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    delete layout()->replaceWidget(m_pUi->widgetBody, scroll);
    scroll->setWidget(m_pUi->widgetBody);

    // 1. Fonts and the run-time pill, whose English text is longer.
    m_bChinese = CamBaseTextHelper::instance()->AppInChineseEnvironment();
    SetUpFonts();
    m_pUi->widgetTime->setFixedWidth(m_bChinese ? 160 : 180);
    m_pUi->BtnCNCStatus->setIconSize(QSize(14, 14));

    // 2. Full gauges; the offline display at the end brings them back to 0.
    m_pUi->DeviceFRing->SetValue(GaugeMax);
    m_pUi->DeviceSRing->SetValue(GaugeMax);

    // 3. Load bars in tenths of a percent.
    m_listLoadBars = {m_pUi->ProBarMain, m_pUi->ProBarX, m_pUi->ProBarY,
                      m_pUi->ProBarZ,    m_pUi->ProBarA, m_pUi->ProBarC};
    m_listLoadLabels = {m_pUi->LabelValueMain, m_pUi->LabelValueX, m_pUi->LabelValueY,
                        m_pUi->LabelValueZ,    m_pUi->LabelValueA, m_pUi->LabelValueC};
    for (QProgressBar* bar : std::as_const(m_listLoadBars)) {
        bar->setTextVisible(false);
        bar->setRange(0, 1000);
        bar->setFixedHeight(10);
    }

    // 4. The program panel.
    m_pProgramPanel = new MachineStatusProgramPanel(m_pUi->widgetProgram);
    m_pUi->widgetProgram->layout()->addWidget(m_pProgramPanel);
    connect(m_pProgramPanel, &MachineStatusProgramPanel::SignalLoadProgramRequested, this,
            &MachineStatusWidget::signalLoadProgramRequested);

    // 5. Machine or work coordinates.
    m_pCoordGroup = new QButtonGroup(this);
    m_pCoordGroup->setExclusive(true);
    m_pCoordGroup->addButton(m_pUi->BtnMachineSystem, 0);
    m_pCoordGroup->addButton(m_pUi->BtnWorkSystem, 1);
    m_pUi->BtnMachineSystem->setChecked(true);
    m_pUi->stackedWidget_2->setCurrentIndex(0);
    connect(m_pCoordGroup, &QButtonGroup::idClicked, m_pUi->stackedWidget_2, &QStackedWidget::setCurrentIndex);

    // 6. The position header's caption and switch sit on the left, vertically centred.
    m_pUi->layoutPosHeader->setAlignment(m_pUi->labelPosTitle, Qt::AlignLeft | Qt::AlignVCenter);
    m_pUi->layoutPosColumns->setAlignment(m_pUi->labelColAxis, Qt::AlignLeft | Qt::AlignVCenter);

    // 7. Coordinate tables.
    SetUpTable(m_pUi->tableWidgetPos);
    SetUpTable(m_pUi->tableWidgetPosWork);

    // 8. Commands: every click lands on the button widget itself.
    SetUpCommand(m_pUi->BtnStart, m_pUi->labelStartIcon, m_pUi->labelStartText, QStyle::SP_MediaPlay);
    SetUpCommand(m_pUi->BtnStop, m_pUi->labelStopIcon, m_pUi->labelStopText, QStyle::SP_MediaStop);
    SetUpCommand(m_pUi->BtnReset, m_pUi->labelResetIcon, m_pUi->labelResetText, QStyle::SP_BrowserReload);
    m_pUi->labelMachineIcon->setPixmap(QPixmap(QStringLiteral(":/icon/filepanel/ico_machine.png"))
                                           .scaled(22, 22, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    m_pUi->LabelAlarm->hide();

    // 9.-11. The 3D view, its overlays, the machine model and the default stock.
    SetUp3DView();

    m_pStaleTimer->setSingleShot(true);
    connect(m_pStaleTimer, &QTimer::timeout, this, &MachineStatusWidget::ShowStale);

    // 12.
    ShowOffline();
}

MachineStatusWidget::~MachineStatusWidget()
{
    delete m_pUi;
}

void MachineStatusWidget::SetUpFonts()
{
    m_pUi->LabelSN->setFont(FontCnBold_16);
    for (QLabel* title : {m_pUi->labelSpeedTitle, m_pUi->labelPosTitle, m_pUi->labelLoadTitle, m_pUi->labelToolTitle})
        title->setFont(FontCnBold_15);
    m_pUi->DeviceFValue->setFont(FontCnBold_20);
    m_pUi->DeviceSValue->setFont(FontCnBold_20);
    m_pUi->LabelTemperature->setFont(FontCnBold_16);
    m_pUi->CutterLabelNumber->setFont(FontCnBold_20);
    m_pUi->CutterLabelType->setFont(FontCnBold_14);
    for (QLabel* value : {m_pUi->CutterLabelValue, m_pUi->CutterLengthValue, m_pUi->CutterRadiusValue})
        value->setFont(FontCnBold_14);
    for (QLabel* label :
         {m_pUi->DeviceFUnit, m_pUi->DeviceSUnit, m_pUi->CutterLabelUnit, m_pUi->CutterLengthUnit,
          m_pUi->CutterRadiusUnit, m_pUi->labelColAxis, m_pUi->labelColPos, m_pUi->labelColDtg, m_pUi->labelColUnit})
        label->setFont(FontCnMedium_12);
    const QFont& caption = m_bChinese ? FontCnMedium_13 : FontCnMedium_11;
    for (QLabel* label :
         {m_pUi->labelDeviceFCaption, m_pUi->labelDeviceSCaption, m_pUi->labelTemperatureCaption,
          m_pUi->labelDiameterCaption, m_pUi->labelLengthCaption, m_pUi->labelRadiusCaption, m_pUi->label_63})
        label->setFont(caption);
    m_pUi->LabelSNTime->setFont(FontCnBold_14);
    m_pUi->BtnCNCStatus->setFont(FontCnBold_14);
    m_pUi->LabelAlarm->setFont(FontCnBold_15);
    // The command words are longer in English.
    for (QLabel* label : {m_pUi->labelStartText, m_pUi->labelStopText, m_pUi->labelResetText})
        label->setFont(m_bChinese ? FontCnMedium_16 : FontCnMedium_14);
    m_pUi->BtnMachineSystem->setFont(FontCnMedium_13);
    m_pUi->BtnWorkSystem->setFont(FontCnMedium_13);
    for (int i = 0; i < m_pUi->widgetLoads->layout()->count(); ++i) {
        if (auto* label = qobject_cast<QLabel*>(m_pUi->widgetLoads->layout()->itemAt(i)->widget()))
            label->setFont(label->objectName().startsWith(QLatin1String("LabelValue")) ? FontCnBold_13
                                                                                       : FontCnMedium_13);
    }
}

void MachineStatusWidget::SetUpTable(QTableWidget* table)
{
    table->setRowCount(5);
    table->setColumnCount(4);
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setFocusPolicy(Qt::NoFocus);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    if (auto* coord = qobject_cast<MachineStatusCoordTableWidget*>(table))
        coord->SetColumnRatios({2, 3, 3, 1});
    const struct
    {
        QColor color;
        Qt::Alignment alignment;
        const QFont* font;
    } columns[] = {{QColor(0xd3, 0x3e, 0x36), Qt::AlignLeft | Qt::AlignVCenter, &FontCnBold_20},
                   {QColor(0x33, 0x33, 0x33), Qt::AlignRight | Qt::AlignVCenter, &FontCnBold_14},
                   {QColor(0x33, 0x33, 0x33), Qt::AlignRight | Qt::AlignVCenter, &FontCnBold_14},
                   {QColor(0x66, 0x66, 0x66), Qt::AlignRight | Qt::AlignVCenter, &FontCnMedium_13}};
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 4; ++column) {
            auto* item = new QTableWidgetItem(column == 0 ? AxisTexts().at(row) : QString());
            item->setForeground(columns[column].color);
            item->setTextAlignment(columns[column].alignment);
            item->setFont(*columns[column].font);
            table->setItem(row, column, item);
        }
    }
}

void MachineStatusWidget::SetUpCommand(QWidget* button, QLabel* icon, QLabel* text, int standardIcon)
{
    icon->setPixmap(style()->standardIcon(QStyle::StandardPixmap(standardIcon)).pixmap(16, 16));
    button->installEventFilter(this);
    button->setAttribute(Qt::WA_StyledBackground, true);
    icon->setAttribute(Qt::WA_TransparentForMouseEvents, true);
    text->setAttribute(Qt::WA_TransparentForMouseEvents, true);
}

void MachineStatusWidget::SetUp3DView()
{
    QWidget* container = m_pUi->widgetCncSim;
    m_pView3D = new CModule3DView(container);
    container->layout()->addWidget(m_pView3D);
    m_pView3D->SetViewCubeVisible(false);
    for (QWidget* overlay : {static_cast<QWidget*>(m_pUi->BtnCNCStatus), m_pUi->widgetTime}) {
        overlay->setParent(container);
        overlay->raise();
        overlay->show();
    }
    PlaceOverlays();
    m_pView3D->LoadMachine(CamBaseTextHelper::instance()->GetLocalResourcePath() +
                           QStringLiteral("/MachineModel/config/Config3D.ini"));
    QTimer::singleShot(300, this, [this]() {
        if (!m_pView3D->GetMachineReady())
            return;
        Struct3DStockParameter stock;
        stock.dSizeX = 50;
        stock.dSizeY = 50;
        stock.dSizeZ = 75;
        stock.dPosX = -67.848;
        stock.dPosY = -73.0;
        stock.dPosZ = -40.0;
        m_pView3D->CreateStock(stock, true);
    });
}

void MachineStatusWidget::PlaceOverlays()
{
    QWidget* container = m_pUi->widgetCncSim;
    m_pUi->widgetTime->move(OverlayMargin, OverlayMargin);
    m_pUi->BtnCNCStatus->adjustSize();
    m_pUi->BtnCNCStatus->move(container->width() - m_pUi->BtnCNCStatus->width() - OverlayMargin, OverlayMargin);
}

void MachineStatusWidget::resizeEvent(QResizeEvent* event)
{
    PlaceOverlays();
    QWidget::resizeEvent(event);
}

void MachineStatusWidget::showEvent(QShowEvent* event)
{
    PlaceOverlays();
    QWidget::showEvent(event);
}

bool MachineStatusWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        if (watched == m_pUi->BtnStart) {
            qDebug() << "start";
            Q_EMIT signalStartRequested();
            return true;
        }
        if (watched == m_pUi->BtnStop) {
            qDebug() << "stop";
            Q_EMIT signalStopRequested();
            return true;
        }
        if (watched == m_pUi->BtnReset) {
            qDebug() << "reset";
            Q_EMIT signalResetRequested();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

QString MachineStatusWidget::StatusKey(int status)
{
    static const QHash<int, QString> keys = {{0, QStringLiteral("offline")},
                                             {1, QStringLiteral("running")},
                                             {2, QStringLiteral("error")},
                                             {3, QStringLiteral("waiting")},
                                             {4, QStringLiteral("forbid")}};
    return keys.value(status, QStringLiteral("offline"));
}

const QHash<QString, MachineStatusWidget::StatusRow>& MachineStatusWidget::StatusRows()
{
    // Forbidden shares the error colour on purpose; its icon is the outline one.
    static const QHash<QString, StatusRow> rows = {
        {QStringLiteral("offline"),
         {tr("离线"), QStringLiteral("#999999"), QStringLiteral(":/icon/MachineStatus/ico_machine_status_.png")}},
        {QStringLiteral("running"),
         {tr("运行中"), QStringLiteral("#17a061"), QStringLiteral(":/icon/MachineStatus/ico_machine_status_run.png")}},
        {QStringLiteral("error"),
         {tr("异常"), QStringLiteral("#e53b32"), QStringLiteral(":/icon/MachineStatus/ico_machine_status_alert.png")}},
        {QStringLiteral("waiting"),
         {tr("等待"), QStringLiteral("#f69e3b"), QStringLiteral(":/icon/MachineStatus/ico_machine_status_wait.png")}},
        {QStringLiteral("forbid"),
         {tr("禁止"), QStringLiteral("#e53b32"),
          QStringLiteral(":/icon/MachineStatus/ico_machine_status_outline.png")}},
    };
    return rows;
}

QString MachineStatusWidget::RunTimeText(int seconds)
{
    const int s = std::max(0, seconds);
    const int hours = s / 3600;
    const int minutes = (s - 3600 * hours) / 60;
    if (hours < 1)
        return tr("%1分%2秒").arg(minutes).arg(s % 60, 2, 10, QLatin1Char('0'));
    return tr("%1时%2分%3秒").arg(hours).arg(minutes, 2, 10, QLatin1Char('0')).arg(s % 60, 2, 10, QLatin1Char('0'));
}

void MachineStatusWidget::SetBadge(const QString& key)
{
    const auto it = StatusRows().constFind(key);
    if (it == StatusRows().constEnd())
        return;
    SetBadgeLook(key, it->strText, it->strIcon);
}

void MachineStatusWidget::SetBadgeLook(const QString& key, const QString& text, const QString& icon)
{
    QPushButton* badge = m_pUi->BtnCNCStatus;
    if (key == m_strBadgeKey && badge->text() == text)
        return;
    m_strBadgeKey = key;
    badge->setProperty("status", key);
    badge->setText(text);
    badge->setIcon(QIcon(icon));
    // Re-polish only on a change: records come every second and mostly keep their state.
    badge->style()->unpolish(badge);
    badge->style()->polish(badge);
    PlaceOverlays();
}

void MachineStatusWidget::StartStaleWatch(const QString& sn, int milliseconds)
{
    m_strSn = sn;
    m_pUi->LabelSN->setText(QStringLiteral("SN:%1").arg(sn));
    m_lastRecordTime = QDateTime::currentDateTime();
    m_pStaleTimer->setInterval(std::max(1, milliseconds));
    m_pStaleTimer->start();
    m_bStaleWatch = true;
}

void MachineStatusWidget::ShowStale()
{
    m_bStale = true;
    const QString since =
        m_lastRecordTime.isValid() ? m_lastRecordTime.toString(QStringLiteral("hh:mm:ss")) : QString();
    SetBadgeLook(QStringLiteral("stale"), tr("数据已过期 %1").arg(since).trimmed(),
                 QStringLiteral(":/icon/MachineStatus/ico_machine_status_outline.png"));
    m_pUi->BtnCNCStatus->setToolTip(tr("自 %1 起未收到机床数据").arg(since));
}

void MachineStatusWidget::SetRealTimeData(const StructRealTimeData& record)
{
    // A failed delivery does not prove the machine is answering: it neither refreshes the
    // data's age nor clears the stale look, and it carries no values worth showing.
    if (record.sn.isEmpty())
        return;
    m_bStale = false;
    m_lastRecordTime = QDateTime::currentDateTime();
    m_pUi->BtnCNCStatus->setToolTip(QString());
    // Re-armed after every answer, also after a stale spell: the next silence must show too.
    if (m_bStaleWatch)
        m_pStaleTimer->start();
    ShowRecord(record);
}

void MachineStatusWidget::ShowRecord(const StructRealTimeData& record)
{
    m_pUi->LabelSN->setText(QStringLiteral("SN:%1").arg(m_strSn.isEmpty() ? record.sn : m_strSn));
    m_pUi->LabelSNTime->setText(RunTimeText(record.runTime));
    if (m_bStale)
        ShowStale();
    else
        SetBadge(StatusKey(record.status));

    m_pUi->DeviceFValue->setText(QString::number(double(record.feed), 'f', 2));
    m_pUi->DeviceFUnit->setText(QStringLiteral("mmpm"));
    m_pUi->DeviceSValue->setText(QString::number(double(record.spindleSpeed), 'f', 2));
    m_pUi->DeviceSUnit->setText(QStringLiteral("rpm"));
    m_pUi->LabelTemperature->setText(QStringLiteral("%1 °C").arg(RoundHalfAway(record.spindleTemp)));
    m_pUi->DeviceFRing->SetValue(std::clamp(record.feedRate, 0, GaugeMax));
    m_pUi->DeviceSRing->SetValue(std::clamp(record.spindleRate, 0, GaugeMax));

    SetCoordinateData(record);
    SetLoads(record.load);
    m_pProgramPanel->SetProgramInfo(record.program);
    m_pProgramPanel->SetCurrentLines(record.program.currentLines, record.program.curLine);
    SetTool(record.toolInfo);
    SetAlarm(record.status, record.alarm);
}

void MachineStatusWidget::SetCoordinateData(const StructRealTimeData& record)
{
    SetTable(m_pUi->tableWidgetPos, record.MCS, record.G53DTG);
    SetTable(m_pUi->tableWidgetPosWork, record.WCS, record.G5xDTG);
    if (m_pView3D && m_pView3D->GetMachineReady()) {
        Struct3DMotionData motion;
        motion.x = record.MCS.x;
        motion.y = record.MCS.y;
        motion.z = record.MCS.z;
        motion.a = record.MCS.a;
        motion.b = 0.0;
        motion.c = record.MCS.c;
        m_pView3D->SetMachinePos(motion);
    }
}

void MachineStatusWidget::SetTable(QTableWidget* table, const Pose6Dof& position, const Pose6Dof& toGo)
{
    for (int row = 0; row < 5; ++row) {
        const AxisColumn& axis = AxisRows[row];
        SetCell(table, row, 0, AxisTexts().at(row));
        SetCell(table, row, 1, QString::number(position.*axis.member, 'f', 4));
        SetCell(table, row, 2, QString::number(toGo.*axis.member, 'f', 4));
        SetCell(table, row, 3, QLatin1String(axis.unit));
    }
}

void MachineStatusWidget::SetLoads(const QList<double>& loads)
{
    qDebug() << "load size:" << loads.size();
    if (loads.size() < 6)
        return;
    auto show = [this](int bar, double percent) {
        // QProgressBar repaints at once on a visible change; let it join the next frame instead.
        QProgressBar* progress = m_listLoadBars.at(bar);
        progress->setUpdatesEnabled(false);
        progress->setValue(std::clamp(RoundHalfAway(percent * 10.0), 0, 1000));
        progress->setUpdatesEnabled(true);
        m_listLoadLabels.at(bar)->setText(QString::number(percent, 'f', 1) + QLatin1Char('%'));
    };
    for (int i = 0; i < 5; ++i)
        show(i, loads.at(i));
    // Entry 5 is B, which these machines do not have.
    if (loads.size() >= 7)
        show(5, loads.at(6));
}

void MachineStatusWidget::SetTool(const StructToolInfo& tool)
{
    if (tool.toolNo < 0) {
        qDebug() << "has not tool";
        m_pUi->CutterLabelNumber->setText(QStringLiteral("#--"));
        m_pUi->CutterLabelType->setText(QStringLiteral("----"));
        m_pUi->CutterLabelImage->clear();
        m_pUi->CutterLabelImage->setProperty("image", QString());
        m_pUi->CutterLabelValue->setText(QStringLiteral("0.0"));
        m_pUi->CutterLabelUnit->setText(QStringLiteral("mm"));
        m_pUi->CutterLengthValue->setText(QStringLiteral("0.0000"));
        m_pUi->CutterRadiusValue->setText(QStringLiteral("0.0000"));
    } else {
        qDebug() << "has tool";
        CamBaseToolBitHelper* helper = CamBaseToolBitHelper::instance();
        m_pUi->CutterLabelNumber->setText(QStringLiteral("#%1").arg(tool.toolNo));
        m_pUi->CutterLabelValue->setText(QString::number(tool.toolDiameter, 'f', 1));
        m_pUi->CutterLabelUnit->setText(QStringLiteral("mm"));
        m_pUi->CutterLabelType->setText(helper->GetToolNameByType(tool.toolType));
        const QString image = helper->GetToolManagementShowImageByType(tool.toolType);
        if (!image.isEmpty() && m_pUi->CutterLabelImage && m_pUi->CutterLabelImage->property("image") != image) {
            const QPixmap pixmap(image);
            // A failed load keeps the previous picture.
            if (!pixmap.isNull()) {
                m_pUi->CutterLabelImage->setPixmap(pixmap.scaled(m_pUi->CutterLabelImage->size() - QSize(6, 6),
                                                                 Qt::KeepAspectRatio, Qt::SmoothTransformation));
                m_pUi->CutterLabelImage->setProperty("image", image);
            }
        }
        m_pUi->CutterLengthValue->setText(QString::number(tool.toolLengthOffset, 'f', 4));
        m_pUi->CutterRadiusValue->setText(QString::number(tool.toolRadiusOffset, 'f', 4));
    }
    m_pUi->CutterLengthUnit->setText(QStringLiteral("mm"));
    m_pUi->CutterRadiusUnit->setText(QStringLiteral("mm"));
    // An empty picture frame says nothing: the block closes up without one.
    m_pUi->CutterLabelImage->setVisible(!m_pUi->CutterLabelImage->property("image").toString().isEmpty());
}

void MachineStatusWidget::SetAlarm(int status, const QString& alarm)
{
    const bool show = status == 2;
    if (show) {
        const QString text = alarm.isEmpty() ? tr("机床异常，请检查机床") : tr("报警：%1").arg(alarm);
        m_pUi->LabelAlarm->setText(text);
    }
    m_pUi->LabelAlarm->setVisible(show);
}

void MachineStatusWidget::ShowOffline()
{
    m_pStaleTimer->stop();
    m_bStaleWatch = false;
    m_bStale = false;
    m_strSn.clear();
    m_lastRecordTime = QDateTime();
    m_pUi->BtnCNCStatus->setToolTip(QString());
    m_pUi->LabelTemperature->setText(QStringLiteral("%1 °C").arg(QStringLiteral("-------")));
    StructRealTimeData empty;
    empty.load = QList<double>(7, 0.0);
    empty.toolInfo.toolNo = -1;
    ShowRecord(empty);
    SetBadge(QStringLiteral("offline"));
    m_pUi->LabelSN->setText(tr("设备未连接"));
}
