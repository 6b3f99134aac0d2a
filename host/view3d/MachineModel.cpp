#include "MachineModel.h"

#include <limits>

namespace {
QList<ScenePolygon> transformed(const QList<ScenePolygon>& faces, const QMatrix4x4& transform)
{
    QList<ScenePolygon> result = faces;
    for (ScenePolygon& face : result) {
        for (QVector3D& point : face.listPoints)
            point = transform.map(point);
    }
    return result;
}
} // namespace

int MachineModel::PartIndex(const QString& name) const
{
    for (int i = 0; i < m_listParts.size(); ++i) {
        if (m_listParts.at(i).strName == name)
            return i;
    }
    return -1;
}

void MachineModel::SetStockFrame(int partIndex, const QVector3D& origin)
{
    m_iStockPart = partIndex;
    m_stockOrigin = origin;
}

QList<QMatrix4x4> MachineModel::PartTransforms(const AxisPositions& axes) const
{
    QList<QMatrix4x4> transforms;
    transforms.reserve(m_listParts.size());
    for (const MachinePart& part : m_listParts) {
        QMatrix4x4 transform = part.iParent >= 0 ? transforms.at(part.iParent) : QMatrix4x4();
        transform.translate(part.offset);
        if (part.eAxis != MachineAxis::None) {
            float value = float(axes.at(size_t(part.eAxis)));
            if (part.eAxis <= MachineAxis::Z) {
                if (part.fTravelMin < part.fTravelMax)
                    value = qBound(part.fTravelMin, value, part.fTravelMax);
                transform.translate(part.direction * value);
            } else {
                transform.translate(part.pivot);
                transform.rotate(value, part.direction);
                transform.translate(-part.pivot);
            }
        }
        transforms.append(transform);
    }
    return transforms;
}

QList<ScenePolygon> MachineModel::Faces(const AxisPositions& axes) const
{
    const QList<QMatrix4x4> transforms = PartTransforms(axes);
    QList<ScenePolygon> faces;
    for (int i = 0; i < m_listParts.size(); ++i)
        faces += transformed(m_listParts.at(i).listFaces, transforms.at(i));
    return faces;
}

QMatrix4x4 MachineModel::StockTransform(const QList<QMatrix4x4>& transforms) const
{
    QMatrix4x4 transform = m_iStockPart >= 0 ? transforms.at(m_iStockPart) : QMatrix4x4();
    transform.translate(m_stockOrigin);
    return transform;
}

QList<ScenePolygon> MachineModel::StockFaces(const QList<ScenePolygon>& faces, const AxisPositions& axes) const
{
    return transformed(faces, StockTransform(PartTransforms(axes)));
}

QVector3D MachineModel::BoundsCentre() const
{
    constexpr float big = std::numeric_limits<float>::max();
    QVector3D low(big, big, big);
    QVector3D high(-big, -big, -big);
    bool bAny = false;
    for (const ScenePolygon& face : Faces({})) {
        for (const QVector3D& point : face.listPoints) {
            for (int k = 0; k < 3; ++k) {
                low[k] = qMin(low[k], point[k]);
                high[k] = qMax(high[k], point[k]);
            }
            bAny = true;
        }
    }
    return bAny ? (low + high) / 2.0f : QVector3D();
}

float MachineModel::BoundsRadius() const
{
    const QVector3D centre = BoundsCentre();
    float radius = 0;
    for (const ScenePolygon& face : Faces({})) {
        for (const QVector3D& point : face.listPoints)
            radius = qMax(radius, (point - centre).length());
    }
    return radius;
}
