#include "CToolButton.h"

#include "KorvFonts.h"

CToolButton::CToolButton(const QString& iconPath, const QString& text, const QString& alternateIconPath,
                         QWidget* parent)
    : QToolButton(parent), m_strIconPath(iconPath),
      m_strAlternateIconPath(alternateIconPath.isEmpty() ? iconPath : alternateIconPath), m_iconNormal(iconPath),
      m_iconAlternate(m_strAlternateIconPath)
{
    setText(text);
    setFont(FontCn_13);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    setIconSize(QSize(32, 32));
    setMinimumWidth(68);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::toggled, this, &CToolButton::UpdateIcon);
    connect(this, &QAbstractButton::pressed, this, &CToolButton::UpdateIcon);
    connect(this, &QAbstractButton::released, this, &CToolButton::UpdateIcon);
    UpdateIcon();
}

void CToolButton::UpdateIcon()
{
    setIcon(isChecked() || isDown() ? m_iconAlternate : m_iconNormal);
}
