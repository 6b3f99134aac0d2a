#include "HostOptions.h"
#include "HostWindow.h"
#include "KorvLanguage.h"
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
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    HostOptions options;
    QString error;
    if (!options.Parse(arguments, error)) {
        std::fprintf(stderr, "korv: %s\n%s", qPrintable(error), qPrintable(HostOptions::Usage()));
        return 2;
    }
    if (options.bVersion) {
        std::printf("korv %s\n", qPrintable(HostOptions::Version()));
        return 0;
    }

    // Listing the plug-ins opens no window, so it works without a display.
    std::unique_ptr<QCoreApplication> app;
    if (options.WithoutWindow())
        app = std::make_unique<QCoreApplication>(argc, argv);
    else
        app = std::make_unique<QApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korv"));
    QCoreApplication::setApplicationVersion(HostOptions::Version());
    const QString language = options.strLanguage.isEmpty() ? KorvLanguage::SystemLanguage() : options.strLanguage;
    if (!KorvLanguage::Apply(language))
        std::fprintf(stderr, "korv: no %s translation, the interface stays Chinese\n", qPrintable(language));

    PluginLoader loader;
    QList<LoadedPlugin> plugins = loader.LoadFolder(options.ResolvePluginDir(QCoreApplication::applicationDirPath()));
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
