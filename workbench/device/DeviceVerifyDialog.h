#pragma once

#include "AccountRequest.h"
#include "CFixedSizePopWidget.h"
#include "VerificationImageWindow.h"

#include <QColor>
#include <QFutureWatcher>
#include <QPointer>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;

// What tells the bind dialog from the unbind dialog.
struct StructDeviceDialogTexts
{
    QString strTitle;   // "绑定设备"
    QString strConfirm; // "绑定"
    QString strDone;    // "设备绑定成功"
    QString strFailed;  // "设备绑定失败"
    int iRequestKind = 0;
};

// Proves the user owns a phone number (picture code, then SMS code) and then asks
// the account service to change the binding of the connected machine. The service
// works on the thread pool; its answers appear in the status line and the log.
class DeviceVerifyDialog : public CFixedSizePopWidget
{
    Q_OBJECT

public:
    ~DeviceVerifyDialog() override;

    QString StatusText() const;
    // The picture-code window while it is open.
    VerificationImageWindow* VerificationWindow() const { return m_pVerifyWindow; }

Q_SIGNALS:
    void SignalAppendLog(const QString& text, const QColor& color);

public Q_SLOTS:
    void SlotConfirm() override;

protected:
    DeviceVerifyDialog(const StructDeviceDialogTexts& texts, const QString& sn, QWidget* parent);

private:
    void SlotRequestSmsCode();
    void OnVerificationClosed();
    void OnReply();
    void OnSmsReply(const StructAccountReply& reply);
    void OnChangeReply(const StructAccountReply& reply);
    void OnCountdown();
    void StartRequest(int kind, const QJsonObject& parameters);
    void SetStatus(const QString& text, const QColor& color);
    void Log(const QString& text, const QColor& color);
    void UpdateButtons();
    QString NationCode() const;
    QString PhoneForLog() const;
    bool CheckPhone();

    const StructDeviceDialogTexts m_texts;
    const QString m_strSn;
    QComboBox* m_pComboNation = nullptr;
    QLineEdit* m_pEditMobile = nullptr;
    QLineEdit* m_pEditSmsCode = nullptr;
    QPushButton* m_pBtnSendSms = nullptr;
    QPushButton* m_pBtnCancel = nullptr;
    QPushButton* m_pBtnConfirm = nullptr;
    QLabel* m_pLabelStatus = nullptr;
    QTimer* m_pCountdownTimer = nullptr;
    int m_iCountdown = 0;
    int m_iPendingKind = 0;
    bool m_bDone = false;
    QString m_strSmsPhone; // the number the last SMS code went to
    QPointer<VerificationImageWindow> m_pVerifyWindow;
    QFutureWatcher<StructAccountReply> m_watcher;
};
