#include "CFixedSizePopWidget.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class tst_CFixedSizePopWidget : public QObject
{
    Q_OBJECT

private slots:
    void draggedByItsTitle();
    void escapeAndCloseMarkReject_data();
    void escapeAndCloseMarkReject();
};

void tst_CFixedSizePopWidget::draggedByItsTitle()
{
    CFixedSizePopWidget pop;
    pop.SetPopSize(QSize(300, 200));
    pop.show();
    QVERIFY(QTest::qWaitForWindowExposed(&pop));
    QWidget* title = pop.findChild<QWidget*>(QStringLiteral("m_widgetTitle"));
    QVERIFY(title);
    const QPoint start = pop.pos();
    QTest::mousePress(title, Qt::LeftButton, {}, QPoint(40, 10));
    QTest::mouseMove(title, QPoint(100, 40));
    QTest::mouseRelease(title, Qt::LeftButton, {}, QPoint(100, 40));
    QTRY_COMPARE(pop.pos(), start + QPoint(60, 30));
    // Showing again keeps the place the user chose.
    pop.hide();
    pop.show();
    QCOMPARE(pop.pos(), start + QPoint(60, 30));
}

void tst_CFixedSizePopWidget::escapeAndCloseMarkReject_data()
{
    QTest::addColumn<bool>("byEscape");
    QTest::newRow("escape") << true;
    QTest::newRow("close-mark") << false;
}

void tst_CFixedSizePopWidget::escapeAndCloseMarkReject()
{
    QFETCH(bool, byEscape);
    CFixedSizePopWidget pop;
    pop.show();
    QVERIFY(QTest::qWaitForWindowExposed(&pop));
    QSignalSpy finished(&pop, &QDialog::finished);
    if (byEscape)
        QTest::keyClick(&pop, Qt::Key_Escape);
    else
        QTest::mouseClick(pop.findChild<QPushButton*>(QStringLiteral("m_btnTitleClose")), Qt::LeftButton);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), int(QDialog::Rejected));
    QVERIFY(!pop.isVisible());
}

QTEST_MAIN(tst_CFixedSizePopWidget)
#include "tst_CFixedSizePopWidget.moc"
