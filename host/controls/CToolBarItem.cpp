#include "CToolBarItem.h"

#include "CToolButton.h"

#include <QHBoxLayout>

CToolBarItem::CToolBarItem(const QString& title, QWidget* parent) : CToolBar(title, parent) {}

void CToolBarItem::AddItem(const QString& icon, const QString& text, const int& flag, const QString& alternateIcon)
{
    m_listItems.append({icon, text, flag, alternateIcon});
}

QList<CToolButton*> CToolBarItem::CreateToolBlock(bool bCheckable)
{
    for (int i = int(m_listButtons.size()); i < m_listItems.size(); ++i) {
        const StructItem& item = m_listItems.at(i);
        auto* button = new CToolButton(item.strIcon, item.strText, item.strAlternateIcon, this);
        button->setCheckable(bCheckable && !(item.iFlag & ToolItemNoCheck));
        RowLayout()->addWidget(button);
        m_listButtons.append(button);
    }
    return m_listButtons;
}
