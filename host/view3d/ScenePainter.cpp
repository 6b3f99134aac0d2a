#include "ScenePainter.h"

#include "ShapeMesh.h"
#include "ViewCamera.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>

namespace {
struct ProjectedFace
{
    QPolygonF polygon;
    float fDepth = 0;
    QColor color;
    QString strLabel;
};

// Projects the faces that look towards the viewer, shaded and sorted far to near.
QList<ProjectedFace> project(const QMatrix4x4& screen, const QList<ScenePolygon>& faces)
{
    const QVector3D light = QVector3D(0.35f, 0.6f, 0.75f).normalized();
    QList<ProjectedFace> projected;
    projected.reserve(faces.size());
    for (const ScenePolygon& face : faces) {
        if (face.listPoints.size() < 3)
            continue;
        ProjectedFace out;
        QVector<QVector3D> points;
        points.reserve(face.listPoints.size());
        for (const QVector3D& point : face.listPoints) {
            const QVector3D mapped = screen.map(point);
            points.append(mapped);
            out.polygon.append(QPointF(mapped.x(), mapped.y()));
            out.fDepth += mapped.z();
        }
        out.fDepth /= float(points.size());
        // Newell's method: robust for the many-sided caps of cylinders.
        QVector3D cross;
        for (int i = 0; i < points.size(); ++i) {
            const QVector3D& a = points.at(i);
            const QVector3D& b = points.at((i + 1) % points.size());
            cross += QVector3D((a.y() - b.y()) * (a.z() + b.z()), (a.z() - b.z()) * (a.x() + b.x()),
                               (a.x() - b.x()) * (a.y() + b.y()));
        }
        // The screen flips y, which mirrors the winding: a face towards the viewer has cross.z < 0.
        if (cross.z() >= 0)
            continue;
        const QVector3D normal = QVector3D(-cross.x(), cross.y(), -cross.z()).normalized();
        const float shade = 0.5f + 0.5f * qMax(0.0f, QVector3D::dotProduct(normal, light));
        out.color = QColor::fromRgbF(face.color.redF() * shade, face.color.greenF() * shade, face.color.blueF() * shade,
                                     face.color.alphaF());
        out.strLabel = face.strLabel;
        projected.append(out);
    }
    std::stable_sort(projected.begin(), projected.end(),
                     [](const ProjectedFace& a, const ProjectedFace& b) { return a.fDepth < b.fDepth; });
    return projected;
}
} // namespace

void ScenePainter::Paint(QPainter& painter, const QMatrix4x4& screen, const QList<ScenePolygon>& faces)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const ProjectedFace& face : project(screen, faces)) {
        painter.setPen(QPen(face.color.darker(135), 0.8));
        painter.setBrush(face.color);
        painter.drawPolygon(face.polygon);
    }
    painter.restore();
}

QList<ScenePolygon> ScenePainter::ViewCubeFaces()
{
    QList<ScenePolygon> faces = ShapeMesh::Box(QVector3D(), QVector3D(2, 2, 2), QColor(0xf4, 0xf6, 0xf8));
    const QStringList labels{
        QCoreApplication::translate("ScenePainter", "右"), QCoreApplication::translate("ScenePainter", "左"),
        QCoreApplication::translate("ScenePainter", "后"), QCoreApplication::translate("ScenePainter", "前"),
        QCoreApplication::translate("ScenePainter", "上"), QCoreApplication::translate("ScenePainter", "下")};
    for (int i = 0; i < faces.size(); ++i)
        faces[i].strLabel = labels.at(i);
    return faces;
}

QPointF ScenePainter::ViewCubeFaceAngles(int face)
{
    static const QPointF angles[] = {{-90, 0}, {90, 0}, {180, 0}, {0, 0}, {0, 90}, {0, -90}};
    return face >= 0 && face < 6 ? angles[face] : QPointF(ViewCamera::DefaultYaw, ViewCamera::DefaultPitch);
}

QMatrix4x4 ScenePainter::ViewCubeMatrix(const QRectF& area, const ViewCamera& camera)
{
    // A unit cube of half-size 1 spans about 1.7 when seen corner on; keep it inside the area.
    const float scale = float(qMin(area.width(), area.height())) / 3.6f;
    QMatrix4x4 matrix;
    matrix.translate(float(area.center().x()), float(area.center().y()));
    matrix.scale(scale, -scale, scale);
    matrix *= camera.Rotation();
    return matrix;
}

void ScenePainter::PaintViewCube(QPainter& painter, const QRectF& area, const ViewCamera& camera)
{
    const QMatrix4x4 matrix = ViewCubeMatrix(area, camera);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(qMax(9, int(area.height() / 7)));
    painter.setFont(font);
    for (const ProjectedFace& face : project(matrix, ViewCubeFaces())) {
        painter.setPen(QPen(QColor(0x9a, 0xa3, 0xad), 1));
        painter.setBrush(face.color);
        painter.drawPolygon(face.polygon);
        // Labels only on faces seen enough from the front to be legible.
        const QRectF bounds = face.polygon.boundingRect();
        if (bounds.width() > area.width() / 8 && bounds.height() > area.height() / 8) {
            painter.setPen(QColor(0x55, 0x5b, 0x66));
            painter.drawText(bounds, Qt::AlignCenter, face.strLabel);
        }
    }
    painter.restore();
}

int ScenePainter::ViewCubeFaceAt(const QPointF& point, const QRectF& area, const ViewCamera& camera)
{
    const QList<ScenePolygon> faces = ViewCubeFaces();
    const QList<ProjectedFace> projected = project(ViewCubeMatrix(area, camera), faces);
    // Nearest face first.
    for (auto it = projected.crbegin(); it != projected.crend(); ++it) {
        if (it->polygon.containsPoint(point, Qt::OddEvenFill)) {
            for (int i = 0; i < faces.size(); ++i) {
                if (faces.at(i).strLabel == it->strLabel)
                    return i;
            }
        }
    }
    return -1;
}
