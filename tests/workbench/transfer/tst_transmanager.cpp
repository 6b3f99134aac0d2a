#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
const qint64 Start = QDateTime(QDate(2024, 5, 6), QTime(9, 41, 7)).toMSecsSinceEpoch();
const QColor Green(0, 160, 0);
const QColor Red(220, 50, 50);
const QColor Grey(51, 51, 51);

TanslateInfo Report(const QString& strName, double done, double total, int state, bool bDownload = false)
{
    TanslateInfo info;
    info.totalSize = total;
    info.doneSize = done;
    info.fileName = strName;
    info.direction = bDownload;
    info.state = state;
    info.machinePath = QStringLiteral("/home/varnok/nc/") + QFileInfo(strName).fileName();
    return info;
}

bool RowIsInView(QTableView* view, int row)
{
    const QRect rect = view->visualRect(view->model()->index(row, 1));
    return rect.isValid() && view->viewport()->rect().contains(rect);
}
} // namespace

class TransManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void dragNeverHidesThePane();
    void paneMinimumIsAThird_data();
    void paneMinimumIsAThird();
    void logShowsNewestOnEveryAppend();
    void clearingRemovesRowsAndKeysButNotTheLog();

private:
    QTemporaryDir m_configDir;
    std::unique_ptr<QWidget> m_pHost;
    TransManager* m_pManager = nullptr;
    qint64 m_iNow = Start;
};

void TransManagerTest::initTestCase()
{
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
}

void TransManagerTest::init()
{
    // Inside a parent, as in the workspace, so the panes' minimum widths do not pin the manager's size.
    m_iNow = Start;
    m_pHost = std::make_unique<QWidget>();
    m_pManager = new TransManager(m_pHost.get());
    m_pManager->TransferList()->SetClock([this] { return m_iNow; });
    m_pManager->LogPane()->LogModel()->SetClock([this] { return m_iNow; });
    m_pHost->resize(1800, 240);
    m_pHost->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pHost.get()));
}

void TransManagerTest::cleanup()
{
    m_pHost.reset();
    m_pManager = nullptr;
}

void TransManagerTest::dragNeverHidesThePane()
{
    QSplitter* splitter = m_pManager->Splitter();
    // Dragging the (invisible) handle to the end must not make a pane vanish.
    splitter->setSizes({1800, 0});
    QVERIFY(m_pManager->LogPane()->width() >= m_pManager->LogPane()->minimumWidth());
    QVERIFY(m_pManager->LogPane()->width() > 0);
}

void TransManagerTest::paneMinimumIsAThird_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("minimum");
    QTest::newRow("900") << 900 << 300;
    QTest::newRow("1000") << 1000 << 333;
    QTest::newRow("1801") << 1801 << 600;
}

void TransManagerTest::paneMinimumIsAThird()
{
    QFETCH(int, width);
    QFETCH(int, minimum);
    m_pManager->resize(width, 240);
    QCOMPARE(m_pManager->width(), width);
    QCOMPARE(m_pManager->TransferList()->minimumWidth(), minimum);
    QCOMPARE(m_pManager->LogPane()->minimumWidth(), minimum);
}

void TransManagerTest::logShowsNewestOnEveryAppend()
{
    QTableView* view = m_pManager->LogPane()->TableView();
    for (int i = 0; i < 40; ++i)
        m_pManager->AddLog(QStringLiteral("line %1").arg(i), Grey);
    QVERIFY(RowIsInView(view, 39));
    QVERIFY(view->verticalScrollBar()->maximum() > 0);

    // Scrolled up to read, the next line still brings the newest into view.
    view->verticalScrollBar()->setValue(0);
    m_pManager->AddLog(QStringLiteral("while reading"), Red);
    QVERIFY(RowIsInView(view, 40));

    // Lines that come while another page is shown are in view when the pane is back.
    m_pHost->hide();
    for (int i = 0; i < 30; ++i)
        m_pManager->AddLog(QStringLiteral("away %1").arg(i), Grey);
    m_pHost->resize(1800, 160);
    m_pHost->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pHost.get()));
    QTRY_VERIFY(RowIsInView(view, 70));
}

void TransManagerTest::clearingRemovesRowsAndKeysButNotTheLog()
{
    TransList* list = m_pManager->TransferList();
    m_pManager->AddLog(QStringLiteral("连接成功"), Green);
    QSignalSpy removed(list->Model(), &QAbstractItemModel::rowsRemoved);
    m_pManager->ClearTransList();
    QCOMPARE(removed.count(), 0);
    list->SlotUpdateTransfer(Report(QStringLiteral("a.nc"), 1, 2, TanslateInfo::StateRunning), QStringLiteral("a"));
    list->SlotUpdateTransfer(Report(QStringLiteral("b.nc"), 1, 2, TanslateInfo::StateRunning), QStringLiteral("b"));
    m_pManager->ClearTransList();
    QCOMPARE(removed.count(), 1);
    QCOMPARE(list->Model()->rowCount(), 0);
    QCOMPARE(list->RowOfKey(QStringLiteral("a")), -1);
    list->SlotUpdateTransfer(Report(QStringLiteral("b.nc"), 1, 2, TanslateInfo::StateRunning), QStringLiteral("b"));
    QCOMPARE(list->RowOfKey(QStringLiteral("b")), 0);
    QCOMPARE(m_pManager->LogPane()->LogModel()->rowCount(), 1);
}

QTEST_MAIN(TransManagerTest)
#include "tst_transmanager.moc"
