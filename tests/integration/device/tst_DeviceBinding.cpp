#include "AccountService.h"
#include "CamBaseTextHelper.h"
#include "KorvPaths.h"
#include "SimWorkspaceFixture.h"
#include "device/DeviceVerifyDialog.h"
#include "device/VerificationImageWindow.h"
#include "toolpage/ToolPage.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTest>

namespace {
const QString Mobile = QStringLiteral("13812345678");
const QString OtherMobile = QStringLiteral("13987654321");
const QString Sn = QString::fromLatin1(SimWorkspaceFixture::kSn);

// The workspace connected to the simulator, with the account service on loopback behind the
// host's account requests. The test plays the user: it reads the picture and SMS codes the
// service hands out.
class BindingFixture : public SimWorkspaceFixture
{
public:
    BindingFixture() { SetUpFixture(); }
    ~BindingFixture() { TearDownFixture(); }

    // A bindings file in the fixture's folder, no resend wait.
    AccountOptions DefaultAccountOptions() const
    {
        AccountOptions options;
        options.port = 0;
        options.dataFile = m_configDir.filePath(QStringLiteral("bindings.json"));
        options.smsIntervalMs = 0;
        return options;
    }

    bool Start(const AccountOptions& options)
    {
        m_pService = std::make_unique<AccountService>(options);
        QString error;
        if (!m_pService->Start(&error)) {
            qWarning() << error;
            return false;
        }
        QObject::connect(m_pService->Store(), &AccountStore::SignalImageIssued,
                         [this](const QString& imgId, const QString& text) { m_hashPictures.insert(imgId, text); });
        QObject::connect(m_pService->Store(), &AccountStore::SignalSmsSent,
                         [this](const QString&, const QString& code) { m_strLastSms = code; });
        return Connect(m_pService->BaseUrl());
    }

    // Points the host's account requests at `baseUrl` and connects the workspace to the simulator.
    bool Connect(const QString& baseUrl)
    {
        CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                            QStringLiteral("Account/BaseUrl"), baseUrl, true);
        StartSimulator(DefaultSimOptions());
        if (QTest::currentTestFailed())
            return false;
        ConnectWorkspace();
        return !QTest::currentTestFailed() &&
               QTest::qWaitFor([this] { return Page()->Button(ToolPage::ActionBindDevice)->isEnabled(); }, 10000);
    }

    Workspace* GetWorkspace() const { return m_workspace.get(); }
    ToolPage* Page() const { return m_workspace->GetToolPage(); }

    // Clicks the tool page action and returns the dialog it opened.
    DeviceVerifyDialog* OpenDialog(ToolPage::Action action)
    {
        Page()->Button(action)->click();
        return m_workspace->findChild<DeviceVerifyDialog*>();
    }

    // Types the number and asks for an SMS code, which first opens the picture window.
    VerificationImageWindow* AskForPicture(DeviceVerifyDialog* dialog, const QString& mobile)
    {
        dialog->findChild<QLineEdit*>(QStringLiteral("m_editMobile"))->setText(mobile);
        dialog->findChild<QPushButton*>(QStringLiteral("m_btnSendSms"))->click();
        return dialog->VerificationWindow();
    }

    // Answers the picture, rightly unless `picture` is given; returns the dialog's answer.
    QString RequestSmsCode(DeviceVerifyDialog* dialog, const QString& mobile, const QString& picture = {})
    {
        VerificationImageWindow* window = AskForPicture(dialog, mobile);
        auto* confirm = window ? window->findChild<QPushButton*>(QStringLiteral("confirmBtn")) : nullptr;
        if (!confirm || !QTest::qWaitFor([confirm] { return confirm->isEnabled(); }, 10000))
            return QStringLiteral("no picture");
        const QString text = picture.isEmpty() ? m_hashPictures.value(window->ImageId()).toLower() : picture;
        window->findChild<QLineEdit*>(QStringLiteral("inputLineEdit"))->setText(text);
        confirm->click();
        return WaitForAnswer(dialog);
    }

