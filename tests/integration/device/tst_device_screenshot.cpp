#include "DeviceBindingFixture.h"
#include "ScreenshotLanguage.h"
#include "device/DeviceVerifyDialog.h"
#include "device/VerificationImageWindow.h"
#include "workspace/Workspace.h"

#include <QDir>
#include <QPainter>
#include <QTest>

// Saves the picture-code window over the bind dialog over the connected workbench,
// for a person to look at.
class TestDeviceScreenshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verificationOverTheWorkbench()
    {
        KORV_APPLY_SCREENSHOT_LANGUAGE();
        DeviceBindingFixture fixture;
        QString error;
        QVERIFY2(fixture.Start(fixture.DefaultAccountOptions(), &error), qPrintable(error));
        Workspace* workspace = fixture.GetWorkspace();
        workspace->resize(1280, 760);
        workspace->show();
        QVERIFY(QTest::qWaitForWindowExposed(workspace));
        DeviceVerifyDialog* dialog = fixture.OpenDialog(ToolPage::ActionBindDevice);
        QVERIFY(dialog);
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        VerificationImageWindow* window = fixture.OpenVerification(dialog, QStringLiteral("13812345678"));
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window));

        Save(workspace, {dialog, window}, QStringLiteral("device_verification_window.png"));

        // The bind dialog once the SMS code is on its way.
        QCOMPARE(fixture.AnswerPicture(dialog, window, fixture.PictureText(window)),
                 QCoreApplication::translate("DeviceVerifyDialog", "验证码已发送，请查看手机短信"));
        Save(workspace, {dialog}, QStringLiteral("device_bind_dialog.png"));
    }

private:
    // Each top-level window is drawn where it stands on the screen, over the workspace.
    static void Save(QWidget* workspace, const QList<QWidget*>& windows, const QString& name)
    {
        QImage image = workspace->grab().toImage();
        QPainter painter(&image);
        const QPoint origin = workspace->mapToGlobal(QPoint(0, 0));
        for (QWidget* top : windows)
            painter.drawPixmap(top->mapToGlobal(QPoint(0, 0)) - origin, top->grab());
        painter.end();
        const QString folder = qEnvironmentVariable("KORV_BINARY_DIR", QDir::currentPath()) + "/screenshots";
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(image.save(folder + QLatin1Char('/') + name));
        qInfo().noquote() << "screenshot:" << folder + QLatin1Char('/') + name;
    }
};

QTEST_MAIN(TestDeviceScreenshot)
#include "tst_device_screenshot.moc"
