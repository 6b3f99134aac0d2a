#pragma once

#include "CToolBar.h"
#include "KorvControlsExport.h"

#include <QList>

class CToolButton;

// Flags of an item; 0 is an ordinary tool.
enum EnumToolItemFlag
{
    ToolItemNormal = 0x0,
    ToolItemNoCheck = 0x1, // stays a plain push tool even in a checkable block
};

// A tool block that is described item by item and then built: AddItem collects the tools,
// CreateToolBlock makes their buttons.
class KORVCONTROLS_EXPORT CToolBarItem : public CToolBar
{
    Q_OBJECT

public:
    explicit CToolBarItem(const QString& title, QWidget* parent = nullptr);

    // icon and alternateIcon are image paths; the alternate shows while the button is checked or pressed.
    void AddItem(const QString& icon, const QString& text, const int& flag, const QString& alternateIcon);
    // Builds the buttons of the items added so far (once each) and returns all of them in item order.
    QList<CToolButton*> CreateToolBlock(bool bCheckable);

private:
    struct StructItem
    {
        QString strIcon;
        QString strText;
        int iFlag = ToolItemNormal;
        QString strAlternateIcon;
    };
    QList<StructItem> m_listItems;
    QList<CToolButton*> m_listButtons;
};
