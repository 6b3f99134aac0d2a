#include "PluginLoader.h"

#include "PluginInterface.h"

#include <QDir>
#include <QLibrary>
#include <QThreadPool>
#include <cstdio>

namespace {
using CreatePluginFn = Plugin::PluginInterface* (*)();
using TextFn = const char* (*)();
} // namespace

QList<LoadedPlugin> PluginLoader::LoadFolder(const QString& dir)
{
    QList<LoadedPlugin> plugins;
    const QFileInfoList files = QDir(dir).entryInfoList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
    for (const QFileInfo& info : files) {
        LoadedPlugin plugin;
        QString error;
        if (LoadLibrary(info.absoluteFilePath(), plugin, error))
            plugins.append(plugin);
        else
            m_listErrors.append(error);
    }
    return plugins;
}

bool PluginLoader::LoadLibrary(const QString& filePath, LoadedPlugin& result, QString& error)
{
    auto library = std::make_shared<QLibrary>(filePath);
    if (!library->load()) {
        error = QStringLiteral("%1: cannot load: %2").arg(filePath, library->errorString());
        return false;
    }
    const auto create = reinterpret_cast<CreatePluginFn>(library->resolve("createPlugin"));
    const auto name = reinterpret_cast<TextFn>(library->resolve("get_plugin_name"));
    const auto version = reinterpret_cast<TextFn>(library->resolve("get_plugin_version"));
    QStringList missing;
    if (!create)
        missing << QStringLiteral("createPlugin");
    if (!name)
        missing << QStringLiteral("get_plugin_name");
    if (!version)
        missing << QStringLiteral("get_plugin_version");
    if (!missing.isEmpty()) {
        error =
            QStringLiteral("%1: not a workbench plug-in, missing %2").arg(filePath, missing.join(QStringLiteral(", ")));
        library->unload();
        return false;
    }
    Plugin::PluginInterface* plugin = create();
    if (!plugin) {
        error = QStringLiteral("%1: createPlugin returned no object").arg(filePath);
        library->unload();
        return false;
    }
    result.strFilePath = filePath;
    result.strName = QString::fromUtf8(name());
    result.strVersion = QString::fromUtf8(version());
    result.library = library;
    result.pPlugin = plugin;
    return true;
}

void PluginLoader::DeletePlugins(QList<LoadedPlugin>& plugins)
{
    for (LoadedPlugin& plugin : plugins) {
        if (!plugin.pPlugin)
            continue;
        plugin.pPlugin->cleanup();
        delete plugin.pPlugin;
        plugin.pPlugin = nullptr;
    }
}

void PluginLoader::UnloadAll(QList<LoadedPlugin>& plugins, int drainBoundMs)
{
    DeletePlugins(plugins);
    // Unload only after every object is gone and no pool task runs their code any more. Owners
    // stop their tasks when they go, so this is quick; a task that hangs keeps its library loaded.
    if (QThreadPool::globalInstance()->waitForDone(drainBoundMs)) {
        for (LoadedPlugin& plugin : plugins)
            plugin.library->unload();
    } else {
        std::fprintf(stderr, "korv: background tasks still running, plug-in libraries stay loaded\n");
    }
    plugins.clear();
}
