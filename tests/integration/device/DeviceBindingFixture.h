#pragma once

#include "AccountService.h"
#include "CVarnokMessageBox.h"
#include "CncSimulator.h"
#include "toolpage/ToolPage.h"

#include <QHash>
#include <QJsonObject>
#include <QTemporaryDir>
#include <memory>

class DeviceVerifyDialog;
class VerificationImageWindow;
class Workspace;

// A workspace connected to the machine simulator, with the account service on
// loopback behind the host's account requests. The test plays the user: it reads
// the picture codes and the SMS codes that the service hands out.
class DeviceBindingFixture
{
public:
    static constexpr auto kSn = "PB01BIND001";

    DeviceBindingFixture();
    ~DeviceBindingFixture();

    // Service options for a test: a bindings file in the fixture's folder, no resend wait.
    AccountOptions DefaultAccountOptions() const;
    bool Start(const AccountOptions& options, QString* error);
    Workspace* GetWorkspace() const { return m_pWorkspace.get(); }
    AccountService* Service() const { return m_pService.get(); }

    // Clicks the tool page action and returns the dialog it opened.
    DeviceVerifyDialog* OpenDialog(ToolPage::Action action);
    // Types the number, asks for an SMS code and waits for the picture.
    VerificationImageWindow* OpenVerification(DeviceVerifyDialog* dialog, const QString& mobile);
    // The text drawn in the picture the window shows.
    QString PictureText(const VerificationImageWindow* window) const;
    // Types into the picture window, confirms, and returns the dialog's answer.
    QString AnswerPicture(DeviceVerifyDialog* dialog, VerificationImageWindow* window, const QString& text);
    // Picture, then SMS code request; returns the dialog's answer.
    QString RequestSmsCode(DeviceVerifyDialog* dialog, const QString& mobile);
    // Types the SMS code, presses the dialog's confirm, and returns its answer.
    QString Confirm(DeviceVerifyDialog* dialog, const QString& smsCode);
    QString LastSmsCode() const { return m_strLastSms; }
    QStringList AllPictureTexts() const { return m_hashPictures.values(); }
    QJsonObject BindingsOnDisk() const;
    QString DebugLogText() const;
    bool LogHas(const QString& text, const QColor& color) const;

private:
    QString WaitForAnswer(DeviceVerifyDialog* dialog);

    QTemporaryDir m_configDir;
    QTemporaryDir m_rootDir;
    std::unique_ptr<CncSimulator> m_pSimulator;
    std::unique_ptr<AccountService> m_pService;
    std::unique_ptr<Workspace> m_pWorkspace;
    QHash<QString, QString> m_hashPictures;
    QString m_strLastSms;
};
