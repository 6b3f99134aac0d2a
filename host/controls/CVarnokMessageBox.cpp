#include "CVarnokMessageBox.h"

#include "ControlsStyle.h"
#include "KorvFonts.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {
MsgBoxResponder& responder()
{
    static MsgBoxResponder function;
    return function;
}

int& autoCloseInterval()
{
    static int milliseconds = 3000;
    return milliseconds;
}

QPixmap iconPixmap(EnumMsgIcon icon, qreal ratio)
{
    const int side = 28;
    QColor colour;
    switch (icon) {
    case MsgIconInformation:
        colour = ControlsStyle::AccentColor();
        break;
    case MsgIconSuccess:
        colour = QColor(0x17, 0xa0, 0x61);
        break;
    case MsgIconFailure:
        colour = QColor(0xe5, 0x3b, 0x32);
        break;
    case MsgIconWarning:
        colour = QColor(0xf6, 0x9e, 0x3b);
        break;
    default:
        return {};
    }
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(0, 0, side, side));
    QPen pen(Qt::white, 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const qreal c = side / 2.0;
    switch (icon) {
    case MsgIconInformation:
        painter.drawLine(QPointF(c, c - 1), QPointF(c, c + 7));
        painter.drawPoint(QPointF(c, c - 7));
        break;
    case MsgIconWarning:
        painter.drawLine(QPointF(c, c - 7), QPointF(c, c + 1));
        painter.drawPoint(QPointF(c, c + 7));
        break;
    case MsgIconFailure:
        painter.drawLine(QPointF(c - 5.5, c - 5.5), QPointF(c + 5.5, c + 5.5));
        painter.drawLine(QPointF(c + 5.5, c - 5.5), QPointF(c - 5.5, c + 5.5));
        break;
    default: {
        QPainterPath tick(QPointF(c - 6.5, c + 0.5));
        tick.lineTo(c - 2, c + 5);
        tick.lineTo(c + 6.5, c - 4.5);
        painter.drawPath(tick);
        break;
    }
    }
    return pixmap;
}
} // namespace

CVarnokMessageBox::CVarnokMessageBox(QWidget* parent, const StructMsgBoxRequest& request) : CFixedSizePopWidget(parent)
{
    SetTitle(request.strTitle);

    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    if (request.eIcon != MsgIconNone) {
        auto* icon = new QLabel(this);
        icon->setObjectName(QStringLiteral("m_labelIcon"));
        icon->setPixmap(iconPixmap(request.eIcon, devicePixelRatioF()));
        icon->setFixedSize(28, 28);
        row->addWidget(icon, 0, Qt::AlignTop);
    }
    auto* text = new QLabel(request.strText, this);
    text->setObjectName(QStringLiteral("m_labelText"));
    text->setFont(FontCn_14);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setMinimumWidth(300);
    text->setMaximumWidth(420);
    text->setMinimumHeight(28);
    text->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    row->addWidget(text, 1);
    BodyLayout()->addLayout(row);

    if (request.bHasCheckBox) {
        m_pCheckBox = new QCheckBox(request.strCheckText, this);
        m_pCheckBox->setObjectName(QStringLiteral("m_checkBox"));
        m_pCheckBox->setFont(FontCn_13);
        m_pCheckBox->setChecked(request.bChecked);
        // Lined up with the text, not with the icon.
        auto* checkRow = new QHBoxLayout;
        if (request.eIcon != MsgIconNone)
            checkRow->addSpacing(28 + row->spacing());
        checkRow->addWidget(m_pCheckBox, 1);
        BodyLayout()->addLayout(checkRow);
    }

    BodyLayout()->addSpacing(4);
    m_pButtonLayout = new QHBoxLayout;
    m_pButtonLayout->setSpacing(10);
    m_pButtonLayout->addStretch();
    // Secondary answers first, the affirmative one last (right-most, highlighted).
    const int buttons = request.iButtons ? request.iButtons : int(MsgButtonConfirm);
    const bool bHasYes = buttons & MsgButtonYes;
    for (EnumMsgButtonFunction button :
         {MsgButtonIgnore, MsgButtonCancel, MsgButtonNo, MsgButtonYes, MsgButtonConfirm}) {
        if (buttons & button) {
            const bool bPrimary = button == MsgButtonYes || (button == MsgButtonConfirm && !bHasYes);
            AddButton(button, request, bPrimary);
        }
    }
    BodyLayout()->addLayout(m_pButtonLayout);

    if (request.bAutoClose) {
        m_pAutoCloseTimer = new QTimer(this);
        m_pAutoCloseTimer->setSingleShot(true);
        connect(m_pAutoCloseTimer, &QTimer::timeout, this, &QDialog::reject);
        m_pAutoCloseTimer->start(autoCloseInterval());
    }
}

