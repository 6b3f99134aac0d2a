#include "CFileHeaderView.h"

#include <QPainter>

CFileHeaderView::CFileHeaderView(Qt::Orientation orientation, QWidget* parent) : QHeaderView(orientation, parent) {}

void CFileHeaderView::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const
{
    painter->save();
    QHeaderView::paintSection(painter, rect, logicalIndex);
    painter->restore();
    if (visualIndex(logicalIndex) >= count() - 1) {
        return;
    }
    painter->save();
    painter->setPen(QColor(105, 105, 105));
    const int x = rect.right() - 1;
    painter->drawLine(x, rect.top() + 2, x, rect.bottom() - 2);
    painter->restore();
}
