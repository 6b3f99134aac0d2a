#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

// Draws the workbench's glyphs on a square image through a 24-unit design grid, so one
// drawing serves every pixel size and stays sharp when rendered at twice the shown size.
class IconPainter
{
public:
    enum class Glyph
    {
        Plus,
        Minus,
        Check,
        Cross,
        Exclamation,
        Play,
        Clock,
        Power,
        Link
    };

    explicit IconPainter(QImage& image);

    void fill(const QPainterPath& path, const QColor& color);
    void stroke(const QPainterPath& path, const QColor& color, qreal width);

    void folder(const QRectF& r, const QColor& back, const QColor& front, bool open);
    void page(const QRectF& r, const QColor& outline, const QColor& paper, int textLines, const QColor& text);
    void monitor(const QRectF& screen, const QColor& frame, const QColor& glass);
    void laptop(const QRectF& screen, const QColor& frame, const QColor& glass);
    void machine(const QRectF& r, const QColor& body, const QColor& window);
    void shield(const QRectF& r, const QColor& color);
    void pencil(const QPointF& tip, qreal length, const QColor& color);
    void trashCan(const QRectF& r, const QColor& color);

    // A straight shaft ending in a filled head at `to`.
    void arrow(const QPointF& from, const QPointF& to, const QColor& color, qreal width);
    // A solid, fat arrow filling `r`, pointing right or left.
    void blockArrow(const QRectF& r, bool pointsRight, const QColor& color);
    // `arrows` equal arcs chasing each other clockwise around `centre`; `rotation` in degrees.
    void cycleArrows(const QPointF& centre, qreal radius, qreal width, const QColor& color, qreal rotation, int arrows);
    void chainLink(const QPointF& centre, qreal length, qreal angle, const QColor& color, qreal width);

    // A filled disc with a white rim and a white glyph, for status dots and corner badges.
    void badge(const QPointF& centre, qreal radius, const QColor& color, Glyph glyph, bool rim = true);
    void glyph(const QPointF& centre, qreal size, const QColor& color, Glyph glyph);

private:
    QPainter m_painter;
};
