#include "transfer/CProgressDelegate.h"
#include "transfer/TransList.h"
#include "transfer/TransProgressPainter.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
const qint64 Start = QDateTime(QDate(2024, 5, 6), QTime(10, 20, 30)).toMSecsSinceEpoch();
const QString Key = QStringLiteral("ftp://192.168.1.20:21/prog/a.nc*Upload");

TanslateInfo Report(double done, double total, int state = TanslateInfo::StateRunning)
{
    TanslateInfo info;
    info.totalSize = total;
    info.doneSize = done;
    info.fileName = QStringLiteral("D:/work/a.nc");
    info.direction = false;
    info.state = state;
    info.machinePath = QStringLiteral("/prog/a.nc");
    return info;
}
} // namespace

class TransListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void speedAndTimeLeftTexts_data();
    void speedAndTimeLeftTexts();
    void reportAfterClearStartsNewRow();
    void restartIconOfFailedRowEmitsKey();
    void rowMenuAndDeleteKeyFollowTheRowState();
    void reportTravelsThroughQueuedSignal();

private:
    void ShowList()
    {
        m_pList->resize(900, 240);
        m_pList->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pList.get()));
    }
    QString Text(int row, int column, int role = Qt::DisplayRole) const
    {
        return m_pList->Model()->index(row, column).data(role).toString();
    }

    QTemporaryDir m_configDir;
    std::unique_ptr<TransList> m_pList;
    qint64 m_iNow = Start;
};

void TransListTest::initTestCase()
{
    // Completion reports go to the host log; keep it out of the user's folders.
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
}

void TransListTest::init()
{
    m_iNow = Start;
    m_pList = std::make_unique<TransList>();
    m_pList->SetClock([this] { return m_iNow; });
}

void TransListTest::speedAndTimeLeftTexts_data()
{
    QTest::addColumn<qint64>("elapsedMs");
    QTest::addColumn<double>("delta");
    QTest::addColumn<double>("remaining");
    QTest::addColumn<QString>("speed");
    QTest::addColumn<QString>("timeLeft");

    QTest::newRow("800 ms apart shows nothing") << qint64(800) << 500000.0 << 1e6 << "0 B/s" << QStringLiteral("0 s");
    QTest::newRow("2 s, 3,000,000 bytes")
        << qint64(2000) << 3e6 << 125 * 1.5e6 << "1.43 MB/s" << QStringLiteral("2 m 5 s");
    QTest::newRow("exactly 1024 B/s") << qint64(1000) << 1024.0 << 60 * 1024.0 << "1024 B/s"
                                      << QStringLiteral("1 m 0 s");
    QTest::newRow("part seconds are dropped")
        << qint64(2999) << 3000.0 << 1500 * 61.5 << "1.46 KB/s" << QStringLiteral("1 m 1 s");
    QTest::newRow("clock went back") << qint64(-3000) << 3000.0 << 1000.0 << "0 B/s" << QStringLiteral("0 s");
}

void TransListTest::speedAndTimeLeftTexts()
{
    QFETCH(qint64, elapsedMs);
    QFETCH(double, delta);
    QFETCH(double, remaining);
    QFETCH(QString, speed);
    QFETCH(QString, timeLeft);

    const double first = 4096;
    const double total = first + delta + remaining;
    m_pList->SlotUpdateTransfer(Report(first, total), Key);
    m_iNow += elapsedMs;
    m_pList->SlotUpdateTransfer(Report(first + delta, total), Key);

    QCOMPARE(m_pList->Model()->rowCount(), 1);
    QCOMPARE(Text(0, TransList::ColumnProgress, CProgressDelegate::SpeedTextRole), speed);
    QCOMPARE(Text(0, TransList::ColumnTime), timeLeft);
}

void TransListTest::reportAfterClearStartsNewRow()
{
    m_pList->SlotUpdateTransfer(Report(0, 1e6), Key);
    m_pList->SlotUpdateTransfer(Report(0, 1e6), QStringLiteral("b"));
    m_iNow += 10000;
    m_pList->SlotUpdateTransfer(Report(500000, 1e6), Key);
    ShowList();
    QTest::mouseClick(m_pList->findChild<QPushButton*>(QStringLiteral("m_btnAllClear")), Qt::LeftButton);
    QCOMPARE(m_pList->Model()->rowCount(), 0);
    QCOMPARE(m_pList->RowOfKey(Key), -1);

    m_iNow += 1000;
    m_pList->SlotUpdateTransfer(Report(600000, 1e6), Key);
    QCOMPARE(m_pList->RowOfKey(Key), 0);
    // The next speed counts from the report after the clear, not from before it.
    m_iNow += 1000;
    m_pList->SlotUpdateTransfer(Report(601000, 1e6), Key);
    QCOMPARE(Text(0, 1, CProgressDelegate::SpeedTextRole), QStringLiteral("1000 B/s"));
}