void CVarnokMessageBox::AddButton(EnumMsgButtonFunction button, const StructMsgBoxRequest& request, bool bPrimary)
{
    auto* push = new QPushButton(ButtonText(button, request.mapButtonTexts), this);
    push->setObjectName(QStringLiteral("m_btnCode%1").arg(int(button)));
    push->setFont(FontCn_14);
    push->setDefault(bPrimary);
    push->setAutoDefault(bPrimary);
    // Focus starts on the highlighted answer, so Enter and Space both mean what is drawn.
    if (bPrimary)
        push->setFocus(Qt::OtherFocusReason);
    connect(push, &QPushButton::clicked, this, [this, button] {
        m_iResult = button;
        accept();
    });
    m_pButtonLayout->addWidget(push);
}

QString CVarnokMessageBox::ButtonText(EnumMsgButtonFunction button,
                                      const QMap<EnumMsgButtonFunction, QString>& buttonTexts)
{
    const QString given = buttonTexts.value(button);
    if (!given.isEmpty())
        return given;
    switch (button) {
    case MsgButtonConfirm:
        return tr("确定");
    case MsgButtonCancel:
        return tr("取消");
    case MsgButtonYes:
        return tr("是");
    case MsgButtonNo:
        return tr("否");
    case MsgButtonIgnore:
        return tr("忽略");
    }
    return {};
}

StructMsgBoxAnswer CVarnokMessageBox::Run(QWidget* parent, const StructMsgBoxRequest& request)
{
    if (responder())
        return responder()(request);
    CVarnokMessageBox box(parent, request);
    box.exec();
    StructMsgBoxAnswer answer;
    answer.iButton = box.m_iResult;
    answer.bChecked = box.m_pCheckBox && box.m_pCheckBox->isChecked();
    return answer;
}

namespace {
StructMsgBoxRequest MakeRequest(int buttons, EnumMsgIcon icon, const QString& title, const QString& text)
{
    StructMsgBoxRequest request;
    request.strTitle = title;
    request.strText = text;
    request.iButtons = buttons;
    request.eIcon = icon;
    return request;
}
} // namespace

int CVarnokMessageBox::ShowWindow(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title,
                                  const QString& text, const QMap<EnumMsgButtonFunction, QString>& buttonTexts)
{
    StructMsgBoxRequest request = MakeRequest(buttons, icon, title, text);
    request.mapButtonTexts = buttonTexts;
    return Run(parent, request).iButton;
}

QPair<int, bool> CVarnokMessageBox::ShowWindowWithCheckBox(QWidget* parent, int buttons, EnumMsgIcon icon,
                                                           const QString& title, const QString& text,
                                                           const QString& checkText, bool checked,
                                                           const QMap<EnumMsgButtonFunction, QString>& buttonTexts)
{
    StructMsgBoxRequest request = MakeRequest(buttons, icon, title, text);
    request.bHasCheckBox = true;
    request.strCheckText = checkText;
    request.bChecked = checked;
    request.mapButtonTexts = buttonTexts;
    const StructMsgBoxAnswer answer = Run(parent, request);
    return {answer.iButton, answer.bChecked};
}

int CVarnokMessageBox::ShowWindowAutoClose(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title,
                                           const QString& text)
{
    StructMsgBoxRequest request = MakeRequest(buttons, icon, title, text);
    request.bAutoClose = true;
    return Run(parent, request).iButton;
}

void CVarnokMessageBox::Open(QWidget* parent, const StructMsgBoxRequest& request,
                             std::function<void(const StructMsgBoxAnswer&)> onAnswer)
{
    if (responder()) {
        QObject* context = parent ? static_cast<QObject*>(parent) : QCoreApplication::instance();
        QTimer::singleShot(0, context, [request, onAnswer = std::move(onAnswer)]() {
            const StructMsgBoxAnswer answer = responder() ? responder()(request) : StructMsgBoxAnswer();
            if (onAnswer)
                onAnswer(answer);
        });
        return;
    }
    auto* box = new CVarnokMessageBox(parent, request);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QDialog::finished, box, [box, onAnswer = std::move(onAnswer)]() {
        StructMsgBoxAnswer answer;
        answer.iButton = box->m_iResult;
        answer.bChecked = box->m_pCheckBox && box->m_pCheckBox->isChecked();
        if (onAnswer)
            onAnswer(answer);
    });
    box->open();
}

void CVarnokMessageBox::Open(QWidget* parent, int buttons, EnumMsgIcon icon, const QString& title, const QString& text,
                             const QMap<EnumMsgButtonFunction, QString>& buttonTexts, std::function<void(int)> onAnswer)
{
    StructMsgBoxRequest request = MakeRequest(buttons, icon, title, text);
    request.mapButtonTexts = buttonTexts;
    Open(parent, request, [onAnswer = std::move(onAnswer)](const StructMsgBoxAnswer& answer) {
        if (onAnswer)
            onAnswer(answer.iButton);
    });
}

void CVarnokMessageBox::SetAutoCloseInterval(int milliseconds)
{
    autoCloseInterval() = qMax(0, milliseconds);
}

int CVarnokMessageBox::AutoCloseInterval()
{
    return autoCloseInterval();
}

void CVarnokMessageBox::SetTestResponder(MsgBoxResponder function)
{
    responder() = std::move(function);
}
