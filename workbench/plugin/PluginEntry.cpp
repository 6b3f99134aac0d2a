#include "CamPluginFile.h"

#include <QtCore/qglobal.h>

// Unmangled entry points the host resolves after loading the library.
extern "C" {

Q_DECL_EXPORT Plugin::PluginInterface* createPlugin()
{
    return new CamPlugin::CamPluginFile();
}

Q_DECL_EXPORT const char* get_plugin_name()
{
    return "CamPluginFile";
}

Q_DECL_EXPORT const char* get_plugin_version()
{
    return "1.0.0";
}
}
