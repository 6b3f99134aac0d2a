#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"

#include <QScrollBar>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
const qint64 Start = QDateTime(QDate(2024, 5, 6), QTime(9, 41, 7)).toMSecsSinceEpoch();
const QColor Grey(51, 51, 51);

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
    void logShowsNewestOnEveryAppend();
    void clearingKeepsTheLog();
    void reportsOfOneFrameAreShownTogether();

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
    m_pManager->resize(1800, 240);
    splitter->setSizes({1800, 0});
    QCOMPARE(m_pManager->LogPane()->minimumWidth(), 600); // a third of the width
    QVERIFY(m_pManager->LogPane()->width() >= m_pManager->LogPane()->minimumWidth());
}

void TransManagerTest::logShowsNewestOnEveryAppend()
{
    QTableView* view = m_pManager->LogPane()->TableView();
    for (int i = 0; i < 40; ++i)
        m_pManager->AddLog(QStringLiteral("line %1").arg(i), Grey);
    QTRY_VERIFY(RowIsInView(view, 39));
    QVERIFY(view->verticalScrollBar()->maximum() > 0);

    // Scrolled up to read, the next line still brings the newest into view.
    view->verticalScrollBar()->setValue(0);
    m_pManager->AddLog(QStringLiteral("while reading"), Grey);
    QTRY_VERIFY(RowIsInView(view, 40));

    // Lines that come while another page is shown are in view when the pane is back.
    m_pHost->hide();
    for (int i = 0; i < 30; ++i)
        m_pManager->AddLog(QStringLiteral("away %1").arg(i), Grey);
    m_pHost->resize(1800, 160);
    m_pHost->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pHost.get()));
    QTRY_VERIFY(RowIsInView(view, 70));
}

void TransManagerTest::clearingKeepsTheLog()
{
    TransList* list = m_pManager->TransferList();
    m_pManager->AddLog(QStringLiteral("连接成功"), Grey);
    TanslateInfo info;
    info.totalSize = 2;
    info.fileName = QStringLiteral("a.nc");
    list->SlotUpdateTransfer(info, QStringLiteral("a"));
    m_pManager->ClearTransList();
    QCOMPARE(list->Model()->rowCount(), 0);
    QCOMPARE(m_pManager->LogPane()->LogModel()->rowCount(), 1);
}

void TransManagerTest::reportsOfOneFrameAreShownTogether()
{
    // A batch of small files reports far faster than the screen draws: rows and lines wait for the
    // frame, and each keeps what it had when it came (its latest report, its own time).
    TransList* list = m_pManager->TransferList();
    QAbstractItemModel* rows = list->TableView()->model();
    QAbstractItemModel* lines = m_pManager->LogPane()->TableView()->model();
    for (int i = 0; i < 100; ++i) {
        TanslateInfo info;
        info.totalSize = 2;
        info.fileName = QStringLiteral("p%1.nc").arg(i);
        const QString key = info.fileName + QStringLiteral("*Upload");
        list->SlotUpdateTransfer(info, key);
        info.doneSize = 2;
        info.state = TanslateInfo::StateSucceeded;
        list->SlotUpdateTransfer(info, key);
        m_pManager->AddLog(QStringLiteral("上传完成：%1").arg(info.fileName), Grey);
        m_iNow += 20;
    }
    QCOMPARE(rows->rowCount(), 0);
    QCOMPARE(lines->rowCount(), 0);
    QTRY_COMPARE(rows->rowCount(), 100);
    QTRY_COMPARE(lines->rowCount(), 100);
    QCOMPARE(list->RowOfKey(QStringLiteral("p99.nc*Upload")), 99);
    QCOMPARE(rows->index(99, TransList::ColumnTime).data().toString(), QStringLiteral("2024-05-06 09:41:08"));
    QCOMPARE(lines->index(0, TransLogModel::ColumnTime).data().toString(), QStringLiteral("09:41:07"));
    QCOMPARE(lines->index(99, TransLogModel::ColumnMessage).data().toString(), QStringLiteral("上传完成：p99.nc"));
    QCOMPARE(lines->index(99, TransLogModel::ColumnTime).data().toString(), QStringLiteral("09:41:08"));
}

QTEST_MAIN(TransManagerTest)
#include "tst_transmanager.moc"
