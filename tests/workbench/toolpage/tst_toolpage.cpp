#include "toolpage/ToolPage.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>

class TestToolPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_configDir.isValid());
        qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    }

    void actionsAreReportedAndUnknownIdsIgnored()
    {
        ToolPage page(new QLabel(QStringLiteral("content")));
        QSignalSpy triggered(&page, &ToolPage::SignalActionTriggered);
        page.Button(5)->click();
        QCOMPARE(triggered.count(), 1);
        QCOMPARE(triggered.first().first().toInt(), 5);
        QVERIFY(!page.Button(8));
        page.SetChecked(8, true);
        page.SetEnabled(8, false);
    }

    void theContentFollowsTheSelectedTab()
    {
        auto* content = new QLabel(QStringLiteral("content"));
        ToolPage page(content);
        QMainWindow* second = page.AddTab(QStringLiteral("其他"), new QLabel(QStringLiteral("own")));
        page.setCurrentIndex(1);
        QCOMPARE(second->centralWidget(), content);
        page.setCurrentIndex(0);
        QCOMPARE(qobject_cast<QMainWindow*>(page.widget(0))->centralWidget(), content);
    }

    void workspacePagesFollowTheToolButtons()
    {
        Workspace workspace;
        ToolPage* page = workspace.GetToolPage();
        QVERIFY(!page->Button(3)->isEnabled());
        QVERIFY(!page->Button(4)->isEnabled());
        QVERIFY(page->Button(7)->isChecked());
        QVERIFY(!workspace.PageBar()->isTabEnabled(Workspace::PageMachineStatus));

        // Without a machine the status page cannot be shown.
        page->Button(5)->click();
        QCOMPARE(workspace.PageBar()->currentIndex(), int(Workspace::PageFileTransfer));
        QVERIFY(!page->Button(5)->isChecked());

        workspace.PageBar()->setTabEnabled(Workspace::PageMachineStatus, true);
        page->SetEnabled(5, true);
        page->Button(5)->click();
        QCOMPARE(workspace.PageBar()->currentIndex(), int(Workspace::PageMachineStatus));
        QVERIFY(page->Button(5)->isChecked());
        QVERIFY(!page->Button(7)->isChecked());
        page->Button(7)->click();
        QCOMPARE(workspace.PageBar()->currentIndex(), int(Workspace::PageFileTransfer));
        QVERIFY(page->Button(7)->isChecked());
    }

private:
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestToolPage)
#include "tst_toolpage.moc"