    // Types the SMS code, presses the dialog's confirm, and returns its answer.
    QString Confirm(DeviceVerifyDialog* dialog, const QString& smsCode)
    {
        dialog->findChild<QLineEdit*>(QStringLiteral("m_editSmsCode"))->setText(smsCode);
        dialog->findChild<QPushButton*>(QStringLiteral("m_btnConfirm"))->click();
        return WaitForAnswer(dialog);
    }

    QString LastSmsCode() const { return m_strLastSms; }
    QStringList AllPictureTexts() const { return m_hashPictures.values(); }

    QJsonObject BindingsOnDisk() const
    {
        return QJsonDocument::fromJson(Read(DefaultAccountOptions().dataFile)).object();
    }

    QString DebugLogText() const { return QString::fromUtf8(Read(KorvPaths::DebugLogFile())); }

private:
    static QString WaitForAnswer(DeviceVerifyDialog* dialog)
    {
        const QString busy = QStringLiteral("正在请求，请稍候...");
        if (!QTest::qWaitFor([dialog, &busy] { return dialog->StatusText() != busy; }, 10000))
            return QStringLiteral("no answer");
        return dialog->StatusText();
    }

    std::unique_ptr<AccountService> m_pService;
    QHash<QString, QString> m_hashPictures;
    QString m_strLastSms;
};
} // namespace

// Binding and unbinding the connected simulator through the dialogs, against the
// account service on loopback, with the codes read as a user would read them.
class TestDeviceBinding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bindThenUnbind();
    void refusals_data();
    void refusals();
    void resendWaitsForTheCountdown();
    void closingWhileTheServiceHangs();
};

void TestDeviceBinding::bindThenUnbind()
{
    BindingFixture fixture;
    QVERIFY(fixture.Start(fixture.DefaultAccountOptions()));

    DeviceVerifyDialog* dialog = fixture.OpenDialog(ToolPage::ActionBindDevice);
    QVERIFY(dialog);
    QCOMPARE(fixture.RequestSmsCode(dialog, Mobile), QStringLiteral("验证码已发送，请查看手机短信"));
    QCOMPARE(fixture.Confirm(dialog, fixture.LastSmsCode()), QStringLiteral("设备绑定成功"));
    QJsonObject bound = fixture.BindingsOnDisk().value(Sn).toObject();
    bound.remove(QStringLiteral("time"));
    QCOMPARE(bound, (QJsonObject{{"nation-code", "86"}, {"mobile", Mobile}}));
    dialog->findChild<QPushButton*>(QStringLiteral("m_btnConfirm"))->click(); // "完成"
    QTRY_VERIFY(!fixture.GetWorkspace()->findChild<DeviceVerifyDialog*>());

    dialog = fixture.OpenDialog(ToolPage::ActionUnbindDevice);
    QVERIFY(dialog);
    QCOMPARE(fixture.RequestSmsCode(dialog, Mobile), QStringLiteral("验证码已发送，请查看手机短信"));
    QCOMPARE(fixture.Confirm(dialog, fixture.LastSmsCode()), QStringLiteral("设备解绑成功"));
    QVERIFY(!fixture.BindingsOnDisk().contains(Sn));
    // A dialog still open was for the machine that is gone.
    fixture.GetWorkspace()->DisconnectMachine(false);
    QVERIFY(!fixture.Page()->Button(ToolPage::ActionBindDevice)->isEnabled());
    QTRY_VERIFY(!fixture.GetWorkspace()->findChild<DeviceVerifyDialog*>());

    // The debug log names the number by its last four digits and never holds a code.
    const QString debugLog = fixture.DebugLogText();
    QVERIFY(debugLog.contains(QStringLiteral("*******5678")) && !debugLog.contains(Mobile));
    QVERIFY(!debugLog.contains(fixture.LastSmsCode()));
    for (const QString& picture : fixture.AllPictureTexts())
        QVERIFY2(!debugLog.contains(picture, Qt::CaseInsensitive), qPrintable(picture));
}

