#pragma once

#include <QString>
#include <QStringList>

// Command line of the host application.
struct HostOptions
{
    QString strPluginDir;
    bool bListPlugins = false;
    QString strScreenshotFile;
    int iScreenshotDelayMs = 1500;

    // Fills the options from the arguments (program name first); on a bad
    // argument returns false and sets `error`.
    bool Parse(const QStringList& arguments, QString& error);
    // The plug-in folder: --plugin-dir, else KORV_PLUGIN_PATH, else "plugins" beside the executable.
    QString ResolvePluginDir(const QString& applicationDir) const;
    static QString Usage();
};
