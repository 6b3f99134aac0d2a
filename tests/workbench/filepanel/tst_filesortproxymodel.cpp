#include "filepanel/FileItemRoles.h"
#include "filepanel/FileNameSortKey.h"
#include "filepanel/FileSortProxyModel.h"

#include <QStandardItemModel>
#include <QTest>

namespace {
QStandardItem* MakeItem(const QString& name, int kind = FileItemKind::File, qint64 size = 0, const QString& time = {},
                        const QString& type = {})
{
    auto* item = new QStandardItem;
    item->setData(type, FileItemRole::Type);
    item->setData(name, FileItemRole::Name);
    item->setData(size, FileItemRole::Size);
    item->setData(time, FileItemRole::Time);
    item->setData(kind, FileItemRole::Kind);
    item->setData(kind >= FileItemKind::Desktop && kind <= FileItemKind::Documents, FileItemRole::QuickAccess);
    return item;
}

QStringList Order(const QAbstractItemModel& model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row) {
        names << model.index(row, 0).data(FileItemRole::Name).toString();
    }
    return names;
}
} // namespace

class TestFileSortProxyModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classesAndColumns_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<QStringList>("ascending");
        QTest::addColumn<QStringList>("descending");
        // Rows that tie on the sort value keep their listing order in both directions; names sort
        // by the value of their numbers and regardless of case.
        const QStringList quick{"桌面", "下载", "文档"};
        const QStringList quickReversed{"文档", "下载", "桌面"};
        QTest::newRow("name") << int(FileItemRole::Name)
                              << quick + QStringList{"a-folder", "b-folder", "alpha.txt", "mid9.tap", "Mid10.nc"}
                              << QStringList{"Mid10.nc", "mid9.tap", "alpha.txt", "b-folder", "a-folder"} +
                                     quickReversed;
        QTest::newRow("time") << int(FileItemRole::Time)
                              << quick + QStringList{"b-folder", "a-folder", "alpha.txt", "mid9.tap", "Mid10.nc"}
                              << QStringList{"Mid10.nc", "mid9.tap", "alpha.txt", "a-folder", "b-folder"} +
                                     quickReversed;
        QTest::newRow("type") << int(FileItemRole::Type)
                              << quick + QStringList{"b-folder", "a-folder", "Mid10.nc", "mid9.tap", "alpha.txt"}
                              << QStringList{"alpha.txt", "mid9.tap", "Mid10.nc", "b-folder", "a-folder"} +
                                     quickReversed;
        // Sizes beyond 32 bits compare as numbers, neither as text nor truncated.
        QTest::newRow("size-as-number") << int(FileItemRole::Size)
                                        << quick +
                                               QStringList{"b-folder", "a-folder", "mid9.tap", "Mid10.nc", "alpha.txt"}
                                        << QStringList{"alpha.txt", "Mid10.nc", "mid9.tap", "b-folder", "a-folder"} +
                                               quickReversed;
    }
    void classesAndColumns()
    {
        QFETCH(int, role);
        QFETCH(QStringList, ascending);
        QFETCH(QStringList, descending);
        // Quick-access rows in reverse kind order and everything else shuffled, so that
        // only the comparison can bring them into place.
        QStandardItemModel model;
        model.appendRow(MakeItem("Mid10.nc", FileItemKind::File, qint64(3) << 32, "2024-01-03 00:00:00", ".nc"));
        model.appendRow(MakeItem("文档", FileItemKind::Documents));
        model.appendRow(MakeItem("b-folder", FileItemKind::Folder, 0, "2024-01-01 00:00:00", "文件夹"));
        model.appendRow(MakeItem("alpha.txt", FileItemKind::File, qint64(5) << 33, "2024-01-01 00:00:00", ".txt"));
        model.appendRow(MakeItem("下载", FileItemKind::Downloads));
        model.appendRow(MakeItem("a-folder", FileItemKind::Folder, 0, "2024-01-02 00:00:00", "文件夹"));
        model.appendRow(MakeItem("桌面", FileItemKind::Desktop));
        model.appendRow(MakeItem("mid9.tap", FileItemKind::File, 9, "2024-01-02 00:00:00", ".tap"));
        FileSortProxyModel proxy;
        proxy.setSourceModel(&model);
        proxy.SetSortRole(role);
        proxy.sort(0, Qt::AscendingOrder);
        QCOMPARE(Order(proxy), ascending);
        // Descending reverses the classes too: files first, quick-access rows last.
        proxy.sort(0, Qt::DescendingOrder);
        QCOMPARE(Order(proxy), descending);
    }

    void usesListingKeysOnlyForTheirOwnName()
    {
        const QCollator collator = FileNameSortKey::CreateCollator();
        QStandardItemModel model;
        for (const char* name : {"c3", "c20", "c100"}) {
            const QString text = QString::fromLatin1(name);
            QStandardItem* item = MakeItem(text);
            item->setData(QVariant::fromValue(FileNameSortKey{text, collator.sortKey(text)}),
                          FileItemRole::NameSortKey);
            model.appendRow(item);
        }
        FileSortProxyModel proxy;
        proxy.setSourceModel(&model);
        proxy.SetSortRole(FileItemRole::Name);
        proxy.sort(0);
        QCOMPARE(Order(proxy), (QStringList{"c3", "c20", "c100"}));
        // After a rename the listing's key is stale and must not decide the place.
        model.item(0)->setData(QStringLiteral("c999"), FileItemRole::Name);
        QCOMPARE(Order(proxy), (QStringList{"c20", "c100", "c999"}));
    }
};

QTEST_MAIN(TestFileSortProxyModel)
#include "tst_filesortproxymodel.moc"
