#pragma once

#include "KorvView3DExport.h"
#include "ScenePolygon.h"

#include <QList>

// Turns solid shapes into the flat faces the scene painter draws.
class KORVVIEW3D_EXPORT ShapeMesh
{
public:
    // An axis-aligned box; faces in the order +X, -X, +Y, -Y, +Z, -Z.
    static QList<ScenePolygon> Box(const QVector3D& centre, const QVector3D& size, const QColor& color);
    // A cylinder along axis 0 (X), 1 (Y) or 2 (Z), centred on centre, as a prism of `segments` sides.
    static QList<ScenePolygon> Cylinder(const QVector3D& centre, float radius, float height, int axis,
                                        const QColor& color, int segments = 24);
};
