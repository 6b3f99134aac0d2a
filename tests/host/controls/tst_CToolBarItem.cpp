#include "CToolBarItem.h"
#include "CToolButton.h"
#include "TestIcons.h"

#include <QTemporaryDir>
#include <QTest>

class tst_CToolBarItem : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void alternateIconWhileCheckedOrPressed();

private:
    // The colour in the middle of the button's icon, where the test icons differ.
    QColor IconCentreColour(CToolButton* button);

    QTemporaryDir m_dir;
    QString m_strGrey;
    QString m_strBlue;
};

void tst_CToolBarItem::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_strGrey = WriteTestIcon(QDir(m_dir.path()), QStringLiteral("grey"), QColor(90, 90, 90), false);
    m_strBlue = WriteTestIcon(QDir(m_dir.path()), QStringLiteral("blue_g"), QColor(0, 0, 255), true);
}

QColor tst_CToolBarItem::IconCentreColour(CToolButton* button)
{
    const QImage image = button->icon().pixmap(QSize(64, 64)).toImage();
    // Left of the bar drawn across the middle: inside the outline, where the filled icon is blue.
    return image.pixelColor(16, 20);
}

void tst_CToolBarItem::alternateIconWhileCheckedOrPressed()
{
    CToolBarItem block(QStringLiteral("显示"));
    block.AddItem(m_strGrey, QStringLiteral("设备状态"), 0, m_strBlue);
    CToolButton* button = block.CreateToolBlock(true).first();
    block.show();
    QVERIFY(QTest::qWaitForWindowExposed(&block));
    const QColor normal = IconCentreColour(button);
    QCOMPARE(normal.alpha(), 0);

    button->setChecked(true);
    QCOMPARE(IconCentreColour(button), QColor(0, 0, 255));
    button->setChecked(false);
    QCOMPARE(IconCentreColour(button), normal);

    // Held down: the alternate shows; let go of a checkable button and it is checked, so it stays.
    QTest::mousePress(button, Qt::LeftButton);
    QCOMPARE(IconCentreColour(button), QColor(0, 0, 255));
    QTest::mouseRelease(button, Qt::LeftButton);
    QVERIFY(button->isChecked());
    QCOMPARE(IconCentreColour(button), QColor(0, 0, 255));
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!button->isChecked());
    QCOMPARE(IconCentreColour(button), normal);
}

QTEST_MAIN(tst_CToolBarItem)
#include "tst_CToolBarItem.moc"
