#include "KorvPaths.h"

#include <QDir>
#include <QMutex>
#include <QStandardPaths>

QString KorvPaths::ConfigDir()
{
    QString dir = qEnvironmentVariable("KORV_CONFIG_DIR");
    if (dir.isEmpty())
        dir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/korv");
    // Every setting read and log line asks: the folder is made once, not checked on disk each time.
    static QMutex mutex;
    static QString made;
    QMutexLocker locker(&mutex);
    if (dir != made && QDir().mkpath(dir))
        made = dir;
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
