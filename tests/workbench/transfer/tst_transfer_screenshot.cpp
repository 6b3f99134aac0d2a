#include "ScreenshotLanguage.h"
#include "transfer/TransInfo.h"
#include "transfer/TransList.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

// Pictures of the transfer manager with rows in every state, written to <build>/screenshots for
// a person to look at; nothing here judges pixels.
class TransferScreenshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void transferManager();

private:
    QTemporaryDir m_configDir;
};

void TransferScreenshot::transferManager()
{
    KORV_APPLY_SCREENSHOT_LANGUAGE();
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    QWidget host;
    auto* manager = new TransManager(&host);
    qint64 now = QDateTime(QDate(2024, 5, 6), QTime(9, 41, 7)).toMSecsSinceEpoch();
    manager->TransferList()->SetClock([&now] { return now; });
    manager->LogPane()->LogModel()->SetClock([&now] { return now; });
    host.resize(1800, 240);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));

    const QString machine = QStringLiteral("ftp://192.168.1.20:21/home/varnok/nc/");
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
    // Two reports per row, two seconds apart, so that speeds show.
    for (int pass = 0; pass < 2; ++pass) {
        for (const auto& row : rows) {
            TanslateInfo info;
            info.fileName = QString::fromUtf8(row.name);
            info.totalSize = row.total;
            info.doneSize = pass == 0 ? 0 : row.done;
            info.state = pass == 0 ? int(TanslateInfo::StateRunning) : row.state;
            info.direction = row.download;
            info.machinePath = QStringLiteral("/home/varnok/nc/") + QFileInfo(info.fileName).fileName();
            const QString key =
                machine + QFileInfo(info.fileName).fileName() + (row.download ? "*Download" : "*Upload");
            manager->TransferList()->SlotUpdateTransfer(info, key);
        }
        now += 2000;
    }
    // The workbench's own lines, in the language of the picture.
    const auto text = [](const char* context, const char* source) {
        return QCoreApplication::translate(context, source);
    };
    manager->AddLog(text("MachineConnection", "机床连接成功，IP: %1, SN: %2").arg("192.168.1.20", "PB01A2406001"),
                    QColor(0, 160, 0));
    manager->AddLog(text("TransferOrchestrator", "开始上传文件：%1").arg("impeller_roughing_pass_with_a_long_name.nc"),
                    QColor(51, 51, 51));
    manager->AddLog(text("TransferOrchestrator", "上传文件完成：%1").arg("face_mill.tap"), QColor(51, 51, 51));
    manager->AddLog(text("TransferOrchestrator", "上传文件失败：%1").arg("pocket_finish.nc"), QColor(220, 50, 50));
    manager->AddLog(text("MachineConnection", "机床连接失败，重新连接中，次数：%1").arg(3), QColor(220, 150, 0));

    const QString dir = qEnvironmentVariable("KORV_BINARY_DIR", QDir::tempPath()) + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(dir));
    QVERIFY(manager->grab().save(dir + QStringLiteral("/transfer_manager.png")));
    QVERIFY(manager->TransferList()->grab().save(dir + QStringLiteral("/transfer_list.png")));
    QVERIFY(manager->LogPane()->grab().save(dir + QStringLiteral("/transfer_log.png")));
}

QTEST_MAIN(TransferScreenshot)
#include "tst_transfer_screenshot.moc"
