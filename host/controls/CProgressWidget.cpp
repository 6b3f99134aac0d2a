#include "CProgressWidget.h"

#include "ControlsStyle.h"
#include "KorvFonts.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>

namespace {
ProgressResponder& responder()
{
    static ProgressResponder function;
    return function;
}
} // namespace

CProgressWidget::CProgressWidget(QWidget* parent, const QString& title, const QString& text)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint), m_strTitle(title), m_strText(text)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(320, 76);
    // Keeps the user's hands off the window whose work is running, without a modal loop.
    setWindowModality(parent ? Qt::WindowModal : Qt::ApplicationModal);
    m_pSpinTimer = new QTimer(this);
    m_pSpinTimer->setInterval(50);
    connect(m_pSpinTimer, &QTimer::timeout, this, [this] {
        m_iAngle = (m_iAngle + 30) % 360;
        update();
    });
}

QPointer<CProgressWidget> CProgressWidget::CreateAutoWidget(QString title, QString text)
{
    if (responder()) {
        // Hidden, so that nothing shows while a test answers, yet freeing it works as usual.
        QPointer<CProgressWidget> widget = new CProgressWidget(nullptr, title, text);
        responder()({StructProgressRequest::Create, title, text, false});
        return widget;
    }
    QWidget* anchor = QApplication::activeWindow();
    QPointer<CProgressWidget> widget = new CProgressWidget(anchor, title, text);
    const QRect area =
        anchor ? anchor->frameGeometry()
               : (QApplication::primaryScreen() ? QApplication::primaryScreen()->availableGeometry() : QRect());
    if (area.isValid())
        widget->move(area.center() - widget->rect().center());
    widget->m_pSpinTimer->start();
    widget->m_elapsedShown.start();
    widget->show();
    widget->raise();
    return widget;
}

void CProgressWidget::FreeAutoWidget(QPointer<CProgressWidget> widget, bool bImmediately)
{
    if (!widget || widget->m_bFreeing)
        return;
    widget->m_bFreeing = true;
    if (responder())
        responder()({StructProgressRequest::Free, widget->m_strTitle, widget->m_strText, bImmediately});
    const qint64 shown = widget->m_elapsedShown.isValid() ? widget->m_elapsedShown.elapsed() : MinimumVisibleMs;
    if (bImmediately || shown >= MinimumVisibleMs) {
        widget->hide();
        widget->deleteLater();
        return;
    }
    QTimer::singleShot(int(MinimumVisibleMs - shown), widget, [widget] {
        widget->hide();
        widget->deleteLater();
    });
}

void CProgressWidget::SetTestResponder(ProgressResponder function)
{
    responder() = std::move(function);
}

void CProgressWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(ControlsStyle::BorderColor());
    painter.setBrush(ControlsStyle::PanelColor());
    painter.drawRoundedRect(frame, 4, 4);

    const QRectF spinner(20, height() / 2.0 - 14, 28, 28);
    painter.setPen(QPen(QColor(0xe3, 0xef, 0xfa), 3.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(spinner);
    painter.setPen(QPen(ControlsStyle::AccentColor(), 3.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(spinner, -m_iAngle * 16, 100 * 16);

    const int left = 64;
    const int textWidth = width() - left - 16;
    painter.setPen(ControlsStyle::TextColor());
    painter.setFont(FontCnBold_14);
    painter.drawText(QRect(left, 14, textWidth, 22), Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(FontCnBold_14).elidedText(m_strTitle, Qt::ElideRight, textWidth));
    painter.setPen(QColor(0x66, 0x66, 0x66));
    painter.setFont(FontCn_13);
    painter.drawText(QRect(left, 40, textWidth, 22), Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(FontCn_13).elidedText(m_strText, Qt::ElideRight, textWidth));
}
