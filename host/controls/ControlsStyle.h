#pragma once

#include "KorvControlsExport.h"

#include <QColor>
#include <QString>

// The look shared by every control of the library: light panels, dark grey text, one blue accent.
class KORVCONTROLS_EXPORT ControlsStyle
{
public:
    static QColor TextColor() { return QColor(0x33, 0x33, 0x33); }
    static QColor AccentColor() { return QColor(0x36, 0x8b, 0xd4); }
    static QColor BorderColor() { return QColor(0xdc, 0xdf, 0xe6); }
    static QColor PanelColor() { return QColor(0xff, 0xff, 0xff); }

    // Style sheet of a framed pop-up: title bar, body, buttons, line edits, lists and check boxes.
    static QString PopupStyleSheet();
    // Style sheet of push buttons only, for widgets that carry their own frame.
    static QString ButtonStyleSheet();
};
