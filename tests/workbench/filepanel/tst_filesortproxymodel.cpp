#include "filepanel/FileItemRoles.h"
#include "filepanel/FileNameSortKey.h"
#include "filepanel/FileSortProxyModel.h"

#include <QStandardItemModel>
#include <QTest>

namespace {
struct Row
{
    QString name;
    int kind;
    qint64 size;
    QString time;
    QString type;
};

QStandardItem* MakeItem(const Row& row)
{
    auto* item = new QStandardItem;
    const bool quick = row.kind >= FileItemKind::Desktop && row.kind <= FileItemKind::Documents;
    item->setData(row.type, FileItemRole::Type);
    item->setData(row.name, FileItemRole::Name);
    item->setData(row.size, FileItemRole::Size);
    item->setData(row.time, FileItemRole::Time);
    item->setData(row.kind, FileItemRole::Kind);
    item->setData(quick, FileItemRole::QuickAccess);
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

QStringList Reversed(QStringList list)
{
    std::reverse(list.begin(), list.end());
    return list;
}
} // namespace

class TestFileSortProxyModel : public QObject
{
    Q_OBJECT

private:
    void Fill(QStandardItemModel& model, const QList<Row>& rows)
    {
        for (const Row& row : rows) {
            model.appendRow(MakeItem(row));
        }
    }

    // Quick-access rows in reverse kind order and everything else shuffled, so that
    // only the comparison can bring them into place.
    QList<Row> MixedRows()
    {
        return {
            {"zeta.nc", FileItemKind::File, 10, "2024-01-03 00:00:00", ".nc"},
            {"文档", FileItemKind::Documents, 0, "", ""},
            {"b-folder", FileItemKind::Folder, 0, "2024-01-01 00:00:00", "文件夹"},
            {"alpha.txt", FileItemKind::File, 100, "2024-01-01 00:00:00", ".txt"},
            {"下载", FileItemKind::Downloads, 0, "", ""},
            {"a-folder", FileItemKind::Folder, 0, "2024-01-02 00:00:00", "文件夹"},
            {"桌面", FileItemKind::Desktop, 0, "", ""},
            {"mid.tap", FileItemKind::File, 9, "2024-01-02 00:00:00", ".tap"},
        };
    }

private Q_SLOTS:
    void naturalNameOrder_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("numbers-by-value") << QStringList{"a10", "a9", "a100"} << QStringList{"a9", "a10", "a100"};
        QTest::newRow("file2-before-file10")
            << QStringList{"file10.nc", "file2.nc", "file1.nc"} << QStringList{"file1.nc", "file2.nc", "file10.nc"};
        QTest::newRow("case-insensitive-letters") << QStringList{"b", "A", "a", "B"} << QStringList{"a", "A", "b", "B"};
    }
    void naturalNameOrder()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, expected);
        QStandardItemModel model;
        for (const QString& name : names) {
            model.appendRow(MakeItem({name, FileItemKind::File, 0, "", ""}));
        }
        FileSortProxyModel proxy;
        proxy.setSourceModel(&model);
        proxy.SetSortRole(FileItemRole::Name);
        proxy.sort(0, Qt::AscendingOrder);
        QCOMPARE(Order(proxy), expected);
        proxy.sort(0, Qt::DescendingOrder);
        QCOMPARE(Order(proxy), Reversed(expected));
    }

    void classesAndColumns_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<QStringList>("ascending");
        QTest::addColumn<QStringList>("descending");
        // Rows that tie on the sort value keep their listing order in both directions.
        const QStringList quick{"桌面", "下载", "文档"};
        const QStringList quickReversed{"文档", "下载", "桌面"};
        QTest::newRow("name") << int(FileItemRole::Name)
                              << quick + QStringList{"a-folder", "b-folder", "alpha.txt", "mid.tap", "zeta.nc"}
                              << QStringList{"zeta.nc", "mid.tap", "alpha.txt", "b-folder", "a-folder"} + quickReversed;
        QTest::newRow("time") << int(FileItemRole::Time)
                              << quick + QStringList{"b-folder", "a-folder", "alpha.txt", "mid.tap", "zeta.nc"}
                              << QStringList{"zeta.nc", "mid.tap", "alpha.txt", "a-folder", "b-folder"} + quickReversed;
        QTest::newRow("type") << int(FileItemRole::Type)
                              << quick + QStringList{"b-folder", "a-folder", "zeta.nc", "mid.tap", "alpha.txt"}
                              << QStringList{"alpha.txt", "mid.tap", "zeta.nc", "b-folder", "a-folder"} + quickReversed;
        QTest::newRow("size-as-number") << int(FileItemRole::Size)
                                        << quick +
                                               QStringList{"b-folder", "a-folder", "mid.tap", "zeta.nc", "alpha.txt"}
                                        << QStringList{"alpha.txt", "zeta.nc", "mid.tap", "b-folder", "a-folder"} +
                                               quickReversed;
    }
    void classesAndColumns()
    {
        QFETCH(int, role);
        QFETCH(QStringList, ascending);
        QFETCH(QStringList, descending);
        QStandardItemModel model;
        Fill(model, MixedRows());
        FileSortProxyModel proxy;
        proxy.setSourceModel(&model);
        proxy.SetSortRole(role);
        proxy.sort(0, Qt::AscendingOrder);
        QCOMPARE(Order(proxy), ascending);
        // Descending reverses the classes too: files first, quick-access rows last.
        proxy.sort(0, Qt::DescendingOrder);
        QCOMPARE(Order(proxy), descending);
    }

    void largeSizesCompareAsIntegers()
    {
        QStandardItemModel model;
        Fill(model, {{"big", FileItemKind::File, qint64(5) << 33, "", ""},
                     {"small", FileItemKind::File, 7, "", ""},
                     {"middle", FileItemKind::File, qint64(3) << 32, "", ""}});
        FileSortProxyModel proxy;
        proxy.setSourceModel(&model);
        proxy.SetSortRole(FileItemRole::Size);
        proxy.sort(0);
        QCOMPARE(Order(proxy), (QStringList{"small", "middle", "big"}));
    }

    void usesListingKeysOnlyForTheirOwnName()
    {
        const QCollator collator = FileNameSortKey::CreateCollator();
        QStandardItemModel model;
        for (const char* name : {"c3", "c20", "c100"}) {
            QStandardItem* item = MakeItem({QString::fromLatin1(name), FileItemKind::File, 0, "", ""});
            const QString text = QString::fromLatin1(name);
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
