#include "ViewCamera.h"

#include <QtMath>

void ViewCamera::SetTarget(const QVector3D& centre, float radius)
{
    m_target = centre;
    m_fRadius = radius > 0 ? radius : 1.0f;
}

void ViewCamera::SetAngles(float yaw, float pitch)
{
    m_fYaw = std::remainder(yaw, 360.0f);
    m_fPitch = qBound(-90.0f, pitch, 90.0f);
}

void ViewCamera::Orbit(float deltaYaw, float deltaPitch)
{
    SetAngles(m_fYaw + deltaYaw, m_fPitch + deltaPitch);
}

void ViewCamera::ZoomBy(float factor)
{
    if (factor > 0)
        m_fZoom = qBound(MinZoom, m_fZoom * factor, MaxZoom);
}

void ViewCamera::Pan(const QPointF& pixels)
{
    m_ptPan += pixels;
}

void ViewCamera::Reset()
{
    m_fYaw = DefaultYaw;
    m_fPitch = DefaultPitch;
    m_fZoom = 1.0f;
    m_ptPan = QPointF();
}

QMatrix4x4 ViewCamera::Rotation() const
{
    QMatrix4x4 rotation;
    rotation.rotate(m_fPitch, 1, 0, 0);
    // Turns the Z-up world so that Z points up the screen and +Y away from the viewer.
    rotation.rotate(-90, 1, 0, 0);
    rotation.rotate(m_fYaw, 0, 0, 1);
    return rotation;
}

QMatrix4x4 ViewCamera::ScreenMatrix(const QRectF& viewport) const
{
    const float scale = 0.48f * float(qMin(viewport.width(), viewport.height())) / m_fRadius * m_fZoom;
    QMatrix4x4 screen;
    screen.translate(float(viewport.center().x() + m_ptPan.x()), float(viewport.center().y() + m_ptPan.y()));
    screen.scale(scale, -scale, scale);
    screen *= Rotation();
    screen.translate(-m_target);
    return screen;
}
