#include "ScreenshotLanguage.h"
#include "StatusPageFixture.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QDir>
#include <QPushButton>
#include <QTest>

// Saves the status page connected to the simulator while a program runs, for a person to look at.
class TestStatusPageScreenshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runningProgram()
    {
        KORV_APPLY_SCREENSHOT_LANGUAGE();
        StatusPageFixture fixture;
        SimOptions options = fixture.Options();
        options.timeScale = 4;
        QString error;
        QVERIFY2(fixture.Start(options, &error), qPrintable(error));
        QTRY_COMPARE_WITH_TIMEOUT(fixture.Find<QPushButton>("BtnCNCStatus")->text(),
                                  QCoreApplication::translate("MachineStatusWidget", "运行中"), 10000);
        // Let the cut get going, so that loads, feed and the program lines are those of real work.
        QTRY_VERIFY_WITH_TIMEOUT(fixture.Text("LabelNowNumber").toInt() >= 14 &&
                                     fixture.Text("LabelValueMain") != QStringLiteral("0.0%"),
                                 20000);
        QTest::qWait(500);

        const QString folder = qEnvironmentVariable("KORV_BINARY_DIR", QDir::currentPath()) + "/screenshots";
        QVERIFY(QDir().mkpath(folder));
        const QImage image = fixture.Space().grab().toImage();
        QVERIFY(!image.isNull());
        const QString file = folder + QStringLiteral("/status_page_running.png");
        QVERIFY(image.save(file));
        qInfo().noquote() << "screenshot:" << file;
    }
};

QTEST_MAIN(TestStatusPageScreenshot)
#include "tst_StatusPageScreenshot.moc"
