#include "MachineStatusElidedLabel.h"

#include <QFontMetrics>

MachineStatusElidedLabel::MachineStatusElidedLabel(QWidget* parent) : QLabel(parent)
{
    setWordWrap(false);
    setStyleSheet(QStringLiteral("background-color: transparent; color: #00aa44;"));
}

void MachineStatusElidedLabel::SetFullText(const QString& text)
{
    m_strFullText = text;
    if (m_bFixedWidthBySample && !text.isEmpty() && text.size() != m_iSampleLength) {
        setFixedWidth(fontMetrics().horizontalAdvance(QString(text.size(), QLatin1Char('8'))));
        m_iSampleLength = int(text.size());
    }
    Elide();
}

void MachineStatusElidedLabel::SetExplicitToolTip(const QString& toolTip)
{
    m_strExplicitToolTip = toolTip;
    Elide();
}

void MachineStatusElidedLabel::SetFixedWidthBySample()
{
    m_bFixedWidthBySample = true;
    Elide();
}

QSize MachineStatusElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("...")), QLabel::minimumSizeHint().height()};
}

void MachineStatusElidedLabel::resizeEvent(QResizeEvent* event)
{
    Elide();
    QLabel::resizeEvent(event);
}

void MachineStatusElidedLabel::Elide()
{
    const QString shown = fontMetrics().elidedText(m_strFullText, Qt::ElideRight, width());
    if (text() != shown)
        setText(shown);
    if (!m_strExplicitToolTip.isEmpty())
        setToolTip(m_strExplicitToolTip);
    else
        setToolTip(shown != m_strFullText ? m_strFullText : QString());
}
