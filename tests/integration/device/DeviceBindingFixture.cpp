#include "DeviceBindingFixture.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "KorvPaths.h"
#include "MachinePortMap.h"
#include "WorkspaceLogProbe.h"
#include "device/DeviceVerifyDialog.h"
#include "device/VerificationImageWindow.h"
#include "transfer/TransInfo.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {
void SetSetting(const QString& key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, key, value, true);
}
} // namespace

DeviceBindingFixture::DeviceBindingFixture()
{
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    // The disconnect notice and friends are answered at once.
    CVarnokMessageBox::SetTestResponder([](const StructMsgBoxRequest&) { return StructMsgBoxAnswer{}; });
}

DeviceBindingFixture::~DeviceBindingFixture()
{
    m_pWorkspace.reset();
    m_pService.reset();
    m_pSimulator.reset();
    CVarnokMessageBox::SetTestResponder(nullptr);
}

AccountOptions DeviceBindingFixture::DefaultAccountOptions() const
{
    AccountOptions options;
    options.port = 0;
    options.dataFile = m_configDir.filePath(QStringLiteral("bindings.json"));
    options.smsIntervalMs = 0;
    return options;
}

bool DeviceBindingFixture::Start(const AccountOptions& options, QString* error)
{
    SimOptions sim;
    sim.rootDir = m_rootDir.path();
    sim.ftpPort = sim.infoPort = sim.snPort = sim.discoveryPort = 0;
    sim.serialNumber = QString::fromLatin1(kSn);
    m_pSimulator = std::make_unique<CncSimulator>(sim);
    if (!m_pSimulator->Start(error))
        return false;
    SetSetting(QString::fromLatin1(g_strSettingFtpPortMapping), m_pSimulator->FtpPort());
    MachinePortMap::Set(30001, m_pSimulator->InfoPort());
    MachinePortMap::Set(5002, m_pSimulator->SnPort());
    MachinePortMap::Set(30002, m_pSimulator->DiscoveryPort());

    m_pService = std::make_unique<AccountService>(options);
    if (!m_pService->Start(error))
        return false;
    SetSetting(QStringLiteral("Account/BaseUrl"), m_pService->BaseUrl());
    QObject::connect(m_pService->Store(), &AccountStore::SignalImageIssued,
                     [this](const QString& imgId, const QString& text) { m_hashPictures.insert(imgId, text); });
    QObject::connect(m_pService->Store(), &AccountStore::SignalSmsSent,
                     [this](const QString&, const QString& code) { m_strLastSms = code; });

    m_pWorkspace = std::make_unique<Workspace>();
    m_pWorkspace->ConnectToMachine(QStringLiteral("127.0.0.1"), QString::fromLatin1(kSn));
    if (!QTest::qWaitFor(
            [this] {
                return m_pWorkspace->MachineSn() == QLatin1String(kSn) &&
                       m_pWorkspace->GetToolPage()->Button(ToolPage::ActionBindDevice)->isEnabled();
            },
            10000)) {
        *error = QStringLiteral("the workspace did not connect to the simulator");
        return false;
    }
    return true;
}

DeviceVerifyDialog* DeviceBindingFixture::OpenDialog(ToolPage::Action action)
{
    m_pWorkspace->GetToolPage()->Button(action)->click();
    return m_pWorkspace->findChild<DeviceVerifyDialog*>();
}

VerificationImageWindow* DeviceBindingFixture::OpenVerification(DeviceVerifyDialog* dialog, const QString& mobile)
{
    dialog->findChild<QLineEdit*>(QStringLiteral("m_editMobile"))->setText(mobile);
    dialog->findChild<QPushButton*>(QStringLiteral("m_btnSendSms"))->click();
    VerificationImageWindow* window = dialog->VerificationWindow();
    if (!window)
        return nullptr;
    auto* confirm = window->findChild<QPushButton*>(QStringLiteral("confirmBtn"));
    return QTest::qWaitFor([confirm] { return confirm->isEnabled(); }, 10000) ? window : nullptr;
}

QString DeviceBindingFixture::PictureText(const VerificationImageWindow* window) const
{
    return m_hashPictures.value(window->ImageId());
}

QString DeviceBindingFixture::AnswerPicture(DeviceVerifyDialog* dialog, VerificationImageWindow* window,
                                            const QString& text)
{
    window->findChild<QLineEdit*>(QStringLiteral("inputLineEdit"))->setText(text);
    window->findChild<QPushButton*>(QStringLiteral("confirmBtn"))->click();
    return WaitForAnswer(dialog);
}

QString DeviceBindingFixture::RequestSmsCode(DeviceVerifyDialog* dialog, const QString& mobile)
{
    VerificationImageWindow* window = OpenVerification(dialog, mobile);
    if (!window)
        return QStringLiteral("no picture");
    return AnswerPicture(dialog, window, PictureText(window).toLower());
}

QString DeviceBindingFixture::Confirm(DeviceVerifyDialog* dialog, const QString& smsCode)
{
    dialog->findChild<QLineEdit*>(QStringLiteral("m_editSmsCode"))->setText(smsCode);
    dialog->findChild<QPushButton*>(QStringLiteral("m_btnConfirm"))->click();
    return WaitForAnswer(dialog);
}

QString DeviceBindingFixture::WaitForAnswer(DeviceVerifyDialog* dialog)
{
    // In the language the dialog speaks, so that screenshots may be taken in English.
    const QString busy = QCoreApplication::translate("DeviceVerifyDialog", "正在请求，请稍候...");
    if (!QTest::qWaitFor([dialog, &busy] { return dialog->StatusText() != busy; }, 10000))
        return QStringLiteral("no answer");
    return dialog->StatusText();
}

QJsonObject DeviceBindingFixture::BindingsOnDisk() const
{
    QFile file(DefaultAccountOptions().dataFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

QString DeviceBindingFixture::DebugLogText() const
{
    QFile file(KorvPaths::DebugLogFile());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool DeviceBindingFixture::LogHas(const QString& text, const QColor& color) const
{
    return WorkspaceLogHas(*m_pWorkspace, text, color);
}
