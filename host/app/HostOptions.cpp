#include "HostOptions.h"

bool HostOptions::Parse(const QStringList& arguments, QString& error)
{
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& arg = arguments.at(i);
        const bool hasValue = i + 1 < arguments.size();
        if (arg == QLatin1String("--list-plugins")) {
            bListPlugins = true;
        } else if (arg == QLatin1String("--plugin-dir") && hasValue) {
            strPluginDir = arguments.at(++i);
        } else if (arg == QLatin1String("--screenshot") && hasValue) {
            strScreenshotFile = arguments.at(++i);
        } else if (arg == QLatin1String("--screenshot-delay") && hasValue) {
            bool ok = false;
            iScreenshotDelayMs = arguments.at(++i).toInt(&ok);
            if (!ok || iScreenshotDelayMs < 0) {
                error = QStringLiteral("--screenshot-delay needs a number of milliseconds");
                return false;
            }
        } else {
            error = QStringLiteral("unknown or incomplete option: %1").arg(arg);
            return false;
        }
    }
    return true;
}

QString HostOptions::ResolvePluginDir(const QString& applicationDir) const
{
    if (!strPluginDir.isEmpty())
        return strPluginDir;
    const QString fromEnv = qEnvironmentVariable("KORV_PLUGIN_PATH");
    if (!fromEnv.isEmpty())
        return fromEnv;
    return applicationDir + QStringLiteral("/plugins");
}

QString HostOptions::Usage()
{
    return QStringLiteral("usage: korv [--plugin-dir DIR] [--list-plugins] [--screenshot FILE [--screenshot-delay MS]]\n"
                          "  KORV_PLUGIN_PATH  plug-in folder when --plugin-dir is not given\n"
                          "  KORV_CONFIG_DIR   settings folder\n");
}
