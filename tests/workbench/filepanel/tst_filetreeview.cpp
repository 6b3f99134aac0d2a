#include "filepanel/CFileTreeDelegate.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileTreeView.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QValidator>

class TestFileTreeView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commitStoresCleanNameAndSignals_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::newRow("new-name") << "new.nc"
                                  << "new.nc";
        QTest::newRow("blanks-and-trailing-dots") << "  new. . "
                                                  << "new";
        QTest::newRow("leading-dot-kept") << ".hidden"
                                          << ".hidden";
        QTest::newRow("dots-only-changes-nothing") << ".."
                                                   << "old.nc";
    }
    void commitStoresCleanNameAndSignals()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QStandardItemModel model(1, 4);
        auto* item = new QStandardItem;
        item->setData(QStringLiteral("old.nc"), FileItemRole::Name);
        item->setData(int(FileItemKind::File), FileItemRole::Kind);
        model.setItem(0, 0, item);
        CFileTreeDelegate delegate;
        QSignalSpy spy(&delegate, &CFileTreeDelegate::SignalDataChanged);
        QWidget parent;
        std::unique_ptr<QWidget> editor(delegate.createEditor(&parent, QStyleOptionViewItem(), model.index(0, 0)));
        auto* lineEdit = qobject_cast<QLineEdit*>(editor.get());
        QVERIFY(lineEdit);
        delegate.setEditorData(lineEdit, model.index(0, 0));
        QCOMPARE(lineEdit->text(), QStringLiteral("old.nc"));
        lineEdit->setText(typed);
        delegate.setModelData(lineEdit, &model, model.index(0, 0));
        QCOMPARE(model.index(0, 0).data(FileItemRole::Name).toString(), stored);
        const bool changed = stored != QLatin1String("old.nc");
        QCOMPARE(spy.count(), changed ? 1 : 0);
        if (changed)
            QCOMPARE(spy.at(0).at(0).toString(), stored);
    }

    void validatorRefusesForbiddenCharacters()
    {
        CFileTreeDelegate delegate;
        QWidget parent;
        std::unique_ptr<QWidget> editor(delegate.createEditor(&parent, QStyleOptionViewItem(), QModelIndex()));
        auto* lineEdit = qobject_cast<QLineEdit*>(editor.get());
        QVERIFY(lineEdit && lineEdit->validator());
        for (QString text : {"name.nc", "程序 1.nc", "a\\b", "a/b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b"}) {
            const bool accepted = text.size() > 3; // the refused names are "a", one character, "b"
            int pos = 0;
            QVERIFY2((lineEdit->validator()->validate(text, pos) == QValidator::Acceptable) == accepted,
                     qPrintable(text));
            // Typed input goes through the validator too: the forbidden character never lands.
            lineEdit->clear();
            lineEdit->insert(text);
            QVERIFY2((lineEdit->text() == text) == accepted, qPrintable(text));
        }
    }
};

QTEST_MAIN(TestFileTreeView)
#include "tst_filetreeview.moc"
