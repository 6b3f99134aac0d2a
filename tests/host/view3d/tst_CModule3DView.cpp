#include "CDebugLog.h"
#include "CModule3DView.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

namespace {
QString shippedModelPath()
{
    return qEnvironmentVariable("KORV_SOURCE_DIR") + QStringLiteral("/host/view3d/MachineModel/config/Config3D.ini");
}

Struct3DStockParameter block(const QString& name, double size)
{
    Struct3DStockParameter stock;
    stock.strName = name;
    stock.dSizeX = stock.dSizeY = size;
    stock.dSizeZ = 75;
    stock.dPosX = -67.848;
    stock.dPosY = -73.0;
    stock.dPosZ = -40.0;
    return stock;
}
} // namespace

class tst_CModule3DView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void loadAndFailedReload();
    void positionUpdatesMoveTheDrawing();
    void stockBlocks();

private:
    QImage Picture() { return m_pView->grab().toImage(); }

    QTemporaryDir m_dirConfig;
    CModule3DView* m_pView = nullptr;
};

void tst_CModule3DView::initTestCase()
{
    QVERIFY(m_dirConfig.isValid());
    qputenv("KORV_CONFIG_DIR", m_dirConfig.path().toUtf8());
}

void tst_CModule3DView::init()
{
    m_pView = new CModule3DView;
    m_pView->resize(640, 480);
    m_pView->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pView));
}

void tst_CModule3DView::cleanup()
{
    delete m_pView;
    m_pView = nullptr;
}

void tst_CModule3DView::loadAndFailedReload()
{
    // Which files the reader refuses is its own test's business; here, what the view does then.
    const QImage empty = Picture();
    QVERIFY(!m_pView->CreateStock(block(QString(), 50), true)); // nothing to put it on yet
    QVERIFY(m_pView->LoadMachine(shippedModelPath()));
    QVERIFY(m_pView->CreateStock(block(QString(), 50), true));
    QVERIFY(Picture() != empty);
    const QString missing = QStringLiteral("/nonexistent/Config3D.ini");
    QVERIFY(!m_pView->LoadMachine(missing));
    QVERIFY(!m_pView->GetMachineReady());
    QVERIFY(!m_pView->SetMachinePos({1, 2, 3, 4, 0, 6}));
    QCOMPARE(m_pView->StockCount(), 0);
    QCOMPARE(Picture(), empty);
    QFile log(CDebugLog::LogFilePath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(log.readAll()).contains(QStringLiteral("3D机床模型加载失败: %1").arg(missing)));
}

void tst_CModule3DView::positionUpdatesMoveTheDrawing()
{
    QVERIFY(m_pView->LoadMachine(shippedModelPath()));
    const QImage home = Picture();
    const QList<Struct3DMotionData> moves{
        {50, 0, 0, 0, 0, 0}, {0, 50, 0, 0, 0, 0}, {0, 0, -50, 0, 0, 0}, {0, 0, 0, 30, 0, 0}, {0, 0, 0, 0, 0, 90}};
    for (const Struct3DMotionData& motion : moves) {
        QVERIFY(m_pView->SetMachinePos(motion));
        QVERIFY(Picture() != home);
    }
    QVERIFY(m_pView->SetMachinePos({}));
    QCOMPARE(Picture(), home);
    // A non-finite position is refused and the last good one kept.
    QVERIFY(m_pView->SetMachinePos({10, 0, 0, 0, 0, 0}));
    QVERIFY(!m_pView->SetMachinePos({std::nan(""), 0, 0, 0, 0, 0}));
    QVERIFY(!m_pView->SetMachinePos({0, 0, 0, 0, 0, INFINITY}));
    QCOMPARE(m_pView->MachinePos().x, 10.0);
}

void tst_CModule3DView::stockBlocks()
{
    QVERIFY(m_pView->LoadMachine(shippedModelPath()));
    const QImage bare = Picture();
    QVERIFY(m_pView->CreateStock(block(QString(), 50), true));
    const QImage withStock = Picture();
    QVERIFY(withStock != bare);
    QVERIFY(!m_pView->CreateStock(block(QStringLiteral("flat"), 0), false));
    QVERIFY(!m_pView->CreateStock(block(QStringLiteral("nan"), std::nan("")), false));
    QVERIFY(m_pView->CreateStock(block(QStringLiteral("second"), 20), false));
    QCOMPARE(m_pView->StockCount(), 2);
    QVERIFY(m_pView->CreateStock(block(QStringLiteral("second"), 30), false)); // same name replaces
    QCOMPARE(m_pView->StockCount(), 2);
    QVERIFY(m_pView->CreateStock(block(QString(), 50), true));
    QCOMPARE(m_pView->StockCount(), 1);
    QCOMPARE(Picture(), withStock);
}

QTEST_MAIN(tst_CModule3DView)
#include "tst_CModule3DView.moc"
