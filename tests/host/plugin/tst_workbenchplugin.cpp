#include "WorkbenchPlugin.h"

#include <QApplication>
#include <QTest>
#include <QWidget>

namespace {
// The smallest workbench a host could load.
class ToyWorkbench : public Plugin::WorkbenchPlugin
{
public:
    std::string getName() const override { return "TOY"; }
    std::string getVersion() const override { return "0.1"; }
    std::string getDescription() const override { return "toy"; }
    std::string getVendor() const override { return "test"; }
    bool initialize() override { return true; }
    void cleanup() override {}
    bool isInitialized() const override { return true; }
    void registerPythonBindings() override {}
    std::vector<std::string> getDependencies() const override { return {}; }
    bool isActive() const override { return true; }
    void setActive(bool) override {}
    int getWorkbenchType() const override { return 3; }
    std::string getCategory() const override { return "C"; }
    std::string getDisplayName() const override { return "Toy"; }
    std::vector<unsigned char> getIcon(int) const override { return {}; }
    std::string getCategoryDescription() const override { return ""; }
    std::string getTooltip() const override { return ""; }
    int getPluginType() const override { return getWorkbenchType(); }
    bool hasSettingsPage() const override { return false; }
    QWidget* createWidget(QWidget* parent) override { return new QWidget(parent); }
};

using Call = QPair<Plugin::PluginOperationType, Plugin::WorkbenchPluginType>;
} // namespace

class TestWorkbenchPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void activationIsReportedOnceEachWay()
    {
        ToyWorkbench toy;
        QList<Call> calls;
        toy.setPluginOperationCallback([&calls](auto op, auto type) { calls.append({op, type}); });

        QVERIFY(toy.activateWorkbench());
        QVERIFY(toy.activateWorkbench());
        QVERIFY(toy.isWorkbenchActive());
        QVERIFY(toy.isWorkbenchInitialized());
        toy.deactivateWorkbench();
        toy.deactivateWorkbench();
        QVERIFY(!toy.isWorkbenchActive());

        const auto own = Plugin::WorkbenchPluginType::Simulation;
        QCOMPARE(calls, (QList<Call>{{Plugin::PluginOperationType::Activate, own},
                                     {Plugin::PluginOperationType::Deactivate, own}}));
    }

    void requestsForTheHostGoThroughTheCallback()
    {
        ToyWorkbench toy;
        QList<Call> calls;
        toy.activatePlugin(Plugin::WorkbenchPluginType::File); // no callback yet: nothing happens
        toy.setPluginOperationCallback([&calls](auto op, auto type) { calls.append({op, type}); });

        toy.activatePlugin(Plugin::WorkbenchPluginType::File);
        toy.setPluginEnabled(Plugin::WorkbenchPluginType::Design, false);
        QVERIFY(!toy.isPluginEnabled(Plugin::WorkbenchPluginType::Design));
        toy.setPluginEnabled(Plugin::WorkbenchPluginType::Design, true);
        QVERIFY(toy.isPluginEnabled(Plugin::WorkbenchPluginType::Design));
        toy.closeApp();

        QCOMPARE(calls.size(), 4);
        QCOMPARE(calls.at(0), Call(Plugin::PluginOperationType::SwitchTo, Plugin::WorkbenchPluginType::File));
        QCOMPARE(calls.at(1), Call(Plugin::PluginOperationType::Disable, Plugin::WorkbenchPluginType::Design));
        QCOMPARE(calls.at(2), Call(Plugin::PluginOperationType::Enable, Plugin::WorkbenchPluginType::Design));
        QCOMPARE(calls.at(3).first, Plugin::PluginOperationType::CloseApp);
    }

    void cleanupDeactivatesAndNoticesAreRemembered()
    {
        ToyWorkbench toy;
        QVERIFY(toy.activateWorkbench());
        toy.sendWorkbenchOperationNotice(6, 5);
        QCOMPARE(toy.lastNoticeType(), 6);
        toy.cleanupWorkbench();
        QVERIFY(!toy.isWorkbenchActive());
        QVERIFY(!toy.isWorkbenchInitialized());
    }

    void typeChainReachesTheBase()
    {
        ToyWorkbench toy;
        QVERIFY(toy.getTypeId().isDerivedFrom(Plugin::PluginInterface::getClassTypeId()));
        QVERIFY(toy.isDerivedFrom(Base::BaseClass::getClassTypeId()));
        QCOMPARE(QByteArray(toy.getTypeName()), QByteArray("Plugin::WorkbenchPlugin"));
        QCOMPARE(toy.getType(), Plugin::PluginType::Workbench);
    }
};

QTEST_MAIN(TestWorkbenchPlugin)
#include "tst_workbenchplugin.moc"
