#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "plugin/CamPluginFile.h"
#include "workspace/Workspace.h"

#include <QImage>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <iostream>
#include <sstream>

namespace {
// Everything the plug-in writes to the console or to Qt's message handler while it lives.
class ConsoleCapture
{
public:
    ConsoleCapture() : m_pOld(std::cout.rdbuf(m_stream.rdbuf()))
    {
        s_listMessages.clear();
        m_oldHandler = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { s_listMessages.append(text); });
    }
    ~ConsoleCapture()
    {
        qInstallMessageHandler(m_oldHandler);
        std::cout.rdbuf(m_pOld);
    }
    QStringList lines() const
    {
        return QString::fromStdString(m_stream.str()).split(QLatin1Char('\n'), Qt::SkipEmptyParts) + s_listMessages;
    }

private:
    static inline QStringList s_listMessages;
    std::ostringstream m_stream;
    std::streambuf* m_pOld;
    QtMessageHandler m_oldHandler = nullptr;
};
} // namespace

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
        QVERIFY(type.isValid());
        QCOMPARE(type.getParent(), Plugin::WorkbenchPlugin::getClassTypeId());
        std::unique_ptr<CamPlugin::CamPluginFile> made(static_cast<CamPlugin::CamPluginFile*>(type.createInstance()));
        QVERIFY(made);
        QCOMPARE(made->getTypeId(), type);
    }

    void initializeTwiceAndCleanup()
    {
        CamPlugin::CamPluginFile plugin;
        ConsoleCapture console;
        QVERIFY(plugin.initialize());
        QVERIFY(plugin.isInitialized());
        QVERIFY(plugin.isActive());
        QVERIFY(plugin.initialize());
        plugin.cleanup();
        plugin.cleanup(); // a second clean-up says nothing
        QVERIFY(!plugin.isInitialized());
        // Life-cycle chatter is developer detail: a normal run keeps the console quiet.
        QVERIFY2(console.lines().isEmpty(), qPrintable(console.lines().join(QLatin1Char('\n'))));
    }

    void activityFollowsInitialisation()
    {
        CamPlugin::CamPluginFile plugin;
        plugin.setActive(true);
        QVERIFY(!plugin.isActive());

        plugin.initialize();
        plugin.setActive(false);
        QVERIFY(!plugin.isActive());
        plugin.setActive(true);
        QVERIFY(plugin.isActive());
        plugin.cleanup();
        QVERIFY(!plugin.isActive());
        plugin.setActive(true);
        QVERIFY(!plugin.isActive());

        QVERIFY(plugin.initialize()); // runs in full again after a clean-up
        QVERIFY(plugin.isActive());
    }

    void iconsArePngForKnownStatesOnly()
    {
        CamPlugin::CamPluginFile plugin;
        for (int state : {0, 1}) {
            const std::vector<unsigned char> bytes = plugin.getIcon(state);
            QVERIFY(bytes.size() > 8);
            const QImage image = QImage::fromData(bytes.data(), static_cast<int>(bytes.size()), "PNG");
            QVERIFY(!image.isNull());
        }
        QVERIFY(plugin.getIcon(2).empty());
        QVERIFY(plugin.getIcon(-1).empty());
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
        QCOMPARE(workspace->PluginObject(), &plugin);
        QSignalSpy silent(workspace, &Workspace::SignalSilentConnectStarted);

        plugin.sendWorkbenchOperationNotice(5, 5);
        plugin.sendWorkbenchOperationNotice(7, 1);
        QCOMPARE(silent.count(), 0);
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
            QVERIFY(orphan);
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
