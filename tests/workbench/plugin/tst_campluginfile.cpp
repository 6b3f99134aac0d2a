#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "plugin/CamPluginFile.h"
#include "workspace/Workspace.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestCamPluginFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_configDir.isValid());
        qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    }

    void typeIsRegisteredWhenTheLibraryLoads()
    {
        const Base::Type type = Base::Type::fromName("CamPlugin::CamPluginFile");
        QCOMPARE(type.getParent(), Plugin::WorkbenchPlugin::getClassTypeId());
        std::unique_ptr<CamPlugin::CamPluginFile> made(static_cast<CamPlugin::CamPluginFile*>(type.createInstance()));
        QVERIFY(made && made->getTypeId() == type);
    }

    void activityFollowsInitialisation()
    {
        CamPlugin::CamPluginFile plugin;
        plugin.setActive(true);
        QVERIFY(!plugin.isActive());
        QVERIFY(plugin.initialize());
        QVERIFY(plugin.initialize());
        plugin.setActive(false);
        QVERIFY(!plugin.isActive());
        plugin.cleanup();
        plugin.cleanup();
        plugin.setActive(true);
        QVERIFY(!plugin.isActive() && !plugin.isInitialized());
        QVERIFY(plugin.initialize()); // runs in full again after a clean-up
        QVERIFY(plugin.isActive());
    }

    void noticeSixStartsTheSilentConnect()
    {
        // Only a machine used before is looked for.
        CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                            QString::fromLatin1(g_strSettingLastConnectMachineSN),
                                                            QStringLiteral("PB01TEST"), true);
        CamPlugin::CamPluginFile plugin;
        plugin.initialize();
        auto* workspace = qobject_cast<Workspace*>(plugin.createWidget(nullptr));
        QVERIFY(workspace);
        QSignalSpy silent(workspace, &Workspace::SignalSilentConnectStarted);
        plugin.sendWorkbenchOperationNotice(5, 5);
        plugin.sendWorkbenchOperationNotice(7, 1);
        plugin.sendWorkbenchOperationNotice(6, 3);
        QCOMPARE(silent.count(), 1);
    }

    void destructionDeletesOnlyAWidgetWithoutParent()
    {
        QPointer<QWidget> orphan;
        QWidget window;
        QPointer<QWidget> placed;
        {
            CamPlugin::CamPluginFile plugin;
            plugin.initialize();
            orphan = plugin.createWidget(nullptr);
        }
        QVERIFY(orphan.isNull());
        {
            CamPlugin::CamPluginFile plugin;
            plugin.initialize();
            placed = plugin.createWidget(&window);
        }
        // The window owns what was placed in it, and the widget no longer points at the plug-in.
        QVERIFY(!placed.isNull());
        QCOMPARE(qobject_cast<Workspace*>(placed.data())->PluginObject(), nullptr);
    }

private:
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestCamPluginFile)
#include "tst_campluginfile.moc"
