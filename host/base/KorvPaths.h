#pragma once

#include "KorvBaseExport.h"

#include <QString>

// Where the host keeps its settings and logs. KORV_CONFIG_DIR overrides the user's
// configuration folder so that tests and demos never touch real settings.
class KORVBASE_EXPORT KorvPaths
{
public:
    static QString ConfigDir();
    static QString SettingsFile();
    static QString DebugLogFile();
};
