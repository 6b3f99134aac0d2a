#include "MachineStatusCoordTableWidget.h"

#include <QHeaderView>
#include <algorithm>

MachineStatusCoordTableWidget::MachineStatusCoordTableWidget(QWidget* parent) : QTableWidget(parent) {}

void MachineStatusCoordTableWidget::SetColumnRatios(const QList<int>& ratios)
{
    m_listRatios = ratios;
    while (m_listRatios.size() > columnCount())
        m_listRatios.removeLast();
    while (m_listRatios.size() < columnCount())
        m_listRatios.append(1);
    m_iRatioTotal = 0;
    for (int ratio : m_listRatios)
        m_iRatioTotal += std::max(0, ratio);
    ApplyRatios();
}

void MachineStatusCoordTableWidget::resizeEvent(QResizeEvent* event)
{
    QTableWidget::resizeEvent(event);
    ApplyRatios();
}

void MachineStatusCoordTableWidget::showEvent(QShowEvent* event)
{
    QTableWidget::showEvent(event);
    ApplyRatios();
}

void MachineStatusCoordTableWidget::ApplyRatios()
{
    const int columns = columnCount();
    const int width = viewport()->width();
    if (m_iRatioTotal < 1 || columns < 1 || width < 1 || m_listRatios.size() != columns)
        return;
    QHeaderView* header = horizontalHeader();
    if (header->sectionResizeMode(0) != QHeaderView::Fixed)
        header->setSectionResizeMode(QHeaderView::Fixed);
    const int unit = width / m_iRatioTotal;
    int used = 0;
    for (int column = 0; column < columns - 1; ++column) {
        const int ratio = std::max(0, m_listRatios.at(column));
        // Very narrow tables still give every column at least a pixel.
        const int columnWidth = unit >= 1 ? ratio * unit : std::max(1, ratio * width / m_iRatioTotal);
        setColumnWidth(column, columnWidth);
        used += columnWidth;
    }
    setColumnWidth(columns - 1, unit >= 1 ? width - used : std::max(1, width - used));
}