void TestDeviceBinding::refusals_data()
{
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QString>("expected");
    QTest::newRow("wrong picture code") << "picture" << QStringLiteral("图片验证码错误");
    QTest::newRow("sixth try after five wrong codes")
        << "tries" << QStringLiteral("短信验证码错误次数过多，请重新获取");
    QTest::newRow("machine bound to another number") << "other" << QStringLiteral("该设备已绑定其他账号");
}

void TestDeviceBinding::refusals()
{
    QFETCH(QString, refusal);
    QFETCH(QString, expected);
    BindingFixture fixture;
    AccountOptions options = fixture.DefaultAccountOptions();
    const QJsonObject other{{Sn, QJsonObject{{"nation-code", "86"}, {"mobile", OtherMobile}}}};
    if (refusal == "other") {
        QFile file(options.dataFile);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(other).toJson());
    }
    QVERIFY(fixture.Start(options));
    DeviceVerifyDialog* dialog =
        fixture.OpenDialog(refusal == "other" ? ToolPage::ActionUnbindDevice : ToolPage::ActionBindDevice);
    QVERIFY(dialog);

    // A picture answer of zeros is always wrong: 0 is never drawn.
    QString answer = fixture.RequestSmsCode(dialog, Mobile, refusal == "picture" ? QStringLiteral("0000") : QString());
    if (refusal == "picture") {
        QVERIFY(fixture.LastSmsCode().isEmpty());
    } else {
        QCOMPARE(answer, QStringLiteral("验证码已发送，请查看手机短信"));
        const QString code = fixture.LastSmsCode();
        const QString wrong = code == QLatin1String("000000") ? QStringLiteral("111111") : QStringLiteral("000000");
        for (int left = 4; refusal == "tries" && left >= 0; --left)
            QCOMPARE(fixture.Confirm(dialog, wrong),
                     left ? QStringLiteral("短信验证码错误，还可尝试 %1 次").arg(left) : expected);
        answer = fixture.Confirm(dialog, code);
    }
    QCOMPARE(answer, expected);
    // The refusal changed nothing on the service's side.
    QCOMPARE(fixture.BindingsOnDisk(), refusal == "other" ? other : QJsonObject());
}

void TestDeviceBinding::resendWaitsForTheCountdown()
{
    BindingFixture fixture;
    AccountOptions options = fixture.DefaultAccountOptions();
    options.smsIntervalMs = 2000; // the service's interval drives the countdown
    QVERIFY(fixture.Start(options));
    DeviceVerifyDialog* dialog = fixture.OpenDialog(ToolPage::ActionBindDevice);
    QVERIFY(dialog);
    QCOMPARE(fixture.RequestSmsCode(dialog, Mobile), QStringLiteral("验证码已发送，请查看手机短信"));
    auto* resend = dialog->findChild<QPushButton*>(QStringLiteral("m_btnSendSms"));
    QTest::qWait(1000);
    QVERIFY(!resend->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(resend->isEnabled(), 5000);
}

void TestDeviceBinding::closingWhileTheServiceHangs()
{
    // An account service that takes the connection and never answers.
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    BindingFixture fixture;
    QVERIFY(fixture.Connect(QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort())));
    QPointer<DeviceVerifyDialog> dialog = fixture.OpenDialog(ToolPage::ActionBindDevice);
    QVERIFY(dialog && fixture.AskForPicture(dialog, Mobile));
    QTRY_VERIFY(silent.hasPendingConnections()); // the picture request is under way

    QElapsedTimer closing;
    closing.start();
    dialog->reject();
    QTRY_VERIFY(!dialog);
    const qint64 elapsed = closing.elapsed();
    QVERIFY2(elapsed < 500 * qMax(1, qEnvironmentVariableIntValue("KORV_TIME_FACTOR")),
             qPrintable(QString::number(elapsed)));
}

QTEST_MAIN(TestDeviceBinding)
#include "tst_DeviceBinding.moc"
