#include "TransProgressPainter.h"

#include <QFontMetrics>
#include <QPainter>

namespace {
const QColor FramePenColor(209, 209, 209);
const QColor BarBackColor(217, 217, 217);
const QColor BarFillColor(3, 151, 96);
const QColor SpeedTextColor(51, 51, 51);
const QColor FailedColor(209, 63, 63);
const QColor SucceededColor(3, 151, 96);
const QColor CancelledColor(128, 128, 128);
constexpr int CellHeight = 24;
constexpr int BarLeftMargin = 10;
constexpr int BarTopMargin = 6;
constexpr int BarHeight = 12;
constexpr qreal BarRadius = 6;
constexpr int SpeedGap = 15;
constexpr int SpeedRightMargin = 5;
constexpr int StateTextWidth = 120;
constexpr int IconGap = 10;
constexpr int IconSize = 24;
} // namespace

TransProgressPainter::TransProgressPainter() : m_iconRestart(QStringLiteral(":/icon/filepanel/restart.png")) {}

int TransProgressPainter::BarWidth(const QRect& cell)
{
    return int(cell.width() * 0.4);
}

QRect TransProgressPainter::BarRect(const QRect& cell)
{
    return QRect(cell.left() + BarLeftMargin, cell.top() + BarTopMargin, BarWidth(cell), BarHeight);
}

int TransProgressPainter::FillWidth(const QRect& cell, const TanslateInfo& info)
{
    if (info.doneSize <= 0 || info.totalSize < info.doneSize)
        return 0;
    return int(BarWidth(cell) * info.doneSize / info.totalSize);
}

QRect TransProgressPainter::SpeedTextRect(const QRect& cell)
{
    const int left = BarRect(cell).left() + BarWidth(cell) + SpeedGap;
    const int right = cell.left() + cell.width() - SpeedRightMargin;
    return QRect(left, cell.top(), right - left, CellHeight);
}

QRect TransProgressPainter::StateTextRect(const QRect& cell)
{
    return QRect(cell.left() + BarLeftMargin, cell.top(), StateTextWidth, CellHeight);
}

QRect TransProgressPainter::RestartIconRect(const QRect& cell)
{
    const QRect text = StateTextRect(cell);
    return QRect(text.left() + text.width() + IconGap, cell.top(), IconSize, IconSize);
}

void TransProgressPainter::Paint(QPainter* painter, const QRect& cell, const TanslateInfo& info,
                                 const QString& strSpeed, const QFont& font) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setPen(QPen(FramePenColor, 1));
    painter->setFont(font);
    switch (info.state) {
    case TanslateInfo::StateRunning:
    case TanslateInfo::StateWaiting:
        PaintProgress(painter, cell, info, strSpeed);
        break;
    case TanslateInfo::StateFailed:
        painter->setPen(FailedColor);
        painter->drawText(StateTextRect(cell), Qt::AlignCenter, tr("传输失败"));
        m_iconRestart.paint(painter, RestartIconRect(cell), Qt::AlignRight | Qt::AlignVCenter);
        break;
    case TanslateInfo::StateCancelled:
        painter->setPen(CancelledColor);
        painter->drawText(StateTextRect(cell), Qt::AlignCenter, tr("已取消"));
        m_iconRestart.paint(painter, RestartIconRect(cell), Qt::AlignRight | Qt::AlignVCenter);
        break;
    case TanslateInfo::StateSucceeded:
        painter->setPen(SucceededColor);
        painter->drawText(StateTextRect(cell), Qt::AlignCenter, tr("传输成功"));
        break;
    default:
        break;
    }
    painter->restore();
}

void TransProgressPainter::PaintProgress(QPainter* painter, const QRect& cell, const TanslateInfo& info,
                                         const QString& strSpeed) const
{
    painter->setPen(Qt::NoPen);
    QRect bar = BarRect(cell);
    painter->setBrush(BarBackColor);
    painter->drawRoundedRect(bar, BarRadius, BarRadius);
    const int fill = FillWidth(cell, info);
    if (fill > 0) {
        bar.setWidth(fill);
        painter->setBrush(BarFillColor);
        painter->drawRoundedRect(bar, BarRadius, BarRadius);
    }
    const QRect textRect = SpeedTextRect(cell);
    if (textRect.width() <= 0)
        return;
    painter->setPen(SpeedTextColor);
    const QString strShown = painter->fontMetrics().elidedText(strSpeed, Qt::ElideRight, textRect.width());
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, strShown);
}
