#include "CFileNameDelegate.h"

#include <QLineEdit>
#include <QStandardItemModel>
#include <QTest>

class tst_CFileNameDelegate : public QObject
{
    Q_OBJECT

private slots:
    void editorSelectsNameBeforeSuffix_data();
    void editorSelectsNameBeforeSuffix();
};

void tst_CFileNameDelegate::editorSelectsNameBeforeSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("selected");
    QTest::newRow("suffix") << "叶轮_粗加工.nc"
                            << "叶轮_粗加工";
    QTest::newRow("two-dots") << "part.v2.ngc"
                              << "part.v2";
    QTest::newRow("no-suffix") << "O1001"
                               << "O1001";
    QTest::newRow("leading-dot") << ".config"
                                 << ".config";
}

void tst_CFileNameDelegate::editorSelectsNameBeforeSuffix()
{
    QFETCH(QString, name);
    QFETCH(QString, selected);
    QStandardItemModel model(1, 1);
    model.setItem(0, 0, new QStandardItem(name));
    CFileNameDelegate delegate;
    QWidget parent;
    QWidget* editor = delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(0, 0));
    delegate.setEditorData(editor, model.index(0, 0));
    auto* edit = qobject_cast<QLineEdit*>(editor);
    QVERIFY(edit);
    QCOMPARE(edit->text(), name);
    QCOMPARE(edit->selectedText(), selected);
}

QTEST_MAIN(tst_CFileNameDelegate)
#include "tst_CFileNameDelegate.moc"
