#include "HostOptions.h"

#include "KorvLanguage.h"

#include <QDir>
#include <QFileInfo>

bool HostOptions::Parse(const QStringList& arguments, QString& error)
{
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& arg = arguments.at(i);
        const bool hasValue = i + 1 < arguments.size();
        if (arg == QLatin1String("--list-plugins")) {
            bListPlugins = true;
        } else if (arg == QLatin1String("--version")) {
            bVersion = true;
        } else if (arg == QLatin1String("--lang") && hasValue) {
            strLanguage = arguments.at(++i);
            if (!KorvLanguage::IsSupported(strLanguage)) {
                error = QStringLiteral("--lang takes zh or en");
                return false;
            }
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
    const QString beside = applicationDir + QStringLiteral("/plugins");
    if (QFileInfo(beside).isDir())
        return beside;
    return QDir::cleanPath(applicationDir + QStringLiteral("/" KORV_PLUGINDIR_FROM_BINDIR));
}

QString HostOptions::Version()
{
    return QStringLiteral(KORV_VERSION);
}

QString HostOptions::Usage()
{
    return QStringLiteral("usage: korv [--lang zh|en] [--plugin-dir DIR] [--list-plugins] [--version]\n"
                          "            [--screenshot FILE [--screenshot-delay MS]]\n"
                          "  --lang            interface language (default: the system's, Chinese for zh*)\n"
                          "  KORV_PLUGIN_PATH  plug-in folder when --plugin-dir is not given\n"
                          "  KORV_CONFIG_DIR   settings folder\n");
}
