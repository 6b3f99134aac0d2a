#include "IconPainter.h"

#include <QtMath>

namespace {
constexpr qreal GridUnits = 24.0;

QPointF polar(const QPointF& centre, qreal radius, qreal degrees)
{
    const qreal a = qDegreesToRadians(degrees);
    return centre + QPointF(radius * qCos(a), radius * qSin(a));
}

QPainterPath roundedRect(const QRectF& r, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(r, radius, radius);
    return path;
}

// Filled triangular head whose tip is at `tip`, pointing along `direction` (a unit vector).
QPainterPath arrowHead(const QPointF& tip, const QPointF& direction, qreal length, qreal halfWidth)
{
    const QPointF normal(-direction.y(), direction.x());
    const QPointF base = tip - direction * length;
    QPainterPath path;
    path.moveTo(tip);
    path.lineTo(base + normal * halfWidth);
    path.lineTo(base - normal * halfWidth);
    path.closeSubpath();
    return path;
}
} // namespace

IconPainter::IconPainter(QImage& image) : m_painter(&image)
{
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.scale(image.width() / GridUnits, image.height() / GridUnits);
}

void IconPainter::fill(const QPainterPath& path, const QColor& color)
{
    m_painter.fillPath(path, color);
}

void IconPainter::stroke(const QPainterPath& path, const QColor& color, qreal width)
{
    m_painter.strokePath(path, QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void IconPainter::folder(const QRectF& r, const QColor& back, const QColor& front, bool open)
{
    const qreal tabW = r.width() * 0.4;
    const qreal tabH = r.height() * 0.16;
    QPainterPath backPath;
    backPath.moveTo(r.left(), r.top() + 1);
    backPath.quadTo(r.left(), r.top(), r.left() + 1, r.top());
    backPath.lineTo(r.left() + tabW - 1, r.top());
    backPath.lineTo(r.left() + tabW + 1, r.top() + tabH);
    backPath.lineTo(r.right() - 1, r.top() + tabH);
    backPath.quadTo(r.right(), r.top() + tabH, r.right(), r.top() + tabH + 1);
    backPath.lineTo(r.right(), r.bottom() - 1);
    backPath.quadTo(r.right(), r.bottom(), r.right() - 1, r.bottom());
    backPath.lineTo(r.left() + 1, r.bottom());
    backPath.quadTo(r.left(), r.bottom(), r.left(), r.bottom() - 1);
    backPath.closeSubpath();
    fill(backPath, back);

    const qreal frontTop = r.top() + tabH + r.height() * 0.14;
    QPainterPath frontPath;
    if (open) {
        // The front flap leans forward so the folder reads as open.
        const qreal lean = r.width() * 0.14;
        frontPath.moveTo(r.left() + lean, frontTop);
        frontPath.lineTo(r.right() + lean * 0.35, frontTop);
        frontPath.lineTo(r.right() - lean * 0.2, r.bottom());
        frontPath.lineTo(r.left(), r.bottom());
        frontPath.closeSubpath();
    } else {
        frontPath = roundedRect(QRectF(r.left(), frontTop, r.width(), r.bottom() - frontTop), 1);
    }
    fill(frontPath, front);
}

void IconPainter::page(const QRectF& r, const QColor& outline, const QColor& paper, int textLines, const QColor& text)
{
    const qreal fold = r.width() * 0.32;
    QPainterPath path;
    path.moveTo(r.left(), r.top());
    path.lineTo(r.right() - fold, r.top());
    path.lineTo(r.right(), r.top() + fold);
    path.lineTo(r.right(), r.bottom());
    path.lineTo(r.left(), r.bottom());
    path.closeSubpath();
    fill(path, paper);
    stroke(path, outline, 1.4);

    QPainterPath corner;
    corner.moveTo(r.right() - fold, r.top());
    corner.lineTo(r.right() - fold, r.top() + fold);
    corner.lineTo(r.right(), r.top() + fold);
    stroke(corner, outline, 1.2);

    const qreal step = (r.height() - fold - 2.5) / qMax(textLines, 1);
    for (int i = 0; i < textLines; ++i) {
        const qreal y = r.top() + fold + 1.8 + i * step;
        const qreal right = (i == textLines - 1) ? r.center().x() + 1 : r.right() - 2.6;
        QPainterPath line;
        line.moveTo(r.left() + 2.6, y);
        line.lineTo(right, y);
        stroke(line, text, 1.3);
    }
}

void IconPainter::monitor(const QRectF& screen, const QColor& frame, const QColor& glass)
{
    fill(roundedRect(screen, 1.6), frame);
    fill(roundedRect(screen.adjusted(1.4, 1.4, -1.4, -1.4), 0.6), glass);
    const qreal x = screen.center().x();
    QPainterPath stand;
    stand.moveTo(x - 1.6, screen.bottom());
    stand.lineTo(x + 1.6, screen.bottom());
    stand.lineTo(x + 2.0, screen.bottom() + 2.6);
    stand.lineTo(x - 2.0, screen.bottom() + 2.6);
    stand.closeSubpath();
    fill(stand, frame);
    fill(roundedRect(QRectF(x - 5, screen.bottom() + 2.4, 10, 1.6), 0.8), frame);
}

void IconPainter::laptop(const QRectF& screen, const QColor& frame, const QColor& glass)
{
    fill(roundedRect(screen, 1.4), frame);
    fill(roundedRect(screen.adjusted(1.3, 1.3, -1.3, -1.0), 0.4), glass);
    QPainterPath base;
    base.moveTo(screen.left() - 0.6, screen.bottom() + 0.6);
    base.lineTo(screen.right() + 0.6, screen.bottom() + 0.6);
    base.lineTo(screen.right() + 2.6, screen.bottom() + 2.8);
    base.quadTo(screen.right() + 2.8, screen.bottom() + 3.6, screen.right() + 1.8, screen.bottom() + 3.6);
    base.lineTo(screen.left() - 1.8, screen.bottom() + 3.6);
    base.quadTo(screen.left() - 2.8, screen.bottom() + 3.6, screen.left() - 2.6, screen.bottom() + 2.8);
    base.closeSubpath();
    fill(base, frame);
}

void IconPainter::machine(const QRectF& r, const QColor& body, const QColor& window)
{
    fill(roundedRect(r, 1.6), body);
    // Machining area behind a window on the left, control panel on the right.
    const QRectF area(r.left() + 1.6, r.top() + 1.8, r.width() * 0.62, r.height() - 3.6);
    fill(roundedRect(area, 0.6), window);
    const qreal x = area.center().x();
    fill(roundedRect(QRectF(x - 1.4, area.top(), 2.8, area.height() * 0.34), 0.4), body);
    QPainterPath bit;
    bit.moveTo(x - 0.7, area.top() + area.height() * 0.34);
    bit.lineTo(x + 0.7, area.top() + area.height() * 0.34);
    bit.lineTo(x, area.top() + area.height() * 0.56);
    bit.closeSubpath();
    fill(bit, body);
    fill(roundedRect(QRectF(area.left() + 1.2, area.bottom() - 2.6, area.width() - 2.4, 1.6), 0.3), body);

    const QRectF panel(area.right() + 1.2, area.top(), r.right() - area.right() - 2.6, area.height());
    fill(roundedRect(QRectF(panel.left(), panel.top(), panel.width(), panel.height() * 0.36), 0.4), window);
    const qreal knobR = qMin(panel.width() * 0.3, 0.9);
    for (int i = 0; i < 2; ++i) {
        QPainterPath knob;
        knob.addEllipse(QPointF(panel.center().x(), panel.top() + panel.height() * (0.6 + 0.26 * i)), knobR, knobR);
        fill(knob, window);
    }
}

void IconPainter::shield(const QRectF& r, const QColor& color)
{
    QPainterPath path;
    const qreal cx = r.center().x();
    path.moveTo(cx, r.top());
    path.cubicTo(cx + r.width() * 0.25, r.top() + r.height() * 0.12, r.right(), r.top() + r.height() * 0.12, r.right(),
                 r.top() + r.height() * 0.16);
    path.lineTo(r.right(), r.top() + r.height() * 0.48);
    path.cubicTo(r.right(), r.top() + r.height() * 0.76, cx + r.width() * 0.2, r.bottom() - r.height() * 0.06, cx,
                 r.bottom());
    path.cubicTo(cx - r.width() * 0.2, r.bottom() - r.height() * 0.06, r.left(), r.top() + r.height() * 0.76, r.left(),
                 r.top() + r.height() * 0.48);
    path.lineTo(r.left(), r.top() + r.height() * 0.16);
    path.cubicTo(r.left(), r.top() + r.height() * 0.12, cx - r.width() * 0.25, r.top() + r.height() * 0.12, cx,
                 r.top());
    fill(path, color);
}

void IconPainter::pencil(const QPointF& tip, qreal length, const QColor& color)
{
    m_painter.save();
    m_painter.translate(tip);
    m_painter.rotate(-45);
    const qreal w = 2.0;
    QPainterPath point;
    point.moveTo(0, 0);
    point.lineTo(3.2, -w);
    point.lineTo(3.2, w);
    point.closeSubpath();
    fill(point, color);
    fill(roundedRect(QRectF(4.2, -w, length - 7.6, 2 * w), 0.3), color);
    fill(roundedRect(QRectF(length - 2.6, -w, 2.6, 2 * w), 0.8), color);
    m_painter.restore();
}

void IconPainter::trashCan(const QRectF& r, const QColor& color)
{
    const qreal lidY = r.top() + 2.4;
    fill(roundedRect(QRectF(r.center().x() - 2.2, r.top(), 4.4, 2.6), 0.8), color);
    fill(roundedRect(QRectF(r.left(), lidY, r.width(), 1.8), 0.6), color);
    QPainterPath body;
    body.moveTo(r.left() + 1.2, lidY + 2.6);
    body.lineTo(r.right() - 1.2, lidY + 2.6);
    body.lineTo(r.right() - 2.0, r.bottom() - 0.8);
    body.quadTo(r.right() - 2.1, r.bottom(), r.right() - 2.9, r.bottom());
    body.lineTo(r.left() + 2.9, r.bottom());
    body.quadTo(r.left() + 2.1, r.bottom(), r.left() + 2.0, r.bottom() - 0.8);
    body.closeSubpath();
    fill(body, color);
    for (qreal dx : {-2.0, 0.0, 2.0}) {
        QPainterPath groove;
        groove.moveTo(r.center().x() + dx, lidY + 4.6);
        groove.lineTo(r.center().x() + dx * 0.9, r.bottom() - 2.2);
        stroke(groove, Qt::white, 0.9);
    }
}

void IconPainter::arrow(const QPointF& from, const QPointF& to, const QColor& color, qreal width)
{
    const QPointF delta = to - from;
    const qreal length = qSqrt(QPointF::dotProduct(delta, delta));
    const QPointF direction = delta / length;
    const qreal headLength = width * 2.4;
    QPainterPath shaft;
    shaft.moveTo(from);
    shaft.lineTo(to - direction * headLength * 0.8);
    m_painter.strokePath(shaft, QPen(color, width, Qt::SolidLine, Qt::RoundCap));
    fill(arrowHead(to, direction, headLength, width * 1.7), color);
}

void IconPainter::blockArrow(const QRectF& r, bool pointsRight, const QColor& color)
{
    const qreal head = r.width() * 0.46;
    const qreal shaftHalf = r.height() * 0.2;
    const qreal cy = r.center().y();
    QPainterPath path;
    path.moveTo(r.right(), cy);
    path.lineTo(r.right() - head, r.top());
    path.lineTo(r.right() - head, cy - shaftHalf);
    path.lineTo(r.left(), cy - shaftHalf);
    path.lineTo(r.left(), cy + shaftHalf);
    path.lineTo(r.right() - head, cy + shaftHalf);
    path.lineTo(r.right() - head, r.bottom());
    path.closeSubpath();
    if (!pointsRight) {
        QTransform mirror;
        mirror.translate(r.center().x(), 0).scale(-1, 1).translate(-r.center().x(), 0);
        path = mirror.map(path);
    }
    m_painter.save();
    m_painter.setPen(QPen(color, 0.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    m_painter.setBrush(color);
    m_painter.drawPath(path);
    m_painter.restore();
}

void IconPainter::cycleArrows(const QPointF& centre, qreal radius, qreal width, const QColor& color, qreal rotation,
                              int arrows)
{
    const qreal share = 360.0 / arrows;
    const qreal gap = arrows == 1 ? 62.0 : 44.0;
    const qreal headLength = width * 2.2;
    // The head covers the last stretch of the arc, so the stroke stops short of the tip.
    const qreal headDegrees = qRadiansToDegrees(headLength / radius);
    for (int i = 0; i < arrows; ++i) {
        const qreal start = rotation + i * share;
        const qreal end = start + share - gap;
        QPainterPath arc;
        const int steps = 48;
        const qreal strokeEnd = end - headDegrees * 0.7;
        for (int s = 0; s <= steps; ++s) {
            const QPointF p = polar(centre, radius, start + (strokeEnd - start) * s / steps);
            s == 0 ? arc.moveTo(p) : arc.lineTo(p);
        }
        m_painter.strokePath(arc, QPen(color, width, Qt::SolidLine, Qt::FlatCap));
        const qreal tipAngle = end;
        const qreal baseAngle = end - headDegrees;
        const QPointF tip = polar(centre, radius, tipAngle);
        const QPointF base = polar(centre, radius, baseAngle);
        const QPointF outward = (base - centre) / radius;
        QPainterPath head;
        head.moveTo(tip);
        head.lineTo(base + outward * width * 1.6);
        head.lineTo(base - outward * width * 1.6);
        head.closeSubpath();
        fill(head, color);
    }
}

void IconPainter::chainLink(const QPointF& centre, qreal length, qreal angle, const QColor& color, qreal width)
{
    m_painter.save();
    m_painter.translate(centre);
    m_painter.rotate(angle);
    const qreal h = length * 0.46;
    stroke(roundedRect(QRectF(-length / 2, -h / 2, length, h), h / 2), color, width);
    m_painter.restore();
}

void IconPainter::badge(const QPointF& centre, qreal radius, const QColor& color, Glyph kind, bool rim)
{
    QPainterPath disc;
    disc.addEllipse(centre, radius, radius);
    if (rim) {
        QPainterPath outer;
        outer.addEllipse(centre, radius + 1.2, radius + 1.2);
        fill(outer, Qt::white);
    }
    fill(disc, color);
    glyph(centre, radius * 1.1, Qt::white, kind);
}

void IconPainter::glyph(const QPointF& c, qreal size, const QColor& color, Glyph kind)
{
    const qreal w = size * 0.26;
    const qreal h = size * 0.5;
    QPainterPath path;
    switch (kind) {
    case Glyph::Plus:
        path.moveTo(c.x() - h, c.y());
        path.lineTo(c.x() + h, c.y());
        path.moveTo(c.x(), c.y() - h);
        path.lineTo(c.x(), c.y() + h);
        stroke(path, color, w);
        break;
    case Glyph::Minus:
        path.moveTo(c.x() - h, c.y());
        path.lineTo(c.x() + h, c.y());
        stroke(path, color, w);
        break;
    case Glyph::Check:
        path.moveTo(c.x() - h, c.y() + h * 0.05);
        path.lineTo(c.x() - h * 0.2, c.y() + h * 0.75);
        path.lineTo(c.x() + h, c.y() - h * 0.6);
        stroke(path, color, w);
        break;
    case Glyph::Cross:
        path.moveTo(c.x() - h * 0.75, c.y() - h * 0.75);
        path.lineTo(c.x() + h * 0.75, c.y() + h * 0.75);
        path.moveTo(c.x() + h * 0.75, c.y() - h * 0.75);
        path.lineTo(c.x() - h * 0.75, c.y() + h * 0.75);
        stroke(path, color, w);
        break;
    case Glyph::Exclamation: {
        path.moveTo(c.x(), c.y() - h);
        path.lineTo(c.x(), c.y() + h * 0.25);
        stroke(path, color, w);
        QPainterPath dot;
        dot.addEllipse(QPointF(c.x(), c.y() + h * 0.85), w * 0.62, w * 0.62);
        fill(dot, color);
        break;
    }
    case Glyph::Play:
        path.moveTo(c.x() - h * 0.55, c.y() - h * 0.8);
        path.lineTo(c.x() + h * 0.85, c.y());
        path.lineTo(c.x() - h * 0.55, c.y() + h * 0.8);
        path.closeSubpath();
        m_painter.save();
        m_painter.setPen(QPen(color, w * 0.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        m_painter.setBrush(color);
        m_painter.drawPath(path);
        m_painter.restore();
        break;
    case Glyph::Clock:
        path.addEllipse(c, h * 0.95, h * 0.95);
        stroke(path, color, w * 0.7);
        path = QPainterPath();
        path.moveTo(c.x(), c.y() - h * 0.6);
        path.lineTo(c);
        path.lineTo(c.x() + h * 0.45, c.y() + h * 0.3);
        stroke(path, color, w * 0.7);
        break;
    case Glyph::Power:
        for (int s = 0; s <= 32; ++s) {
            const QPointF p = polar(c, h * 0.85, -55 + 290.0 * s / 32);
            s == 0 ? path.moveTo(p) : path.lineTo(p);
        }
        path.moveTo(c.x(), c.y() - h * 1.05);
        path.lineTo(c.x(), c.y() - h * 0.1);
        stroke(path, color, w * 0.8);
        break;
    case Glyph::Link:
        chainLink(QPointF(c.x() - h * 0.38, c.y() + h * 0.38), h * 1.3, -45, color, w * 0.6);
        chainLink(QPointF(c.x() + h * 0.38, c.y() - h * 0.38), h * 1.3, -45, color, w * 0.6);
        break;
    }
}
