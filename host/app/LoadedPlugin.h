#pragma once

#include <QString>

#include <memory>

class QLibrary;
namespace Plugin {
class PluginInterface;
}

// A plug-in library kept loaded for as long as its plug-in object lives.
struct LoadedPlugin
{
    QString strFilePath;
    QString strName;    // get_plugin_name()
    QString strVersion; // get_plugin_version()
    std::shared_ptr<QLibrary> library;
    Plugin::PluginInterface* pPlugin = nullptr;
};
