#pragma once

#include "KorvView3DExport.h"
#include "ScenePolygon.h"

#include <QList>
#include <QMatrix4x4>
#include <QString>
#include <array>

// The axis that moves a part; the values index an axis-position array (x, y, z, a, b, c).
enum class MachineAxis
{
    None = -1,
    X = 0,
    Y,
    Z,
    A,
    B,
    C,
};

struct MachinePart
{
    QString strName;
    int iParent = -1; // index of an earlier part, or -1 for the machine's fixed frame
    MachineAxis eAxis = MachineAxis::None;
    QVector3D direction;  // linear: travel per unit of the axis; rotary: the rotation axis
    QVector3D pivot;      // rotary: a point on the rotation axis, in the part's frame
    QVector3D offset;     // the part's origin in its parent's frame
    float fTravelMin = 0; // linear axes are held inside [min, max] when min < max
    float fTravelMax = 0;
    QList<ScenePolygon> listFaces; // in the part's own frame
};

using AxisPositions = std::array<double, 6>;

// A machine as a chain of rigid parts, each moved by at most one axis relative to its parent.
class KORVVIEW3D_EXPORT MachineModel
{
public:
    QString Name() const { return m_strName; }
    void SetName(const QString& name) { m_strName = name; }

    // Parents must already be in the model, which keeps the chain free of cycles.
    void AddPart(const MachinePart& part) { m_listParts.append(part); }
    const QList<MachinePart>& Parts() const { return m_listParts; }
    int PartIndex(const QString& name) const;

    void SetStockFrame(int partIndex, const QVector3D& origin);
    int StockPart() const { return m_iStockPart; }
    QVector3D StockOrigin() const { return m_stockOrigin; }

    // Where each part sits in the machine frame for the given axis positions (mm and degrees).
    QList<QMatrix4x4> PartTransforms(const AxisPositions& axes) const;
    // All faces of the machine in the machine frame for the given axis positions.
    QList<ScenePolygon> Faces(const AxisPositions& axes) const;
    // Maps faces given in the stock frame into the machine frame.
    QList<ScenePolygon> StockFaces(const QList<ScenePolygon>& faces, const AxisPositions& axes) const;

    // Centre and radius of a sphere holding the machine at its zero position.
    QVector3D BoundsCentre() const;
    float BoundsRadius() const;

private:
    QMatrix4x4 StockTransform(const QList<QMatrix4x4>& transforms) const;

    QString m_strName;
    QList<MachinePart> m_listParts;
    int m_iStockPart = -1;
    QVector3D m_stockOrigin;
};
