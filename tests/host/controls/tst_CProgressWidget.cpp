#include "CProgressWidget.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

class tst_CProgressWidget : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void responderRecordsCreateAndFree();
    void freeingTwiceOrAfterDestructionIsSafe();
    void shownOverActiveWindowWithoutBlocking();
    void quickJobKeepsIndicatorBriefly();
};

void tst_CProgressWidget::cleanup()
{
    CProgressWidget::SetTestResponder({});
}

void tst_CProgressWidget::responderRecordsCreateAndFree()
{
    QList<StructProgressRequest> requests;
    CProgressWidget::SetTestResponder([&](const StructProgressRequest& request) { requests.append(request); });
    QPointer<CProgressWidget> widget =
        CProgressWidget::CreateAutoWidget(QStringLiteral("删除"), QStringLiteral("正在删除，请稍候"));
    QVERIFY(widget);
    QVERIFY(!widget->isVisible());
    CProgressWidget::FreeAutoWidget(widget, false);

    QCOMPARE(requests.size(), 2);
    QCOMPARE(requests.at(0).eAction, StructProgressRequest::Create);
    QCOMPARE(requests.at(0).strTitle, QStringLiteral("删除"));
    QCOMPARE(requests.at(0).strText, QStringLiteral("正在删除，请稍候"));
    QCOMPARE(requests.at(1).eAction, StructProgressRequest::Free);
    QCOMPARE(requests.at(1).strTitle, QStringLiteral("删除"));
    QCOMPARE(requests.at(1).bImmediately, false);
    // A hidden indicator has nothing to flash, so it goes at once.
    QTRY_VERIFY(widget.isNull());
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

void tst_CProgressWidget::shownOverActiveWindowWithoutBlocking()
{
    QWidget window;
    window.resize(600, 400);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QPointer<CProgressWidget> widget =
        CProgressWidget::CreateAutoWidget(QStringLiteral("删除文件夹"), QStringLiteral("正在删除文件夹，请稍候"));
    QVERIFY(widget);
    QVERIFY(widget->isVisible());
    QCOMPARE(widget->Title(), QStringLiteral("删除文件夹"));
    QVERIFY(window.frameGeometry().contains(widget->frameGeometry().center()));
    // The event loop keeps running while the indicator is up.
    bool bTicked = false;
    QTimer::singleShot(1, this, [&] { bTicked = true; });
    QTRY_VERIFY(bTicked);
    CProgressWidget::FreeAutoWidget(widget, true);
    QVERIFY(!widget->isVisible());
    QTRY_VERIFY(widget.isNull());
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
