#include "HostOptions.h"
#include "HostWindow.h"
#include "PluginInterface.h"
#include "PluginLoader.h"
#include "WorkbenchPlugin.h"

#include <QFile>
#include <QImage>
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

    void brokenLibrariesAreReportedAndSkipped()
    {
        PluginLoader loader;
        QList<LoadedPlugin> plugins = loader.LoadFolder(m_pluginDir.path());
        QCOMPARE(plugins.size(), 1);
        QCOMPARE(plugins.first().strName, QStringLiteral("CamPluginFile"));
        QCOMPARE(plugins.first().strVersion, QStringLiteral("1.0.0"));

        const QStringList errors = loader.Errors();
        QCOMPARE(errors.size(), 2);
        QVERIFY(errors.at(0).contains(QStringLiteral("libgarbage.so: cannot load")));
        QVERIFY(errors.at(1).contains(
            QStringLiteral("libnoentry.so: not a workbench plug-in, missing createPlugin, get_plugin_name, "
                           "get_plugin_version")));
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
            QToolButton* button = window.WorkbenchButtons().first();
            QVERIFY(plugin->isWorkbenchActive());

            plugin->setPluginEnabled(Plugin::WorkbenchPluginType::File, false);
            QVERIFY(!button->isEnabled());
            plugin->setPluginEnabled(Plugin::WorkbenchPluginType::File, true);
            QVERIFY(button->isEnabled());
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
        QVERIFY(!HostOptions().Parse({"korv", "--screenshot-delay", "soon"}, error));
        QVERIFY(!HostOptions().Parse({"korv", "--bogus"}, error));
        QVERIFY(error.contains(QStringLiteral("--bogus")));
        QVERIFY(!HostOptions().Parse({"korv", "--plugin-dir"}, error));
        QVERIFY(!HostOptions().Parse({"korv", "--lang", "de"}, error));
        HostOptions english;
        QVERIFY(english.Parse({"korv", "--lang", "en", "--version"}, error));
        QCOMPARE(english.strLanguage, QStringLiteral("en"));
        QVERIFY(english.bVersion && english.WithoutWindow());
    }

    void listPluginsPrintsOneLineEachAndSurvivesBrokenOnes_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("displayName");
        QTest::newRow("chinese") << "zh" << QStringLiteral("文件");
        QTest::newRow("english") << "en" << QStringLiteral("Files");
    }

    void listPluginsPrintsOneLineEachAndSurvivesBrokenOnes()
    {
        QFETCH(QString, language);
        QFETCH(QString, displayName);
        QProcess korv;
        // No display needed: the listing opens no window.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.remove(QStringLiteral("DISPLAY"));
        korv.setProcessEnvironment(env);
        korv.start(QStringLiteral(KORV_EXE),
                   {"--lang", language, "--list-plugins", "--plugin-dir", m_pluginDir.path()});
        QVERIFY(korv.waitForFinished(30000));
        QCOMPARE(korv.exitStatus(), QProcess::NormalExit);
        QCOMPARE(korv.exitCode(), 0);
        const QString out = QString::fromUtf8(korv.readAllStandardOutput());
        QCOMPARE(out, QStringLiteral("CamPluginFile\t1.0.0\t%1\t5\n").arg(displayName));
        const QString err = QString::fromUtf8(korv.readAllStandardError());
        QVERIFY2(err.contains(QStringLiteral("skipped plug-in")) && err.contains(QStringLiteral("libnoentry.so")),
                 qPrintable(err));
    }

    void screenshotIsWrittenAndTheHostExits()
    {
        const QString shot = m_configDir.filePath(QStringLiteral("shot.png"));
        QProcess korv;
        korv.start(QStringLiteral(KORV_EXE),
                   {"--plugin-dir", m_pluginDir.path(), "--screenshot", shot, "--screenshot-delay", "100"});
        QVERIFY(korv.waitForFinished(30000));
        QCOMPARE(korv.exitCode(), 0);
        const QImage image(shot);
        QVERIFY(!image.isNull());
        QVERIFY(image.width() > 200);
        // A normal run keeps the plug-in's developer chatter off the console.
        const QString out = QString::fromUtf8(korv.readAllStandardOutput() + korv.readAllStandardError());
        QVERIFY2(!out.contains(QStringLiteral("[CamPluginFile]")), qPrintable(out));
    }

private:
    QTemporaryDir m_pluginDir;
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestPluginLoader)
#include "tst_pluginloader.moc"
