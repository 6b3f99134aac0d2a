#include "CProgressWidget.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

class tst_CProgressWidget : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void freeingTwiceOrAfterDestructionIsSafe();
    void quickJobKeepsIndicatorBriefly();
};

void tst_CProgressWidget::cleanup()
{
    CProgressWidget::SetTestResponder({});
}

void tst_CProgressWidget::freeingTwiceOrAfterDestructionIsSafe()
{
    int frees = 0;
    CProgressWidget::SetTestResponder(
        [&](const StructProgressRequest& request) { frees += request.eAction == StructProgressRequest::Free; });
    QPointer<CProgressWidget> widget = CProgressWidget::CreateAutoWidget(QStringLiteral("a"), QStringLiteral("b"));
    CProgressWidget::FreeAutoWidget(widget, true);
    CProgressWidget::FreeAutoWidget(widget, true);
    QTRY_VERIFY(widget.isNull());
    CProgressWidget::FreeAutoWidget(widget, true);
    CProgressWidget::FreeAutoWidget(nullptr, false);
    QCOMPARE(frees, 1);

    // Destroyed with the window it sat on, then freed by its creator.
    CProgressWidget::SetTestResponder({});
    auto* window = new QWidget;
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
    widget = CProgressWidget::CreateAutoWidget(QStringLiteral("a"), QStringLiteral("b"));
    QCOMPARE(widget->parentWidget(), window);
    delete window;
    QVERIFY(widget.isNull());
    CProgressWidget::FreeAutoWidget(widget, false);
}

void tst_CProgressWidget::quickJobKeepsIndicatorBriefly()
{
    QPointer<CProgressWidget> widget = CProgressWidget::CreateAutoWidget(QStringLiteral("删除"), QString());
    CProgressWidget::FreeAutoWidget(widget, false);
    QVERIFY(widget);
    QVERIFY(widget->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(widget.isNull(), CProgressWidget::MinimumVisibleMs * 5);
}

QTEST_MAIN(tst_CProgressWidget)
#include "tst_CProgressWidget.moc"
