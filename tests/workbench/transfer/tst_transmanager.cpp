#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"

#include <QDir>
#include <QPushButton>
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
const QColor Orange(220, 150, 0);
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
    void buildsListBesideLog();
    void paneMinimumIsAThird_data();
    void paneMinimumIsAThird();
    void logLinesOfOneSecondShareTheTime();
    void logKeepsNewestInViewUnlessScrolledUp();
    void clearingEmptyListLeavesLogAlone();
    void clearingRemovesRowsAndKeys();
    void restartRequestIsForwarded();
    void screenshot();

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

void TransManagerTest::buildsListBesideLog()
{
    QSplitter* splitter = m_pManager->Splitter();
    QCOMPARE(splitter->widget(0), m_pManager->TransferList());
    QCOMPARE(splitter->widget(1), m_pManager->LogPane());
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

void TransManagerTest::logLinesOfOneSecondShareTheTime()
{
    m_iNow = Start + 100;
    m_pManager->AddLog(QStringLiteral("开始上传文件：a.nc"), Grey);
    m_iNow = Start + 900;
    m_pManager->AddLog(QStringLiteral("上传文件完成：a.nc"), Green);
    TransLogModel* model = m_pManager->LogPane()->LogModel();
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->index(0, 0).data().toString(), QStringLiteral("09:41:07"));
    QCOMPARE(model->index(1, 0).data().toString(), QStringLiteral("09:41:07"));
    QCOMPARE(model->index(1, 1).data().toString(), QStringLiteral("上传文件完成：a.nc"));
    QCOMPARE(model->index(1, 1).data(Qt::ForegroundRole).value<QColor>(), Green);
    QVERIFY(RowIsInView(m_pManager->LogPane()->TableView(), 1));
}

void TransManagerTest::logKeepsNewestInViewUnlessScrolledUp()
{
    QTableView* view = m_pManager->LogPane()->TableView();
    for (int i = 0; i < 40; ++i)
        m_pManager->AddLog(QStringLiteral("line %1").arg(i), Grey);
    QVERIFY(RowIsInView(view, 39));
    QVERIFY(view->verticalScrollBar()->maximum() > 0);

    // The user scrolls up to read: new lines must not pull the view away.
    view->verticalScrollBar()->setValue(0);
    m_pManager->AddLog(QStringLiteral("while reading"), Red);
    QCOMPARE(view->verticalScrollBar()->value(), 0);
    QVERIFY(RowIsInView(view, 0));
    QVERIFY(!RowIsInView(view, 40));

    // Back at the bottom, the view follows again.
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    m_pManager->AddLog(QStringLiteral("following"), Green);
    QVERIFY(RowIsInView(view, 41));
}

void TransManagerTest::clearingEmptyListLeavesLogAlone()
{
    m_pManager->AddLog(QStringLiteral("连接成功"), Green);
    QSignalSpy removed(m_pManager->TransferList()->Model(), &QAbstractItemModel::rowsRemoved);
    m_pManager->ClearTransList();
    QCOMPARE(removed.count(), 0);
    QCOMPARE(m_pManager->TransferList()->Model()->rowCount(), 0);
    QCOMPARE(m_pManager->LogPane()->LogModel()->rowCount(), 1);

    // The log header's only button is labelled and empties the log.
    auto* clear = m_pManager->LogPane()->findChild<QPushButton*>(QStringLiteral("pushButton"));
    QVERIFY(clear);
    QCOMPARE(clear->toolTip(), QStringLiteral("清空日志"));
    QVERIFY(!clear->icon().isNull());
    clear->click();
    QCOMPARE(m_pManager->LogPane()->LogModel()->rowCount(), 0);
}

