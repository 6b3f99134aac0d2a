#include "transfer/TransLogModel.h"

#include <QSignalSpy>
#include <QTest>

namespace {
const QColor Green(0, 160, 0);
const QColor Red(220, 50, 50);
const qint64 Noon = QDateTime(QDate(2024, 5, 6), QTime(12, 0, 0)).toMSecsSinceEpoch();

QStringList Messages(const TransLogModel& model)
{
    QStringList messages;
    for (int row = 0; row < model.rowCount(); ++row)
        messages << model.index(row, TransLogModel::ColumnMessage).data().toString();
    return messages;
}
} // namespace

class TransLogModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsCarryTimeMessageAndColour();
    void clearingResetsOnlyWhenThereIsSomething();
    void boundDropsOldestRowsWithoutReset();
};

void TransLogModelTest::rowsCarryTimeMessageAndColour()
{
    TransLogModel model;
    qint64 now = Noon + 999;
    model.SetClock([&now] { return now; });
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.AddLog(QStringLiteral("  开始上传文件：a.nc  "), Red);
    now = Noon + 61 * 1000;
    const QColor translucent(220, 150, 0, 77);
    model.AddLog(QStringLiteral("b"), translucent);
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(Messages(model), (QStringList{QStringLiteral("  开始上传文件：a.nc  "), QStringLiteral("b")}));
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("12:00:00"));
    QCOMPARE(model.index(1, 0).data().toString(), QStringLiteral("12:01:01"));
    // The message keeps its colour exactly, alpha included; the time is grey whatever the colour.
    QCOMPARE(model.index(1, 1).data(Qt::ForegroundRole).value<QColor>(), translucent);
    QCOMPARE(model.index(0, 0).data(Qt::ForegroundRole).value<QColor>(),
             model.index(1, 0).data(Qt::ForegroundRole).value<QColor>());
    QVERIFY(!model.index(2, 0).isValid());
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
}

void TransLogModelTest::clearingResetsOnlyWhenThereIsSomething()
{
    TransLogModel model;
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.ClearLog();
    QCOMPARE(reset.count(), 0);
    model.AddLog(QStringLiteral("a"), Green);
    model.ClearLog();
    QCOMPARE(reset.count(), 1);
    model.AddLog(QStringLiteral("after"), Green);
    QCOMPARE(Messages(model), QStringList{QStringLiteral("after")});
}

void TransLogModelTest::boundDropsOldestRowsWithoutReset()
{
    TransLogModel model(nullptr, 3);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    for (int i = 0; i < 5; ++i)
        model.AddLog(QString::number(i), i % 2 ? Red : Green);
    QCOMPARE(Messages(model), (QStringList{"2", "3", "4"}));
    QCOMPARE(model.index(0, 1).data(Qt::ForegroundRole).value<QColor>(), Green);
    QCOMPARE(removed.count(), 2);

    // Lowering the bound trims in one removal; no bound keeps everything.
    model.SetMaxRows(0);
    for (int i = 5; i < 10; ++i)
        model.AddLog(QString::number(i), Green);
    model.SetMaxRows(4);
    QCOMPARE(Messages(model), (QStringList{"6", "7", "8", "9"}));
    QCOMPARE(removed.count(), 3);
    QCOMPARE(reset.count(), 0);
}

QTEST_GUILESS_MAIN(TransLogModelTest)
#include "tst_translogmodel.moc"
