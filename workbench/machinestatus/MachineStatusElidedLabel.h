#pragma once

#include <QLabel>

// Shows its text cut with an ellipsis to its width, the full text as tooltip.
class MachineStatusElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit MachineStatusElidedLabel(QWidget* parent = nullptr);

    void SetFullText(const QString& text);
    QString FullText() const { return m_strFullText; }
    void SetExplicitToolTip(const QString& toolTip);
    // Fixes the width to that of as many "8" as the text has characters, so that
    // counters of equal length do not make the layout jump. Stays on once set.
    void SetFixedWidthBySample();

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Elide();

    QString m_strFullText;
    QString m_strExplicitToolTip;
    bool m_bFixedWidthBySample = false;
    int m_iSampleLength = 0;
};
