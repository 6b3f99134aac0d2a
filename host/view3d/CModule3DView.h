#pragma once

#include "KorvView3DExport.h"
#include "MachineModel.h"
#include "ViewCamera.h"

#include <QPoint>
#include <QWidget>
#include <memory>

// Machine axis positions: x, y, z in mm, a, b, c in degrees.
struct Struct3DMotionData
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
};

// A rectangular stock block. The size runs along X, Y and Z in mm; the position is the block's
// corner with the smallest coordinates, in the stock frame of the machine model (which rides on the
// rotary table). A block with the name of an existing one replaces it.
struct Struct3DStockParameter
{
    QString strName;
    double dSizeX = 0.0;
    double dSizeY = 0.0;
    double dSizeZ = 0.0;
    double dPosX = 0.0;
    double dPosY = 0.0;
    double dPosZ = 0.0;
};

// Shows a machine from its model file, its axes at the reported position, and the stock on its table.
// Drawn in software with QPainter. Drag with the left button orbits, with the right or middle button
// pans, the wheel zooms, a double click restores the view, a click on the view cube looks at that side.
class KORVVIEW3D_EXPORT CModule3DView : public QWidget
{
    Q_OBJECT

public:
    explicit CModule3DView(QWidget* parent = nullptr);
    ~CModule3DView() override;

    // Loads a model; on failure the view is left empty (a model shown before is dropped) and the
    // reason is written to the debug log.
    bool LoadMachine(const QString& path);
    bool GetMachineReady() const;
    QString MachineName() const;

    // False (and nothing moves) before a model is loaded or for a position that is not a number.
    bool SetMachinePos(const Struct3DMotionData& motion);
    Struct3DMotionData MachinePos() const { return m_motion; }

    // bReplace drops the blocks shown so far. False before a model is loaded or for an empty size.
    bool CreateStock(Struct3DStockParameter stock, bool bReplace);
    int StockCount() const { return int(m_listStocks.size()); }

    void SetViewCubeVisible(bool bVisible);
    bool IsViewCubeVisible() const { return m_bViewCubeVisible; }
    const ViewCamera& Camera() const { return m_camera; }
    void ResetView();

    QSize sizeHint() const override { return {480, 360}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QRectF ViewCubeArea() const;

    std::unique_ptr<MachineModel> m_pModel;
    QList<Struct3DStockParameter> m_listStocks;
    Struct3DMotionData m_motion;
    ViewCamera m_camera;
    bool m_bViewCubeVisible = true;
    QPoint m_ptPress;
    QPoint m_ptLast;
    Qt::MouseButton m_eDragButton = Qt::NoButton;
};
