#include "MachinePanelFixture.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileTreeView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QTest>

using Fixture = MachinePanelFixture;

// Saves a local and a machine panel side by side, for a person to look at.
class TestFilePanelScreenshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void localAndMachineSideBySide()
    {
        QTemporaryDir local;
        QTemporaryDir machine;
        QDir localDir(local.path());
        QVERIFY(localDir.mkpath(QStringLiteral("夹具程序")));
        QVERIFY(localDir.mkpath(QStringLiteral("archive")));
        Fixture::WriteFile(localDir.filePath(QStringLiteral("part10.nc")), 48213);
        Fixture::WriteFile(localDir.filePath(QStringLiteral("part9.nc")), 1536);
        Fixture::WriteFile(localDir.filePath(QStringLiteral("零件加工 A面.ngc")), 734003);
        Fixture::WriteFile(localDir.filePath(QStringLiteral("readme.txt")), 512);
        Fixture::WriteFile(
            localDir.filePath(QStringLiteral("a rather long program name for the elision of a cell.tap")),
            5 * 1024 * 1024);
        QDir machineDir(machine.path());
        QVERIFY(machineDir.mkpath(QStringLiteral("programs")));
        QVERIFY(machineDir.mkpath(QStringLiteral("日志")));
        Fixture::WriteFile(machineDir.filePath(QStringLiteral("O1001.nc")), 20480);
        Fixture::WriteFile(machineDir.filePath(QStringLiteral("刀具测试.tap")), 3100);
        Fixture::WriteFile(machineDir.filePath(QStringLiteral("setup.zconf")), 211);
        Fixture fixture;
        QString error;
        QVERIFY2(fixture.Start(machine.path(), &error), qPrintable(error));

        QWidget window;
        window.setStyleSheet(QStringLiteral("background-color: white;"));
        auto* layout = new QHBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(8);
        auto* localPanel = new FileSelectPanel(true);
        auto* machinePanel = new FileSelectPanel(false);
        layout->addWidget(localPanel);
        layout->addWidget(machinePanel);
        window.resize(1600, 520);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        QVERIFY(Fixture::WaitForListing(*localPanel, [&] {
            localPanel->findChild<QLineEdit*>(QStringLiteral("pathLineEdit"))->setText(local.path());
            localPanel->SlotPathEditReturnPressed();
        }));
        localPanel->SlotHeaderClicked(0);
        localPanel->TreeView()->setCurrentIndex(Fixture::RowNamed(*localPanel, QStringLiteral("part9.nc")));
        machinePanel->SetMachineIp(QStringLiteral("127.0.0.1"));
        bool ok = false;
        QVERIFY(Fixture::WaitForListing(
            *machinePanel, [&] { machinePanel->RefreshPanel(); }, &ok));
        QVERIFY(ok);
        QCOMPARE(Fixture::ShownNames(*machinePanel).size(), 5);

        const QString folder = qEnvironmentVariable("KORV_BINARY_DIR", QDir::currentPath()) + "/screenshots";
        QVERIFY(QDir().mkpath(folder));
        const QImage image = window.grab().toImage();
        QVERIFY(!image.isNull());
        const QString file = folder + QStringLiteral("/filepanel_local_and_machine.png");
        QVERIFY(image.save(file));
        qInfo().noquote() << "screenshot:" << file;

        // The context menu over a machine program, with a local file copied (so paste is offered),
        // painted where it pops up (it is a window of its own).
        QTest::keyClick(localPanel->TreeView(), Qt::Key_C, Qt::ControlModifier);
        QWidget* viewport = machinePanel->TreeView()->viewport();
        const QModelIndex program = Fixture::RowNamed(*machinePanel, QStringLiteral("O1001.nc"));
        machinePanel->TreeView()->setCurrentIndex(program);
        const QPoint pos = machinePanel->TreeView()->visualRect(program).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos));
        QApplication::sendEvent(viewport, &event);
        QMenu* menu = machinePanel->ContextMenu();
        QTRY_VERIFY(menu->isVisible());
        QImage withMenu = window.grab().toImage();
        QPainter painter(&withMenu);
        // At the pointer: the offscreen screen is smaller than the window, so the popup itself was pushed aside.
        painter.drawPixmap(viewport->mapTo(&window, pos), menu->grab());
        painter.end();
        const QString menuFile = folder + QStringLiteral("/filepanel_machine_context_menu.png");
        QVERIFY(withMenu.save(menuFile));
        qInfo().noquote() << "screenshot:" << menuFile;
        menu->hide();
    }
};

int main(int argc, char** argv)
{
    static QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    qputenv("KORV_CONFIG_DIR", (home.path() + "/korv").toUtf8());
    for (const char* folder : {"Desktop", "Downloads", "Documents"}) {
        QDir(home.path()).mkpath(QLatin1String(folder));
    }
    QApplication app(argc, argv);
    TestFilePanelScreenshot test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_filepanel_screenshot.moc"
