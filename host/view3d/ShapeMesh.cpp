#include "ShapeMesh.h"

#include <QtMath>

QList<ScenePolygon> ShapeMesh::Box(const QVector3D& centre, const QVector3D& size, const QColor& color)
{
    const QVector3D h = size / 2.0f;
    auto p = [&](float sx, float sy, float sz) { return centre + QVector3D(sx * h.x(), sy * h.y(), sz * h.z()); };
    return {
        {{p(1, -1, -1), p(1, 1, -1), p(1, 1, 1), p(1, -1, 1)}, color, {}},
        {{p(-1, 1, -1), p(-1, -1, -1), p(-1, -1, 1), p(-1, 1, 1)}, color, {}},
        {{p(1, 1, -1), p(-1, 1, -1), p(-1, 1, 1), p(1, 1, 1)}, color, {}},
        {{p(-1, -1, -1), p(1, -1, -1), p(1, -1, 1), p(-1, -1, 1)}, color, {}},
        {{p(-1, -1, 1), p(1, -1, 1), p(1, 1, 1), p(-1, 1, 1)}, color, {}},
        {{p(-1, 1, -1), p(1, 1, -1), p(1, -1, -1), p(-1, -1, -1)}, color, {}},
    };
}

QList<ScenePolygon> ShapeMesh::Cylinder(const QVector3D& centre, float radius, float height, int axis,
                                        const QColor& color, int segments)
{
    // Built along Z, then the coordinates are rotated so that Z becomes the requested axis.
    auto place = [&](float x, float y, float z) {
        switch (axis) {
        case 0:
            return centre + QVector3D(z, x, y);
        case 1:
            return centre + QVector3D(y, z, x);
        default:
            return centre + QVector3D(x, y, z);
        }
    };
    const float top = height / 2.0f;
    QVector<QVector3D> capTop;
    QVector<QVector3D> capBottom;
    QList<ScenePolygon> faces;
    for (int i = 0; i < segments; ++i) {
        const qreal a0 = 2 * M_PI * i / segments;
        const qreal a1 = 2 * M_PI * (i + 1) / segments;
        const float x0 = radius * float(qCos(a0)), y0 = radius * float(qSin(a0));
        const float x1 = radius * float(qCos(a1)), y1 = radius * float(qSin(a1));
        faces.append({{place(x0, y0, -top), place(x1, y1, -top), place(x1, y1, top), place(x0, y0, top)}, color, {}});
        capTop.append(place(x0, y0, top));
        capBottom.prepend(place(x0, y0, -top));
    }
    faces.append({capTop, color, {}});
    faces.append({capBottom, color, {}});
    return faces;
}
