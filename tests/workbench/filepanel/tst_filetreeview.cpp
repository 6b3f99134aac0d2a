#include "filepanel/CFileTreeDelegate.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileTreeView.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QValidator>

namespace {
QStandardItem* MakeFile(const QString& name)
{
    auto* item = new QStandardItem;
    item->setData(name, FileItemRole::Name);
    item->setData(int(FileItemKind::File), FileItemRole::Kind);
    item->setData(QStringLiteral("2024-05-06 07:08:09"), FileItemRole::Time);
    item->setData(QStringLiteral("1.00 KB"), FileItemRole::SizeText);
    item->setData(QStringLiteral(".nc"), FileItemRole::Type);
    return item;
}
} // namespace

class TestFileTreeView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::newRow("unchanged") << "part.nc"
                                   << "part.nc";
        QTest::newRow("surrounding-blanks") << "  part.nc  "
                                            << "part.nc";
        QTest::newRow("trailing-dots") << "part..."
                                       << "part";
        QTest::newRow("dots-and-blanks-mixed") << "part. . "
                                               << "part";
        QTest::newRow("leading-dot-kept") << ".hidden"
                                          << ".hidden";
        QTest::newRow("dots-only") << "..."
                                   << "";
    }
    void cleanName()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QCOMPARE(CFileTreeDelegate::CleanName(typed), stored);
    }

    void commitStoresCleanNameAndSignals_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("signalled");
        QTest::newRow("new-name") << "new.nc"
                                  << "new.nc" << true;
        QTest::newRow("trailing-dots") << "new.."
                                       << "new" << true;
        QTest::newRow("dots-only-changes-nothing") << ".."
                                                   << "old.nc" << false;
    }
    void commitStoresCleanNameAndSignals()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QFETCH(bool, signalled);
        QStandardItemModel model(1, 4);
        model.setItem(0, 0, MakeFile(QStringLiteral("old.nc")));
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
        QCOMPARE(spy.count(), signalled ? 1 : 0);
        if (signalled) {
            QCOMPARE(spy.at(0).at(0).toString(), stored);
        }
    }

    void validatorRefusesForbiddenCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("plain") << "name.nc" << true;
        QTest::newRow("chinese-and-blanks") << "程序 1.nc" << true;
        for (const char* bad : {"\\", "/", ":", "*", "?", "\"", "<", ">", "|"}) {
            QTest::newRow(qPrintable(QStringLiteral("refuses %1").arg(QLatin1String(bad))))
                << QStringLiteral("a%1b").arg(QLatin1String(bad)) << false;
        }
    }
    void validatorRefusesForbiddenCharacters()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        CFileTreeDelegate delegate;
        QWidget parent;
        std::unique_ptr<QWidget> editor(delegate.createEditor(&parent, QStyleOptionViewItem(), QModelIndex()));
        auto* lineEdit = qobject_cast<QLineEdit*>(editor.get());
        QVERIFY(lineEdit && lineEdit->validator());
        int pos = 0;
        QCOMPARE(lineEdit->validator()->validate(text, pos) == QValidator::Acceptable, accepted);
        // Input goes through the validator too: the forbidden character never lands.
        lineEdit->clear();
        lineEdit->insert(text);
        QCOMPARE(lineEdit->text() == text, accepted);
    }
};

QTEST_MAIN(TestFileTreeView)
#include "tst_filetreeview.moc"
