#pragma once

#include "LoadedPlugin.h"

#include <QList>
#include <QStringList>

// Finds plug-in libraries in a folder, resolves their entry points and creates
// their plug-in objects. Libraries that cannot be used are reported and skipped.
class PluginLoader
{
public:
    QList<LoadedPlugin> LoadFolder(const QString& dir);
    // Loads one library; on failure returns false and says why in `error`.
    bool LoadLibrary(const QString& filePath, LoadedPlugin& result, QString& error);
    // Cleans up and deletes every plug-in object still alive.
    static void DeletePlugins(QList<LoadedPlugin>& plugins);
    // Deletes the plug-in objects, drains the global thread pool (bounded), then unloads the libraries.
    static void UnloadAll(QList<LoadedPlugin>& plugins, int drainBoundMs = 1000);

    QStringList Errors() const { return m_listErrors; }

private:
    QStringList m_listErrors;
};
