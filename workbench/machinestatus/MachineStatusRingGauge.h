#pragma once

#include <QWidget>

// A percentage drawn as a 270° ring with a colour gradient and the number in the middle.
class MachineStatusRingGauge : public QWidget
{
    Q_OBJECT

public:
    explicit MachineStatusRingGauge(QWidget* parent = nullptr);

    int Value() const { return m_iValue; }
    int MaxValue() const { return m_iMaxValue; }

Q_SIGNALS:
    void ValueChanged(int value);

public Q_SLOTS:
    void SetValue(int value);
    void SetMaxValue(int maxValue);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_iValue = 0;
    int m_iMaxValue = 120;
};
