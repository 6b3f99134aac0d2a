#include "KorvPaths.h"

#include <QDir>
#include <QStandardPaths>

QString KorvPaths::ConfigDir()
{
    QString dir = qEnvironmentVariable("KORV_CONFIG_DIR");
    if (dir.isEmpty())
        dir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/korv");
    QDir().mkpath(dir);
    return dir;
}

QString KorvPaths::SettingsFile()
{
    return ConfigDir() + QStringLiteral("/settings.ini");
}

QString KorvPaths::DebugLogFile()
{
    return ConfigDir() + QStringLiteral("/debug.log");
}
