#include "CModule3DView.h"

#include "CDebugLog.h"
#include "MachineModelReader.h"
#include "ScenePainter.h"
#include "ShapeMesh.h"

#include <QDebug>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>

namespace {
bool allFinite(std::initializer_list<double> values)
{
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}
} // namespace

CModule3DView::CModule3DView(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(160, 120);
    setFocusPolicy(Qt::ClickFocus);
}

CModule3DView::~CModule3DView() = default;

bool CModule3DView::LoadMachine(const QString& path)
{
    QString error;
    std::optional<MachineModel> model = MachineModelReader::ReadFile(path, &error);
    if (!model) {
        m_pModel.reset();
        m_listStocks.clear();
        const QString line = QStringLiteral("3D机床模型加载失败: %1 (%2)").arg(path, error);
        CDebugLog::AddLog(line);
        qWarning().noquote() << line;
        update();
        return false;
    }
    m_pModel = std::make_unique<MachineModel>(std::move(*model));
    m_camera.SetTarget(m_pModel->BoundsCentre(), m_pModel->BoundsRadius());
    CDebugLog::AddLog(QStringLiteral("3D机床模型已加载: %1").arg(path));
    update();
    return true;
}

bool CModule3DView::GetMachineReady() const
{
    return m_pModel != nullptr;
}

QString CModule3DView::MachineName() const
{
    return m_pModel ? m_pModel->Name() : QString();
}

bool CModule3DView::SetMachinePos(const Struct3DMotionData& motion)
{
    if (!m_pModel || !allFinite({motion.x, motion.y, motion.z, motion.a, motion.b, motion.c}))
        return false;
    m_motion = motion;
    update();
    return true;
}

bool CModule3DView::CreateStock(Struct3DStockParameter stock, bool bReplace)
{
    if (!m_pModel || !allFinite({stock.dSizeX, stock.dSizeY, stock.dSizeZ, stock.dPosX, stock.dPosY, stock.dPosZ}))
        return false;
    if (stock.dSizeX <= 0 || stock.dSizeY <= 0 || stock.dSizeZ <= 0)
        return false;
    if (bReplace)
        m_listStocks.clear();
    const auto same = std::find_if(m_listStocks.begin(), m_listStocks.end(),
                                   [&](const Struct3DStockParameter& s) { return s.strName == stock.strName; });
    if (same != m_listStocks.end())
        *same = stock;
    else
        m_listStocks.append(stock);
    update();
    return true;
}

void CModule3DView::SetViewCubeVisible(bool bVisible)
{
    m_bViewCubeVisible = bVisible;
    update();
}

void CModule3DView::ResetView()
{
    m_camera.Reset();
    update();
}

QRectF CModule3DView::ViewCubeArea() const
{
    const qreal side = qBound(60.0, qMin(width(), height()) * 0.2, 110.0);
    return QRectF(width() - side - 8, 8, side, side);
}

void CModule3DView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QLinearGradient background(0, 0, 0, height());
    background.setColorAt(0, QColor(0xfb, 0xfc, 0xfd));
    background.setColorAt(1, QColor(0xe4, 0xe9, 0xef));
    painter.fillRect(rect(), background);
    if (!m_pModel)
        return;

    const AxisPositions axes{m_motion.x, m_motion.y, m_motion.z, m_motion.a, m_motion.b, m_motion.c};
    QList<ScenePolygon> faces = m_pModel->Faces(axes);
    QList<ScenePolygon> stockFaces;
    for (const Struct3DStockParameter& stock : m_listStocks) {
        const QVector3D size(float(stock.dSizeX), float(stock.dSizeY), float(stock.dSizeZ));
        const QVector3D corner(float(stock.dPosX), float(stock.dPosY), float(stock.dPosZ));
        stockFaces += ShapeMesh::Box(corner + size / 2.0f, size, QColor(0xe8, 0xb8, 0x6a));
    }
    faces += m_pModel->StockFaces(stockFaces, axes);
    ScenePainter::Paint(painter, m_camera.ScreenMatrix(rect()), faces);
    if (m_bViewCubeVisible)
        ScenePainter::PaintViewCube(painter, ViewCubeArea(), m_camera);
}

void CModule3DView::mousePressEvent(QMouseEvent* event)
{
    m_ptPress = m_ptLast = event->position().toPoint();
    m_eDragButton = event->button();
}

void CModule3DView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_eDragButton == Qt::NoButton)
        return;
    const QPoint point = event->position().toPoint();
    const QPoint delta = point - m_ptLast;
    m_ptLast = point;
    if (m_eDragButton == Qt::LeftButton)
        m_camera.Orbit(delta.x() * 0.5f, delta.y() * 0.5f);
    else
        m_camera.Pan(delta);
    update();
}

void CModule3DView::mouseReleaseEvent(QMouseEvent* event)
{
    const bool bClick = (event->position().toPoint() - m_ptPress).manhattanLength() < 4;
    if (bClick && m_eDragButton == Qt::LeftButton && m_bViewCubeVisible) {
        const int face = ScenePainter::ViewCubeFaceAt(event->position(), ViewCubeArea(), m_camera);
        if (face >= 0) {
            const QPointF angles = ScenePainter::ViewCubeFaceAngles(face);
            m_camera.SetAngles(float(angles.x()), float(angles.y()));
            update();
        }
    }
    m_eDragButton = Qt::NoButton;
}

void CModule3DView::mouseDoubleClickEvent(QMouseEvent*)
{
    ResetView();
}

void CModule3DView::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y();
    if (steps != 0) {
        m_camera.ZoomBy(std::pow(1.15f, steps / 120.0f));
        update();
    }
    event->accept();
}
