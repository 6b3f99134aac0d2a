#pragma once

#include <QColor>
#include <QVector3D>
#include <QVector>

// One flat face of the scene. Points run counter-clockwise seen from outside, so the face's
// normal points outwards and faces turned away from the viewer can be skipped.
struct ScenePolygon
{
    QVector<QVector3D> listPoints;
    QColor color;
    QString strLabel; // drawn in the middle of the face (view cube)
};
