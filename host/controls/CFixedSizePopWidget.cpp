#include "CFixedSizePopWidget.h"

#include "ControlsStyle.h"
#include "KorvFonts.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

CFixedSizePopWidget::CFixedSizePopWidget(QWidget* parent) : QDialog(parent)
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    // Rounded corners need a transparent window behind the frame.
    setAttribute(Qt::WA_TranslucentBackground);
    setStyleSheet(ControlsStyle::PopupStyleSheet());

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("m_widgetFrame"));
    frame->setAttribute(Qt::WA_StyledBackground);
    outer->addWidget(frame);

    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(1, 1, 1, 1);
    frameLayout->setSpacing(0);

    m_pTitleWidget = new QWidget(frame);
    m_pTitleWidget->setObjectName(QStringLiteral("m_widgetTitle"));
    m_pTitleWidget->setAttribute(Qt::WA_StyledBackground);
    m_pTitleWidget->setFixedHeight(40);
    m_pTitleWidget->installEventFilter(this);
    auto* titleLayout = new QHBoxLayout(m_pTitleWidget);
    titleLayout->setContentsMargins(16, 0, 8, 0);
    m_pLabelTitle = new QLabel(m_pTitleWidget);
    m_pLabelTitle->setObjectName(QStringLiteral("m_labelTitle"));
    m_pLabelTitle->setFont(FontCnBold_14);
    m_pBtnClose = new QPushButton(QStringLiteral("\u00d7"), m_pTitleWidget);
    m_pBtnClose->setObjectName(QStringLiteral("m_btnTitleClose"));
    m_pBtnClose->setFocusPolicy(Qt::NoFocus);
    m_pBtnClose->setAutoDefault(false);
    connect(m_pBtnClose, &QPushButton::clicked, this, &QDialog::reject);
    titleLayout->addWidget(m_pLabelTitle);
    titleLayout->addStretch();
    titleLayout->addWidget(m_pBtnClose);
    frameLayout->addWidget(m_pTitleWidget);

    auto* body = new QWidget(frame);
    m_pBodyLayout = new QVBoxLayout(body);
    m_pBodyLayout->setContentsMargins(20, 16, 20, 16);
    m_pBodyLayout->setSpacing(12);
    frameLayout->addWidget(body, 1);
}

void CFixedSizePopWidget::SetTitle(const QString& title)
{
    m_pLabelTitle->setText(title);
    setWindowTitle(title);
}

QString CFixedSizePopWidget::Title() const
{
    return m_pLabelTitle->text();
}

void CFixedSizePopWidget::SetPopSize(const QSize& size)
{
    m_sizePop = size;
    if (size.isValid())
        setFixedSize(size);
}

void CFixedSizePopWidget::SlotConfirm()
{
    accept();
}

void CFixedSizePopWidget::showEvent(QShowEvent* event)
{
    if (!m_sizePop.isValid())
        setFixedSize(sizeHint().expandedTo(minimumSizeHint()));
    // Placed once: a pop-up the user has dragged away stays where it was put.
    if (!m_bPlaced) {
        CentreOverParent();
        m_bPlaced = true;
    }
    QDialog::showEvent(event);
}

void CFixedSizePopWidget::CentreOverParent()
{
    const QWidget* anchor = parentWidget() ? parentWidget()->window() : QApplication::activeWindow();
    QRect area;
    if (anchor && anchor != this && anchor->isVisible())
        area = anchor->frameGeometry();
    else if (const QScreen* screen = QApplication::primaryScreen())
        area = screen->availableGeometry();
    if (area.isValid())
        move(area.center() - QPoint(width() / 2, height() / 2));
}

bool CFixedSizePopWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_pTitleWidget)
        return QDialog::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton) {
            m_bDragging = true;
            m_ptDragOffset = mouse->globalPosition().toPoint() - frameGeometry().topLeft();
            return true;
        }
        break;
    }
    case QEvent::MouseMove:
        if (m_bDragging) {
            move(static_cast<QMouseEvent*>(event)->globalPosition().toPoint() - m_ptDragOffset);
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        if (m_bDragging) {
            m_bDragging = false;
            return true;
        }
        break;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}