void TransListTest::restartIconOfFailedRowEmitsKey()
{
    const QString failedKey = QStringLiteral("ftp://192.168.1.20:21/prog/b.nc*Download");
    m_pList->SlotUpdateTransfer(Report(10, 100), Key);
    m_pList->SlotUpdateTransfer(Report(10, 100), failedKey);
    m_pList->SlotUpdateTransfer(Report(10, 100, TanslateInfo::StateFailed), failedKey);
    ShowList();
    QSignalSpy restart(m_pList.get(), &TransList::SignalRestartTransfer);
    QTableView* view = m_pList->TableView();
    const QModelIndex failed = m_pList->Model()->index(1, TransList::ColumnProgress);
    const QRect icon = TransProgressPainter::RestartIconRect(view->visualRect(failed));

    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      TransProgressPainter::StateTextRect(view->visualRect(failed)).center());
    QCOMPARE(restart.count(), 0);
    const QRect runningIcon =
        TransProgressPainter::RestartIconRect(view->visualRect(m_pList->Model()->index(0, TransList::ColumnProgress)));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, runningIcon.center());
    QCOMPARE(restart.count(), 0);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, icon.center());
    QCOMPARE(restart.count(), 1);
    QCOMPARE(restart.at(0).at(0).toString(), failedKey);
}

void TransListTest::rowMenuAndDeleteKeyFollowTheRowState()
{
    const QString cancelledKey = QStringLiteral("ftp://192.168.1.20:21/prog/b.nc*Download");
    m_pList->SlotUpdateTransfer(Report(10, 100), Key);
    TanslateInfo cancelled = Report(10, 100, TanslateInfo::StateCancelled);
    cancelled.localPath = QStringLiteral("/home/op/parts/b.nc");
    m_pList->SlotUpdateTransfer(cancelled, cancelledKey);
    QCOMPARE(Text(1, TransList::ColumnTime), TransList::tr("已取消"));
    ShowList();
    QSignalSpy cancel(m_pList.get(), &TransList::SignalCancelTransfer);
    QSignalSpy restart(m_pList.get(), &TransList::SignalRestartTransfer);
    QSignalSpy folder(m_pList.get(), &TransList::SignalOpenFolder);
    QTableView* view = m_pList->TableView();
    const QList<QAction*> actions = m_pList->RowMenu()->actions(); // cancel, retry, open folder

    // Delete cancels the current row only while it runs.
    view->setCurrentIndex(m_pList->Model()->index(1, TransList::ColumnFile));
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(cancel.count(), 0);
    view->setCurrentIndex(m_pList->Model()->index(0, TransList::ColumnFile));
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(cancel.count(), 1);
    QCOMPARE(cancel.at(0).at(0).toString(), Key);

    // The menu acts on the row it was opened over.
    const QPoint cancelledRow = view->visualRect(m_pList->Model()->index(1, TransList::ColumnFile)).center();
    emit view->customContextMenuRequested(cancelledRow);
    QVERIFY(!actions.at(0)->isEnabled());
    QVERIFY(actions.at(1)->isEnabled());
    actions.at(1)->trigger();
    actions.at(2)->trigger();
    m_pList->RowMenu()->close();
    QCOMPARE(restart.count(), 1);
    QCOMPARE(restart.at(0).at(0).toString(), cancelledKey);
    QCOMPARE(folder.count(), 1);
    QCOMPARE(folder.at(0).at(0).toString(), QStringLiteral("/home/op/parts"));
}

void TransListTest::reportTravelsThroughQueuedSignal()
{
    QCOMPARE(QMetaType::fromName("TanslateInfo"), QMetaType::fromType<TanslateInfo>());
    // The workspace reports from its task handlers; a queued call must carry the record whole.
    TanslateInfo info = Report(10, 20);
    info.direction = true;
    QMetaObject::invokeMethod(m_pList.get(), "SlotUpdateTransfer", Qt::QueuedConnection, Q_ARG(TanslateInfo, info),
                              Q_ARG(QString, Key));
    QTRY_COMPARE(m_pList->Model()->rowCount(), 1);
    QCOMPARE(m_pList->Model()->index(0, 1).data(CProgressDelegate::InfoRole).value<TanslateInfo>(), info);
}

QTEST_MAIN(TransListTest)
#include "tst_translist.moc"
