#include "CFileNameDelegate.h"
#include "CModule3DView.h"
#include "CProgressWidget.h"
#include "CSelectMachineBox.h"
#include "CTabToolWidget.h"
#include "CToolBarItem.h"
#include "CToolButton.h"
#include "CVarnokMessageBox.h"
#include "ScreenshotLanguage.h"
#include "TestIcons.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

// Renders every control offscreen into <build>/gallery/*.png so that a person can look at them;
// nothing here judges pixels.
class tst_ControlsGallery : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void messageBoxes_data();
    void messageBoxes();
    void selectMachineBox();
    void toolPage();
    void progressWidget();
    void fileNameDelegate();
    void machineView();

private:
    void Save(const QImage& image, const QString& name);
    // Waits for the modal box that `open` shows, saves its picture, then clicks its button `buttonName`.
    int GrabModal(const std::function<int()>& open, const QString& name, const QString& buttonName);

    QDir m_dirOut;
    QTemporaryDir m_dirIcons;
    QTemporaryDir m_dirConfig;
};

void tst_ControlsGallery::initTestCase()
{
    KORV_APPLY_SCREENSHOT_LANGUAGE();
    const QString base = qEnvironmentVariable("KORV_BINARY_DIR", QDir::currentPath());
    m_dirOut = QDir(base + QStringLiteral("/gallery"));
    QVERIFY(m_dirOut.mkpath(QStringLiteral(".")));
    QVERIFY(m_dirIcons.isValid());
    // The 3D view writes to the host's debug log; keep it away from a user's real one.
    QVERIFY(m_dirConfig.isValid());
    qputenv("KORV_CONFIG_DIR", m_dirConfig.path().toUtf8());
}

void tst_ControlsGallery::Save(const QImage& image, const QString& name)
{
    const QString path = m_dirOut.filePath(name + QStringLiteral(".png"));
    QVERIFY(image.save(path));
    qInfo("wrote %s", qPrintable(path));
}

int tst_ControlsGallery::GrabModal(const std::function<int()>& open, const QString& name, const QString& buttonName)
{
    QImage picture;
    QTimer poll;
    poll.setInterval(10);
    connect(&poll, &QTimer::timeout, this, [&] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || !box->isVisible())
            return;
        poll.stop();
        if (!QTest::qWaitForWindowExposed(box))
            return;
        picture = box->grab().toImage();
        if (auto* button = box->findChild<QPushButton*>(buttonName))
            button->click();
        else
            box->close();
    });
    poll.start();
    const int result = open();
    Save(picture, name);
    return result;
}

void tst_ControlsGallery::messageBoxes_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("messagebox-conflict") << 0;
    QTest::newRow("messagebox-failure") << 1;
    QTest::newRow("messagebox-version-checkbox") << 2;
    QTest::newRow("messagebox-notice") << 3;
}

void tst_ControlsGallery::messageBoxes()
{
    QFETCH(int, kind);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    switch (kind) {
    case 0: {
        const QMap<EnumMsgButtonFunction, QString> texts{{MsgButtonYes, QStringLiteral("保存本地版本")},
                                                         {MsgButtonNo, QStringLiteral("保存机床版本")},
                                                         {MsgButtonIgnore, QStringLiteral("跳过")}};
        const int result = GrabModal(
            [&] {
                return CVarnokMessageBox::ShowWindow(
                    nullptr, MsgButtonYes | MsgButtonNo | MsgButtonIgnore, MsgIconWarning,
                    QStringLiteral("文件冲突确认"),
                    QStringLiteral(
                        "文件 \"刀路_粗加工.nc\" 在本地和机床中均存在，内容不一致。\n\n请选择要保留的版本："),
                    texts);
            },
            name, QStringLiteral("m_btnCode8"));
        QCOMPARE(result, int(MsgButtonNo));
        break;
    }
    case 1:
        GrabModal(
            [] {
                return CVarnokMessageBox::ShowWindow(nullptr, MsgButtonConfirm, MsgIconFailure, QStringLiteral("提示"),
                                                     QStringLiteral("连接机床失败，请检查网络连接和机床IP地址！"));
            },
            name, QStringLiteral("m_btnCode1"));
        break;
    case 2:
        GrabModal(
            [] {
                return CVarnokMessageBox::ShowWindowWithCheckBox(
                           nullptr, MsgButtonConfirm, MsgIconWarning, QStringLiteral("提示"),
                           QStringLiteral("当前机床系统版本为 1.4.6，低于最低要求版本 1.4.7，部分功能可能会受到影响，"
                                          "请升级机床系统版本！"),
                           QStringLiteral("不再提醒"), false)
                    .first;
            },
            name, QStringLiteral("m_btnCode1"));
        break;
    default:
        GrabModal(
            [] {
                return CVarnokMessageBox::ShowWindowAutoClose(nullptr, MsgButtonConfirm, MsgIconInformation,
                                                              QStringLiteral("提示"),
                                                              QStringLiteral("与当前设备已断开连接！"));
            },
            name, QStringLiteral("m_btnCode1"));
        break;
    }
}

