#include "HostOptions.h"
#include "HostWindow.h"
#include "PluginInterface.h"
#include "PluginLoader.h"
#include "WorkbenchPlugin.h"

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <cstdio>
#include <memory>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("korv"));

    HostOptions options;
    QString error;
    if (!options.Parse(QApplication::arguments(), error)) {
        std::fprintf(stderr, "korv: %s\n%s", qPrintable(error), qPrintable(HostOptions::Usage()));
        return 2;
    }

    PluginLoader loader;
    QList<LoadedPlugin> plugins = loader.LoadFolder(options.ResolvePluginDir(QApplication::applicationDirPath()));
    for (const QString& failure : loader.Errors())
        std::fprintf(stderr, "korv: skipped plug-in %s\n", qPrintable(failure));

    if (options.bListPlugins) {
        for (const LoadedPlugin& plugin : plugins) {
            std::printf("%s\t%s\t%s\t%d\n", qPrintable(plugin.strName), qPrintable(plugin.strVersion),
                        plugin.pPlugin->getDisplayName().c_str(), plugin.pPlugin->getWorkbenchType());
        }
        std::fflush(stdout);
        PluginLoader::UnloadAll(plugins);
        return 0;
    }

    int exitCode = 0;
    {
        auto ownedWindow = std::make_unique<HostWindow>();
        HostWindow& window = *ownedWindow;
        for (LoadedPlugin& plugin : plugins) {
            if (!window.AddWorkbench(plugin.pPlugin))
                std::fprintf(stderr, "korv: plug-in %s did not start\n", qPrintable(plugin.strName));
        }
        window.show();
        // Workbenches hear that the host is up only once the window is on screen.
        QTimer::singleShot(0, &window, [&plugins]() {
            for (LoadedPlugin& plugin : plugins) {
                auto* workbench = dynamic_cast<Plugin::WorkbenchPlugin*>(plugin.pPlugin);
                if (workbench && workbench->isInitialized())
                    workbench->sendWorkbenchOperationNotice(6, workbench->getWorkbenchType());
            }
        });
        if (!options.strScreenshotFile.isEmpty()) {
            QTimer::singleShot(options.iScreenshotDelayMs, &window, [&window, &options, &exitCode]() {
                if (!window.grab().save(options.strScreenshotFile, "PNG")) {
                    std::fprintf(stderr, "korv: cannot write %s\n", qPrintable(options.strScreenshotFile));
                    exitCode = 1;
                }
                QApplication::quit();
            });
        }
        const int result = QApplication::exec();
        if (exitCode == 0)
            exitCode = result;
        // Plug-ins go first; the window then deletes the widgets they placed in it, whose
        // owners stop their background work; only then may the libraries holding that code go.
        PluginLoader::DeletePlugins(plugins);
        ownedWindow.reset();
        PluginLoader::UnloadAll(plugins);
    }
    return exitCode;
}
