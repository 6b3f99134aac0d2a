#pragma once

#include <QList>
#include <QTableWidget>

// A table whose column widths follow fixed integer ratios of the viewport width.
class MachineStatusCoordTableWidget : public QTableWidget
{
    Q_OBJECT

public:
    explicit MachineStatusCoordTableWidget(QWidget* parent = nullptr);

    void SetColumnRatios(const QList<int>& ratios);
    QList<int> ColumnRatios() const { return m_listRatios; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void ApplyRatios();

    QList<int> m_listRatios;
    int m_iRatioTotal = 0;
};