void TransManagerTest::clearingRemovesRowsAndKeys()
{
    TransList* list = m_pManager->TransferList();
    list->SlotUpdateTransfer(Report(QStringLiteral("a.nc"), 1, 2, TanslateInfo::StateRunning), QStringLiteral("a"));
    list->SlotUpdateTransfer(Report(QStringLiteral("b.nc"), 1, 2, TanslateInfo::StateRunning), QStringLiteral("b"));
    QSignalSpy removed(list->Model(), &QAbstractItemModel::rowsRemoved);
    m_pManager->ClearTransList();
    QCOMPARE(removed.count(), 1);
    QCOMPARE(list->Model()->rowCount(), 0);
    QCOMPARE(list->RowOfKey(QStringLiteral("a")), -1);
    list->SlotUpdateTransfer(Report(QStringLiteral("b.nc"), 1, 2, TanslateInfo::StateRunning), QStringLiteral("b"));
    QCOMPARE(list->RowOfKey(QStringLiteral("b")), 0);
}

void TransManagerTest::restartRequestIsForwarded()
{
    QSignalSpy restart(m_pManager, &TransManager::SignalRestartTransfer);
    emit m_pManager->TransferList()->SignalRestartTransfer(QStringLiteral("ftp://h:21/x.nc*Upload"));
    QCOMPARE(restart.count(), 1);
    QCOMPARE(restart.at(0).at(0).toString(), QStringLiteral("ftp://h:21/x.nc*Upload"));
}

void TransManagerTest::screenshot()
{
    TransList* list = m_pManager->TransferList();
    const QString host = QStringLiteral("ftp://192.168.1.20:21/home/varnok/nc/");
    const struct
    {
        const char* name;
        double done;
        double total;
        int state;
        bool download;
    } rows[] = {
        {"D:/CAM/output/impeller_roughing_pass_with_a_long_name.nc", 3.2e6, 9.0e6, TanslateInfo::StateRunning, false},
        {"D:/CAM/output/bracket.ngc", 7.5e5, 1.0e6, TanslateInfo::StateRunning, true},
        {"D:/CAM/output/face_mill.tap", 2.4e6, 2.4e6, TanslateInfo::StateSucceeded, false},
        {"D:/CAM/output/pocket_finish.nc", 1.1e5, 4.0e5, TanslateInfo::StateFailed, false},
        {"D:/CAM/output/probe_cycle.txt", 0, 5.0e4, TanslateInfo::StateWaiting, true},
    };
    for (const auto& row : rows) {
        const QString name = QString::fromUtf8(row.name);
        const QString key = host + QFileInfo(name).fileName() + (row.download ? "*Download" : "*Upload");
        list->SlotUpdateTransfer(Report(name, 0, row.total, TanslateInfo::StateRunning, row.download), key);
    }
    m_iNow += 2000;
    for (const auto& row : rows) {
        const QString name = QString::fromUtf8(row.name);
        const QString key = host + QFileInfo(name).fileName() + (row.download ? "*Download" : "*Upload");
        list->SlotUpdateTransfer(Report(name, row.done, row.total, row.state, row.download), key);
    }
    m_pManager->AddLog(QStringLiteral("连接机床成功：192.168.1.20"), Green);
    m_pManager->AddLog(QStringLiteral("开始上传文件：impeller_roughing_pass_with_a_long_name.nc"), Grey);
    m_pManager->AddLog(QStringLiteral("上传文件完成：face_mill.tap"), Grey);
    m_pManager->AddLog(QStringLiteral("上传文件失败：pocket_finish.nc"), Red);
    m_pManager->AddLog(QStringLiteral("机床系统版本较低，部分功能不可用"), Orange);
    m_pManager->AddLog(QStringLiteral("同步完成：3 个文件"), Green);
    QTest::qWait(50);

    const QImage shot = m_pManager->grab().toImage();
    QCOMPARE(shot.size(), QSize(1800, 240));
    const QString dir = qEnvironmentVariable("KORV_BINARY_DIR", QDir::tempPath()) + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(dir));
    const QString path = dir + QStringLiteral("/transfer_manager.png");
    QVERIFY(shot.save(path));
    // Each pane at full size as well, for a close look.
    QVERIFY(m_pManager->TransferList()->grab().save(dir + QStringLiteral("/transfer_list.png")));
    QVERIFY(m_pManager->LogPane()->grab().save(dir + QStringLiteral("/transfer_log.png")));
    qInfo() << "saved" << path;
}

QTEST_MAIN(TransManagerTest)
#include "tst_transmanager.moc"
