#include "HostOptions.h"
#include "HostWindow.h"
#include "PluginInterface.h"
#include "PluginLoader.h"
#include "WorkbenchPlugin.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestPluginLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_pluginDir.isValid());
        QVERIFY(m_configDir.isValid());
        qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
        QVERIFY(QFile::copy(QStringLiteral(FILE_PLUGIN), m_pluginDir.filePath(QStringLiteral("libCamPluginFile.so"))));
        QVERIFY(QFile::copy(QStringLiteral(NOENTRY_PLUGIN), m_pluginDir.filePath(QStringLiteral("libnoentry.so"))));
        QFile garbage(m_pluginDir.filePath(QStringLiteral("libgarbage.so")));
        QVERIFY(garbage.open(QIODevice::WriteOnly));
        garbage.write("this is not a shared library\n");
    }

    void brokenLibrariesAreReportedAndSkipped()
    {
        PluginLoader loader;
        QList<LoadedPlugin> plugins = loader.LoadFolder(m_pluginDir.path());
        QCOMPARE(plugins.size(), 1);
        QCOMPARE(plugins.first().strName, QStringLiteral("CamPluginFile"));
        const QStringList errors = loader.Errors();
        QCOMPARE(errors.size(), 2);
        QVERIFY(errors.at(0).contains(QStringLiteral("libgarbage.so: cannot load")));
        QVERIFY(errors.at(1).contains(QStringLiteral("libnoentry.so: not a workbench plug-in, missing createPlugin")));
        PluginLoader::UnloadAll(plugins);
        QVERIFY(plugins.isEmpty());
    }

    void windowShowsTheWorkbenchAndObeysItsRequests()
    {
        PluginLoader loader;
        QList<LoadedPlugin> plugins = loader.LoadFolder(m_pluginDir.path());
        QCOMPARE(plugins.size(), 1);
        {
            HostWindow window;
            auto* plugin = dynamic_cast<Plugin::WorkbenchPlugin*>(plugins.first().pPlugin);
            QVERIFY(plugin);
            QVERIFY(window.AddWorkbench(plugin));
            QVERIFY(!window.AddWorkbench(plugin)); // one button per workbench type
            QCOMPARE(window.WorkbenchButtons().size(), 1);
            plugin->setPluginEnabled(Plugin::WorkbenchPluginType::File, false);
            QVERIFY(!window.WorkbenchButtons().first()->isEnabled());
            PluginLoader::DeletePlugins(plugins);
        }
        // The window deleted the widget the plug-in placed in it; now its library may go.
        PluginLoader::UnloadAll(plugins);
        QVERIFY(plugins.isEmpty());
    }

    void optionsAreParsedStrictly()
    {
        HostOptions options;
        QString error;
        QVERIFY(
            options.Parse({"korv", "--plugin-dir", "/p", "--screenshot", "s.png", "--screenshot-delay", "5"}, error));
        QCOMPARE(options.ResolvePluginDir(QStringLiteral("/app")), QStringLiteral("/p"));
        QCOMPARE(options.iScreenshotDelayMs, 5);
        for (const QStringList& args :
             {QStringList{"korv", "--screenshot-delay", "soon"}, QStringList{"korv", "--bogus"},
              QStringList{"korv", "--plugin-dir"}, QStringList{"korv", "--lang", "de"}})
            QVERIFY2(!HostOptions().Parse(args, error) && error.contains(args.at(1)), qPrintable(error));
        QVERIFY(options.Parse({"korv", "--version"}, error));
        QVERIFY(options.WithoutWindow());
    }

    void listPluginsPrintsOneLineEachAndSurvivesBrokenOnes()
    {
        QProcess korv;
        // No display needed: the listing opens no window.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.remove(QStringLiteral("DISPLAY"));
        korv.setProcessEnvironment(env);
        korv.start(QStringLiteral(KORV_EXE), {"--lang", "en", "--list-plugins", "--plugin-dir", m_pluginDir.path()});
        QVERIFY(korv.waitForFinished(30000));
        QCOMPARE(korv.exitCode(), 0);
        const QString out = QString::fromUtf8(korv.readAllStandardOutput());
        QCOMPARE(out, QStringLiteral("CamPluginFile\t1.0.0\tFiles\t5\n"));
        const QString err = QString::fromUtf8(korv.readAllStandardError());
        QVERIFY2(err.contains(QStringLiteral("skipped plug-in")) && err.contains(QStringLiteral("libnoentry.so")),
                 qPrintable(err));
    }

    void aNormalRunKeepsTheConsoleQuiet()
    {
        const QString shot = m_configDir.filePath(QStringLiteral("shot.png"));
        QProcess korv;
        korv.start(QStringLiteral(KORV_EXE),
                   {"--plugin-dir", m_pluginDir.path(), "--screenshot", shot, "--screenshot-delay", "100"});
        QVERIFY(korv.waitForFinished(30000));
        const QString out = QString::fromUtf8(korv.readAllStandardOutput() + korv.readAllStandardError());
        QVERIFY2(!out.contains(QStringLiteral("[CamPluginFile]")), qPrintable(out));
    }

private:
    QTemporaryDir m_pluginDir;
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestPluginLoader)
#include "tst_pluginloader.moc"
