#include "transfer/TransLogModel.h"

#include <QSignalSpy>
#include <QTest>

namespace {
const QColor Green(0, 160, 0);
const QColor Red(220, 50, 50);
const QColor Grey(118, 118, 118);
const qint64 Noon = QDateTime(QDate(2024, 5, 6), QTime(12, 0, 0)).toMSecsSinceEpoch();
} // namespace

class TransLogModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsKeepMessagesInCallOrder();
    void timeColumnIsGreyWhateverTheColour();
    void messageColumnKeepsExactColour();
    void otherRolesAndBadIndexesAreEmpty();
    void childIndexHasNoRowsOrColumns();
    void appendSignalsOneInsertedRow();
    void timeTextComesFromTheClock();
    void clearingEmptyModelEmitsNothing();
    void clearingResetsOnce();
    void boundDropsOldestRows();
    void loweringBoundTrimsWithoutReset();
};

void TransLogModelTest::rowsKeepMessagesInCallOrder()
{
    TransLogModel model;
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    model.AddLog(QStringLiteral("开始上传文件：a.nc"), Grey);
    model.AddLog(QStringLiteral("  trailing spaces stay  "), Green);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("开始上传文件：a.nc"));
    QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("  trailing spaces stay  "));
}

void TransLogModelTest::timeColumnIsGreyWhateverTheColour()
{
    TransLogModel model;
    model.AddLog(QStringLiteral("x"), Red);
    model.AddLog(QStringLiteral("y"), QColor(0, 0, 255, 10));
    for (int row = 0; row < 2; ++row)
        QCOMPARE(model.index(row, 0).data(Qt::ForegroundRole).value<QColor>(), QColor(118, 118, 118, 255));
}

void TransLogModelTest::messageColumnKeepsExactColour()
{
    TransLogModel model;
    const QColor translucent(220, 150, 0, 77);
    model.AddLog(QStringLiteral("warn"), translucent);
    const QColor shown = model.index(0, 1).data(Qt::ForegroundRole).value<QColor>();
    QCOMPARE(shown, translucent);
    QCOMPARE(shown.alpha(), 77);
}

void TransLogModelTest::otherRolesAndBadIndexesAreEmpty()
{
    TransLogModel model;
    model.AddLog(QStringLiteral("x"), Green);
    QVERIFY(!model.index(0, 1).data(Qt::ToolTipRole).isValid());
    QVERIFY(!model.index(0, 0).data(Qt::BackgroundRole).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
    QVERIFY(!model.index(1, 0).isValid());
    QVERIFY(!model.index(0, 2).isValid());
}

void TransLogModelTest::childIndexHasNoRowsOrColumns()
{
    TransLogModel model;
    model.AddLog(QStringLiteral("x"), Green);
    const QModelIndex parent = model.index(0, 0);
    QCOMPARE(model.rowCount(parent), 0);
    QCOMPARE(model.columnCount(parent), 0);
}

void TransLogModelTest::appendSignalsOneInsertedRow()
{
    TransLogModel model;
    model.AddLog(QStringLiteral("first"), Green);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.AddLog(QStringLiteral("second"), Red);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.at(0).at(1).toInt(), 1);
    QCOMPARE(inserted.at(0).at(2).toInt(), 1);
    QCOMPARE(reset.count(), 0);
}

void TransLogModelTest::timeTextComesFromTheClock()
{
    TransLogModel model;
    qint64 now = Noon + 999;
    model.SetClock([&now] { return now; });
    model.AddLog(QStringLiteral("a"), Green);
    now = Noon + 1;
    model.AddLog(QStringLiteral("b"), Green);
    now = Noon + 61 * 1000;
    model.AddLog(QStringLiteral("c"), Green);
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("12:00:00"));
    QCOMPARE(model.index(1, 0).data().toString(), QStringLiteral("12:00:00"));
    QCOMPARE(model.index(2, 0).data().toString(), QStringLiteral("12:01:01"));
}

void TransLogModelTest::clearingEmptyModelEmitsNothing()
{
    TransLogModel model;
    QSignalSpy aboutToReset(&model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.ClearLog();
    QCOMPARE(aboutToReset.count(), 0);
    QCOMPARE(reset.count(), 0);
}

void TransLogModelTest::clearingResetsOnce()
{
    TransLogModel model;
    model.AddLog(QStringLiteral("a"), Green);
    model.AddLog(QStringLiteral("b"), Red);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.ClearLog();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(model.rowCount(), 0);
    model.AddLog(QStringLiteral("after"), Green);
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("after"));
}

void TransLogModelTest::boundDropsOldestRows()
{
    TransLogModel model(nullptr, 3);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    for (int i = 0; i < 5; ++i)
        model.AddLog(QString::number(i), i % 2 ? Red : Green);
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("2"));
    QCOMPARE(model.index(2, 1).data().toString(), QStringLiteral("4"));
    QCOMPARE(model.index(0, 1).data(Qt::ForegroundRole).value<QColor>(), Green);
    QCOMPARE(removed.count(), 2);
    QCOMPARE(reset.count(), 0);
}

void TransLogModelTest::loweringBoundTrimsWithoutReset()
{
    TransLogModel model;
    QCOMPARE(model.MaxRows(), 0);
    for (int i = 0; i < 10; ++i)
        model.AddLog(QString::number(i), Green);
    QCOMPARE(model.rowCount(), 10);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.SetMaxRows(4);
    QCOMPARE(model.rowCount(), 4);
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("6"));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(reset.count(), 0);
    model.SetMaxRows(0);
    for (int i = 0; i < 10; ++i)
        model.AddLog(QString::number(i), Green);
    QCOMPARE(model.rowCount(), 14);
}

QTEST_GUILESS_MAIN(TransLogModelTest)
#include "tst_translogmodel.moc"
