#include "CTabToolWidget.h"
#include "CToolBarItem.h"

#include <QMainWindow>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

class tst_CTabToolWidget : public QObject
{
    Q_OBJECT

private slots:
    void doubleClickOnCurrentTabFoldsTools();
};

void tst_CTabToolWidget::doubleClickOnCurrentTabFoldsTools()
{
    CTabToolWidget tabs;
    QList<QToolBar*> bars;
    for (const QString& title : {QStringLiteral("功能"), QStringLiteral("其他")}) {
        auto* page = new QMainWindow;
        page->setWindowFlags(Qt::Widget);
        page->setCentralWidget(new QWidget);
        auto* bar = new CToolBarItem(title, page);
        page->addToolBar(bar);
        bars.append(bar);
        tabs.addTab(page, title);
    }
    tabs.resize(500, 300);
    tabs.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tabs));
    QSignalSpy folded(&tabs, &CTabToolWidget::SignalToolsFoldChanged);
    const QPoint firstTab = tabs.tabBar()->tabRect(0).center();

    // A double click on a tab that is not current does not fold.
    QTest::mouseDClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(1).center());
    tabs.setCurrentIndex(0);
    QCOMPARE(folded.count(), 0);

    QTest::mouseDClick(tabs.tabBar(), Qt::LeftButton, {}, firstTab);
    QVERIFY(tabs.ToolsFolded());
    QCOMPARE(folded.count(), 1);
    QVERIFY(!bars.at(0)->isVisible());
    tabs.setCurrentIndex(1);
    QVERIFY(!bars.at(1)->isVisible()); // the fold holds for every page

    tabs.SetToolsFolded(false);
    QVERIFY(bars.at(1)->isVisible());
    QCOMPARE(folded.count(), 2);
}

QTEST_MAIN(tst_CTabToolWidget)
#include "tst_CTabToolWidget.moc"
