#pragma once

#include <QColor>

// Colours of the log pane, shared by every part that writes to it.
namespace LogColors {
inline const QColor Success(0, 160, 0, 255);
inline const QColor Failure(220, 50, 50, 255);
inline const QColor Warning(220, 150, 0, 255);
inline const QColor Plain(51, 51, 51, 255);
} // namespace LogColors
