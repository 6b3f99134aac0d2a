#include "MachineStatusRingGauge.h"

#include <QConicalGradient>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

namespace {
QFont GaugeFont(int pixelSize)
{
    QFont font;
    font.setFamilies({QStringLiteral("Barlow"), QStringLiteral("Arial"), QStringLiteral("Microsoft YaHei")});
    font.setPixelSize(pixelSize);
    font.setBold(true);
    return font;
}
} // namespace

MachineStatusRingGauge::MachineStatusRingGauge(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(60, 52);
}

void MachineStatusRingGauge::SetValue(int value)
{
    const int limited = std::max(0, std::min(value, m_iMaxValue));
    if (limited == m_iValue)
        return;
    m_iValue = limited;
    Q_EMIT ValueChanged(m_iValue);
    update();
}

void MachineStatusRingGauge::SetMaxValue(int maxValue)
{
    // A lowered maximum keeps the value's number; the ring is simply drawn full.
    if (maxValue < 1 || maxValue == m_iMaxValue)
        return;
    m_iMaxValue = maxValue;
    update();
}

void MachineStatusRingGauge::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const double side = std::min(width(), height());
    const double penWidth = 0.12 * side;
    const double edge = side - 0.9 * penWidth;
    const QRectF ring(0.1 * edge, (height() - edge) / 2.0 + 0.01 * side, edge, edge);

    QPen track(QColor(0xe5, 0xe5, 0xe5), penWidth);
    track.setCapStyle(Qt::RoundCap);
    painter.setPen(track);
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(ring, 3600, -4320);

    if (m_iValue > 0) {
        QConicalGradient gradient(ring.center(), 300);
        gradient.setColorAt(0.0, QColor(0x27, 0xae, 0x60));
        gradient.setColorAt(0.15, QColor(0x27, 0xae, 0x60));
        gradient.setColorAt(0.25, QColor(0x2e, 0xcc, 0x71));
        gradient.setColorAt(0.375, QColor(0x85, 0xc1, 0x3a));
        gradient.setColorAt(0.625, QColor(0xf1, 0xc4, 0x0f));
        gradient.setColorAt(0.75, QColor(0xe6, 0x7e, 0x22));
        const QPen arc(QBrush(gradient), penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        painter.setPen(arc);
        const double fraction = double(std::min(m_iValue, m_iMaxValue)) / m_iMaxValue;
        painter.drawArc(ring, 3600, int(-fraction * 270.0 * 16.0));
    }

    const QFont numberFont = GaugeFont(std::max(12, int(0.315 * side)));
    const QFont percentFont = GaugeFont(std::max(10, int(0.75 * numberFont.pixelSize())));
    const QFontMetrics numberMetrics(numberFont);
    const QFontMetrics percentMetrics(percentFont);
    const QString number = QString::number(m_iValue);
    const QString percent = QStringLiteral("%");
    const int gap = std::max(0, int(0.005 * side));
    const int blockHeight = numberMetrics.ascent() + gap + percentMetrics.ascent();
    const QPointF centre = ring.center();
    const int top = int(centre.y() - blockHeight / 2.0 + 0.02 * side);

    painter.setFont(numberFont);
    painter.setPen(QColor(0x33, 0x33, 0x33));
    painter.drawText(int(centre.x() - numberMetrics.horizontalAdvance(number) / 2.0), top + numberMetrics.ascent(),
                     number);
    painter.setFont(percentFont);
    painter.setPen(QColor(0x88, 0x88, 0x88));
    painter.drawText(int(centre.x() - percentMetrics.horizontalAdvance(percent) / 2.0),
                     top + numberMetrics.ascent() + gap + percentMetrics.ascent(), percent);
}
