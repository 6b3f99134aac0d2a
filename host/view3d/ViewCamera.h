#pragma once

#include "KorvView3DExport.h"

#include <QMatrix4x4>
#include <QPointF>
#include <QRectF>
#include <QVector3D>

// An orthographic camera that orbits a target in a Z-up world. Yaw turns about the world's Z axis
// (0 looks at the front along +Y, -90 from the right); pitch tilts from the horizon (90 from above).
class KORVVIEW3D_EXPORT ViewCamera
{
public:
    static constexpr float DefaultYaw = -32.0f;
    static constexpr float DefaultPitch = 24.0f;
    static constexpr float MinZoom = 0.2f;
    static constexpr float MaxZoom = 10.0f;

    // Frames a sphere of the given radius around centre.
    void SetTarget(const QVector3D& centre, float radius);
    void SetAngles(float yaw, float pitch);
    void Orbit(float deltaYaw, float deltaPitch);
    void ZoomBy(float factor);
    void Pan(const QPointF& pixels);
    void Reset();

    float Yaw() const { return m_fYaw; }
    float Pitch() const { return m_fPitch; }
    float Zoom() const { return m_fZoom; }

    // World to view rotation: x right, y up, z towards the viewer.
    QMatrix4x4 Rotation() const;
    // World to screen: x and y in pixels of the viewport, z the depth (larger is nearer).
    QMatrix4x4 ScreenMatrix(const QRectF& viewport) const;

private:
    QVector3D m_target;
    float m_fRadius = 1.0f;
    float m_fYaw = DefaultYaw;
    float m_fPitch = DefaultPitch;
    float m_fZoom = 1.0f;
    QPointF m_ptPan;
};
