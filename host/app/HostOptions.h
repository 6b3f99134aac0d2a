#pragma once

#include <QString>
#include <QStringList>

// Command line of the host application.
struct HostOptions
{
    QString strPluginDir;
    bool bListPlugins = false;
    bool bVersion = false;
    // "zh" or "en"; empty follows the system's language.
    QString strLanguage;
    QString strScreenshotFile;
    int iScreenshotDelayMs = 1500;

    // Fills the options from the arguments (program name first); on a bad
    // argument returns false and sets `error`.
    bool Parse(const QStringList& arguments, QString& error);
    // The plug-in folder: --plugin-dir, else KORV_PLUGIN_PATH, else "plugins" beside the executable
    // when that exists (a build tree), else the installed plug-in folder relative to the executable.
    QString ResolvePluginDir(const QString& applicationDir) const;
    // Whether the run needs no window (and so no display).
    bool WithoutWindow() const { return bVersion || bListPlugins; }
    static QString Version();
    static QString Usage();
};
