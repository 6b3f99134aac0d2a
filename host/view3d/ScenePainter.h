#pragma once

#include "KorvView3DExport.h"
#include "ScenePolygon.h"

#include <QList>
#include <QMatrix4x4>

class QPainter;
class ViewCamera;

// Draws faces back to front with flat shading: the painter's algorithm, good enough for a machine
// built of boxes and cylinders and cheap enough for software drawing.
class KORVVIEW3D_EXPORT ScenePainter
{
public:
    // screen maps the world to pixels, with depth in z (larger is nearer).
    static void Paint(QPainter& painter, const QMatrix4x4& screen, const QList<ScenePolygon>& faces);

    // The orientation cube, drawn into area; its faces are labelled with the side they show.
    static void PaintViewCube(QPainter& painter, const QRectF& area, const ViewCamera& camera);
    // The face of the orientation cube under point (0..5 as in ViewCubeFaces), or -1.
    static int ViewCubeFaceAt(const QPointF& point, const QRectF& area, const ViewCamera& camera);
    static QList<ScenePolygon> ViewCubeFaces();
    // The camera angles (yaw, pitch) that look straight at a face of the cube.
    static QPointF ViewCubeFaceAngles(int face);

private:
    static QMatrix4x4 ViewCubeMatrix(const QRectF& area, const ViewCamera& camera);
};