void tst_ControlsGallery::selectMachineBox()
{
    CSelectMachineBox box;
    box.SetMachineInfo(QStringLiteral("KV*KT10023110001*0*192.168.1.23*1*eth0"), true);
    box.SetMachineInfo(QStringLiteral("KV*PB01230900017*0*192.168.1.57*1*wlan0"), true);
    box.SetMachineInfo(QStringLiteral("KV*RW10022120003*0*192.168.1.80*1*eth0"), false);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    Save(box.grab().toImage(), QStringLiteral("selectmachine-list"));

    auto* edit = box.findChild<QLineEdit*>(QStringLiteral("m_editIp"));
    QTest::keyClicks(edit, QStringLiteral("192.168.1.300"));
    box.SlotConfirm();
    Save(box.grab().toImage(), QStringLiteral("selectmachine-bad-ip"));

    edit->clear();
    box.findChild<QListWidget*>()->setCurrentRow(1);
    box.SlotConfirm();
    Save(box.grab().toImage(), QStringLiteral("selectmachine-connecting"));
    box.OnConnectResult(false);
    Save(box.grab().toImage(), QStringLiteral("selectmachine-failed"));
}

void tst_ControlsGallery::toolPage()
{
    const QDir icons(m_dirIcons.path());
    const QColor grey(0x5d, 0x66, 0x70);
    const QColor blue(0x36, 0x8b, 0xd4);
    CTabToolWidget tabs;
    auto* page = new QMainWindow;
    page->setWindowFlags(Qt::Widget);
    auto* content = new QLabel(QStringLiteral("内容区域"));
    content->setAlignment(Qt::AlignCenter);
    content->setStyleSheet(QStringLiteral("background:#f5f7fa;color:#999999;"));
    page->setCentralWidget(content);
    tabs.addTab(page, QStringLiteral("功能"));

    struct Block
    {
        QString strTitle;
        QStringList listTexts;
    };
    const QList<Block> blocks{{QStringLiteral("连接"), {QStringLiteral("新建连接"), QStringLiteral("断开连接")}},
                              {QStringLiteral("信息"), {QStringLiteral("绑定设备"), QStringLiteral("解绑设备")}},
                              {QStringLiteral("显示"), {QStringLiteral("设备状态"), QStringLiteral("文件传输")}}};
    QList<CToolButton*> buttons;
    int n = 0;
    for (const Block& block : blocks) {
        auto* item = new CToolBarItem(block.strTitle, page);
        for (const QString& text : block.listTexts) {
            const QString name = QStringLiteral("icon%1").arg(n++);
            item->AddItem(WriteTestIcon(icons, name, grey, false), text, 0,
                          WriteTestIcon(icons, name + QStringLiteral("_g"), blue, true));
        }
        buttons += item->CreateToolBlock(true);
        page->addToolBar(item);
    }
    buttons.at(4)->setChecked(true);
    tabs.resize(860, 260);
    tabs.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tabs));
    Save(tabs.grab().toImage(), QStringLiteral("toolbar"));
}

void tst_ControlsGallery::progressWidget()
{
    QMainWindow window;
    window.resize(600, 400);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QPointer<CProgressWidget> widget =
        CProgressWidget::CreateAutoWidget(QStringLiteral("删除文件夹"), QStringLiteral("正在删除文件夹，请稍候"));
    QVERIFY(widget);
    QVERIFY(QTest::qWaitForWindowExposed(widget));
    Save(widget->grab().toImage(), QStringLiteral("progress"));
    CProgressWidget::FreeAutoWidget(widget, true);
    QTRY_VERIFY(widget.isNull());
}

void tst_ControlsGallery::fileNameDelegate()
{
    QStandardItemModel model(3, 2);
    const QStringList names{QStringLiteral("叶轮_五轴精加工_刀路_第三版_最终确认.nc"), QStringLiteral("O1001.nc"),
                            QStringLiteral("/mnt/machine/programs/2024/客户订单/外壳/顶盖_粗加工.ngc")};
    for (int row = 0; row < names.size(); ++row) {
        model.setItem(row, 0, new QStandardItem(names.at(row)));
        model.setItem(row, 1, new QStandardItem(names.at(row)));
    }
    QTableView view;
    view.setStyleSheet(QStringLiteral("QTableView{background:#ffffff;color:#333333;border:none;}"));
    CFileNameDelegate right(&view);
    right.SetElideMode(Qt::ElideRight);
    CFileNameDelegate middle(&view);
    view.setItemDelegateForColumn(0, &right);
    view.setItemDelegateForColumn(1, &middle);
    view.setModel(&model);
    view.setColumnWidth(0, 200);
    view.setColumnWidth(1, 200);
    view.resize(460, 140);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    Save(view.grab().toImage(), QStringLiteral("filenamedelegate"));
}

void tst_ControlsGallery::machineView()
{
    CModule3DView view;
    view.resize(640, 480);
    const QString model =
        qEnvironmentVariable("KORV_BINARY_DIR") + QStringLiteral("/bin/resources/MachineModel/config/Config3D.ini");
    QVERIFY(view.LoadMachine(model));
    Struct3DStockParameter stock;
    stock.dSizeX = 50;
    stock.dSizeY = 50;
    stock.dSizeZ = 75;
    stock.dPosX = -67.848;
    stock.dPosY = -73.0;
    stock.dPosZ = -40.0;
    QVERIFY(view.CreateStock(stock, true));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    Save(view.grab().toImage(), QStringLiteral("view3d-home"));

    QVERIFY(view.SetMachinePos({-120.0, 80.0, -90.0, 30.0, 0.0, 45.0}));
    Save(view.grab().toImage(), QStringLiteral("view3d-moved"));

    view.SetViewCubeVisible(false);
    QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(300, 240));
    QTest::mouseMove(&view, QPoint(380, 200));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(380, 200));
    Save(view.grab().toImage(), QStringLiteral("view3d-orbited"));
}

QTEST_MAIN(tst_ControlsGallery)
#include "tst_ControlsGallery.moc"
