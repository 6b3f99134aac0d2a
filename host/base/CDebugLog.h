#pragma once

#include "KorvBaseExport.h"

#include <QString>

// The host's debug log: time-stamped lines appended to a file beside the settings.
// Safe to call from any thread.
class KORVBASE_EXPORT CDebugLog
{
public:
    static void AddLog(const QString& text);
    static QString LogFilePath();
};
