#include "CTransHeaderView.h"

#include <QPainter>

CTransHeaderView::CTransHeaderView(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

void CTransHeaderView::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const
{
    // Under a style sheet the viewport keeps the font it was polished with; labels follow the header's.
    painter->setFont(font());
    QHeaderView::paintSection(painter, rect, logicalIndex);
    if (logicalIndex == count() - 1)
        return;
    painter->save();
    // The base painting leaves an empty clip behind, which would swallow the line.
    painter->setClipRect(rect);
    painter->setPen(QPen(QColor(209, 209, 209), 1));
    painter->drawLine(rect.right(), rect.top() + 2, rect.right(), rect.bottom() - 2);
    painter->restore();
}
