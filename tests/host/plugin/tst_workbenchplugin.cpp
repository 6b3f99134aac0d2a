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
};

QTEST_MAIN(TestWorkbenchPlugin)
#include "tst_workbenchplugin.moc"
