#include "CToolBarItem.h"
#include "toolpage/PanelManager.h"
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

    void buttonsAndBlocksInOrder()
    {
        auto* content = new QLabel(QStringLiteral("content"));
        ToolPage page(content);
        QCOMPARE(page.count(), 1);
        QCOMPARE(page.tabText(0), QStringLiteral("功能"));
        auto* window = qobject_cast<QMainWindow*>(page.widget(0));
        QVERIFY(window);
        QCOMPARE(window->centralWidget(), content);
        QVERIFY(!(window->dockOptions() & QMainWindow::AllowTabbedDocks));

        QCOMPARE(window->findChildren<CToolBarItem*>().size(), 4);

        const QList<QPair<int, QString>> expected = {{1, "新建连接"},  {2, "断开连接"}, {3, "绑定设备"},
                                                     {4, "解绑设备"},  {5, "设备状态"}, {7, "文件传输"},
                                                     {6, "同步文件夹"}};
        for (const auto& item : expected) {
            QAbstractButton* button = page.Button(item.first);
            QVERIFY2(button, qPrintable(item.second));
            QCOMPARE(button->text(), item.second);
        }
        QVERIFY(!page.Button(8));

        QSignalSpy triggered(&page, &ToolPage::SignalActionTriggered);
        page.Button(5)->click();
        QCOMPARE(triggered.count(), 1);
        QCOMPARE(triggered.first().first().toInt(), 5);
        page.SetChecked(7, true);
        QVERIFY(page.Button(7)->isChecked());
        page.SetChecked(8, true); // unknown ids are ignored
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

    void panelManagerIsNamedAndSized()
    {
        PanelManager manager;
        QCOMPARE(manager.objectName(), QStringLiteral("PanelManager"));
        QCOMPARE(manager.size(), QSize(400, 300));
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
