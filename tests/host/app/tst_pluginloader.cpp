#include "HostOptions.h"
#include "HostWindow.h"
#include "PluginInterface.h"
#include "PluginLoader.h"
#include "WorkbenchPlugin.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

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
            // Both of the plug-in's icons are pictures the button can show.
            for (QIcon::State state : {QIcon::Off, QIcon::On})
                QVERIFY(!window.WorkbenchButtons().first()->icon().availableSizes(QIcon::Normal, state).isEmpty());
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
        // Well-formed options are taken by every run of the host in the other tests.
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
        for (const char* broken : {"libgarbage.so: cannot load", "libnoentry.so: not a workbench plug-in"})
            QVERIFY2(err.contains(QLatin1String(broken)), qPrintable(err));
    }

private:
    QTemporaryDir m_pluginDir;
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestPluginLoader)
#include "tst_pluginloader.moc"
