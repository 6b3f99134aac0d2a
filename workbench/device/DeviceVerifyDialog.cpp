#include "DeviceVerifyDialog.h"

#include "CDebugLog.h"
#include "CNetLoginTask.h"
#include "LogColors.h"
#include "PhoneNumberMask.h"
#include "VerificationImageWindow.h"
#include "WorkPool.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QStyle>
#include <QTimer>
#include <QtConcurrent>

namespace {
constexpr int kDefaultResendSeconds = 60;

// Region names are translated where they are shown.
const QList<QPair<QString, const char*>>& NationCodes()
{
    static const QList<QPair<QString, const char*>> codes = {
        {QStringLiteral("86"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "中国大陆")},
        {QStringLiteral("852"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "中国香港")},
        {QStringLiteral("853"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "中国澳门")},
        {QStringLiteral("886"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "中国台湾")},
        {QStringLiteral("1"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "美国/加拿大")},
        {QStringLiteral("44"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "英国")},
        {QStringLiteral("49"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "德国")},
        {QStringLiteral("81"), QT_TRANSLATE_NOOP("DeviceVerifyDialog", "日本")},
    };
    return codes;
}
} // namespace

DeviceVerifyDialog::DeviceVerifyDialog(const StructDeviceDialogTexts& texts, const QString& sn, QWidget* parent)
    : CFixedSizePopWidget(parent), m_texts(texts), m_strSn(sn)
{
    setObjectName(QStringLiteral("DeviceVerifyDialog"));
    SetTitle(m_texts.strTitle);
    SetPopSize(QSize(440, 330));

    auto* labelSn = new QLabel(tr("设备序列号：%1").arg(m_strSn), this);
    labelSn->setObjectName(QStringLiteral("m_labelSn"));
    BodyLayout()->addWidget(labelSn);

    auto* form = new QFormLayout;
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(12);
    auto* phoneRow = new QHBoxLayout;
    m_pComboNation = new QComboBox(this);
    m_pComboNation->setObjectName(QStringLiteral("m_comboNationCode"));
    for (const auto& [code, region] : NationCodes())
        m_pComboNation->addItem(QStringLiteral("+%1 %2").arg(code, tr(region)), code);
    m_pEditMobile = new QLineEdit(this);
    m_pEditMobile->setObjectName(QStringLiteral("m_editMobile"));
    m_pEditMobile->setPlaceholderText(tr("请输入手机号码"));
    m_pEditMobile->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,15}")), m_pEditMobile));
    phoneRow->addWidget(m_pComboNation);
    phoneRow->addWidget(m_pEditMobile, 1);
    form->addRow(tr("手机号码"), phoneRow);

    auto* codeRow = new QHBoxLayout;
    m_pEditSmsCode = new QLineEdit(this);
    m_pEditSmsCode->setObjectName(QStringLiteral("m_editSmsCode"));
    m_pEditSmsCode->setPlaceholderText(tr("请输入短信验证码"));
    m_pEditSmsCode->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,6}")), m_pEditSmsCode));
    m_pBtnSendSms = new QPushButton(tr("获取验证码"), this);
    m_pBtnSendSms->setObjectName(QStringLiteral("m_btnSendSms"));
    m_pBtnSendSms->setMinimumWidth(120);
    codeRow->addWidget(m_pEditSmsCode, 1);
    codeRow->addWidget(m_pBtnSendSms);
    form->addRow(tr("验证码"), codeRow);
    BodyLayout()->addLayout(form);

    m_pLabelStatus = new QLabel(this);
    m_pLabelStatus->setObjectName(QStringLiteral("m_labelStatus"));
    m_pLabelStatus->setWordWrap(true);
    m_pLabelStatus->setMinimumHeight(36);
    BodyLayout()->addWidget(m_pLabelStatus);
    BodyLayout()->addStretch();

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    m_pBtnCancel = new QPushButton(tr("取消"), this);
    m_pBtnCancel->setObjectName(QStringLiteral("m_btnCancel"));
    m_pBtnConfirm = new QPushButton(m_texts.strConfirm, this);
    m_pBtnConfirm->setObjectName(QStringLiteral("m_btnConfirm"));
    m_pBtnConfirm->setDefault(true);
    buttons->addWidget(m_pBtnCancel);
    buttons->addWidget(m_pBtnConfirm);
    BodyLayout()->addLayout(buttons);

    m_pCountdownTimer = new QTimer(this);
    m_pCountdownTimer->setInterval(1000);
    connect(m_pCountdownTimer, &QTimer::timeout, this, &DeviceVerifyDialog::OnCountdown);
    connect(m_pBtnSendSms, &QPushButton::clicked, this, &DeviceVerifyDialog::SlotRequestSmsCode);
    connect(m_pBtnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_pBtnConfirm, &QPushButton::clicked, this, &DeviceVerifyDialog::SlotConfirm);
    connect(m_pEditMobile, &QLineEdit::returnPressed, this, &DeviceVerifyDialog::SlotRequestSmsCode);
    connect(m_pEditSmsCode, &QLineEdit::textChanged, this, &DeviceVerifyDialog::UpdateButtons);
    connect(&m_watcher, &QFutureWatcher<StructAccountReply>::finished, this, &DeviceVerifyDialog::OnReply);
    UpdateButtons();
    m_pEditMobile->setFocus();
}

DeviceVerifyDialog::~DeviceVerifyDialog()
{
    // The request holds no pointer to us and ends on the workbench's pool within its own
    // time-out; the window does not wait for it.
    m_watcher.disconnect(this);
}

QString DeviceVerifyDialog::StatusText() const
{
    return m_pLabelStatus->text();
}

QString DeviceVerifyDialog::NationCode() const
{
    return m_pComboNation->currentData().toString();
}

QString DeviceVerifyDialog::PhoneForLog() const
{
    return QStringLiteral("+%1 %2").arg(NationCode(), MaskPhoneNumber(m_pEditMobile->text()));
}

bool DeviceVerifyDialog::CheckPhone()
{
    static const QRegularExpression china(QStringLiteral("^1[3-9][0-9]{9}$"));
    static const QRegularExpression other(QStringLiteral("^[0-9]{5,15}$"));
    const QString mobile = m_pEditMobile->text();
    const bool bValid = (NationCode() == QLatin1String("86") ? china : other).match(mobile).hasMatch();
    m_pEditMobile->setProperty("invalid", !bValid);
    m_pEditMobile->style()->unpolish(m_pEditMobile);
    m_pEditMobile->style()->polish(m_pEditMobile);
    if (!bValid)
        SetStatus(mobile.isEmpty() ? tr("请输入手机号码") : tr("请输入正确的手机号码"), LogColors::Failure);
    return bValid;
}

void DeviceVerifyDialog::SlotRequestSmsCode()
{
    if (m_watcher.isRunning() || m_iCountdown > 0 || m_pVerifyWindow || !CheckPhone())
        return;
    SetStatus(QString(), LogColors::Plain);
    m_pVerifyWindow = new VerificationImageWindow(NationCode(), m_pEditMobile->text(), this);
    m_pVerifyWindow->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_pVerifyWindow, &VerificationImageWindow::SignalClose, this, &DeviceVerifyDialog::OnVerificationClosed);
    m_pVerifyWindow->move(mapToGlobal(rect().center()) - m_pVerifyWindow->rect().center());
    m_pVerifyWindow->show();
    UpdateButtons();
}

void DeviceVerifyDialog::OnVerificationClosed()
{
    const QString code = m_pVerifyWindow->EnteredCode().trimmed();
    const QString imgId = m_pVerifyWindow->ImageId();
    m_pVerifyWindow = nullptr; // deletes itself on close
    UpdateButtons();
    if (code.isEmpty())
        return;
    m_strSmsPhone = NationCode() + QLatin1Char(' ') + m_pEditMobile->text();
    StartRequest(
        CNetLoginTask::RequestSmsCode,
        {{"nation-code", NationCode()}, {"mobile", m_pEditMobile->text()}, {"imgid", imgId}, {"imgcode", code}});
}

void DeviceVerifyDialog::SlotConfirm()
{
    if (m_bDone) {
        accept();
        return;
    }
    if (m_watcher.isRunning() || !CheckPhone())
        return;
    if (m_strSmsPhone != NationCode() + QLatin1Char(' ') + m_pEditMobile->text()) {
        SetStatus(tr("请先获取短信验证码"), LogColors::Failure);
        return;
    }
    StartRequest(m_texts.iRequestKind, {{"nation-code", NationCode()},
                                        {"mobile", m_pEditMobile->text()},
                                        {"code", m_pEditSmsCode->text()},
                                        {"sn", m_strSn}});
}

void DeviceVerifyDialog::StartRequest(int kind, const QJsonObject& parameters)
{
    m_iPendingKind = kind;
    SetStatus(tr("正在请求，请稍候..."), LogColors::Plain);
    m_watcher.setFuture(QtConcurrent::run(WorkPool::Instance(), &AccountRequest::Run, kind, parameters));
    UpdateButtons();
}

void DeviceVerifyDialog::OnReply()
{
    const StructAccountReply reply = m_watcher.result();
    if (m_iPendingKind == CNetLoginTask::RequestSmsCode)
        OnSmsReply(reply);
    else
        OnChangeReply(reply);
    UpdateButtons();
}

void DeviceVerifyDialog::OnSmsReply(const StructAccountReply& reply)
{
    if (!reply.IsSuccess()) {
        m_strSmsPhone.clear();
        SetStatus(AccountRequest::FailureText(reply), LogColors::Failure);
        Log(tr("获取短信验证码失败：%1").arg(AccountRequest::FailureText(reply)), LogColors::Failure);
        return;
    }
    SetStatus(tr("验证码已发送，请查看手机短信"), LogColors::Success);
    Log(tr("短信验证码已发送至 %1").arg(PhoneForLog()), LogColors::Success);
    const QJsonValue interval = reply.objData.value(QLatin1String("interval"));
    m_iCountdown = interval.isUndefined() ? kDefaultResendSeconds : interval.toString().toInt();
    if (m_iCountdown > 0)
        m_pCountdownTimer->start();
    m_pEditSmsCode->setFocus();
}

void DeviceVerifyDialog::OnChangeReply(const StructAccountReply& reply)
{
    if (!reply.IsSuccess()) {
        SetStatus(AccountRequest::FailureText(reply), LogColors::Failure);
        Log(tr("%1：%2，SN: %3").arg(m_texts.strFailed, AccountRequest::FailureText(reply), m_strSn),
            LogColors::Failure);
        return;
    }
    m_bDone = true;
    m_pCountdownTimer->stop();
    m_iCountdown = 0;
    SetStatus(m_texts.strDone, LogColors::Success);
    Log(tr("%1，SN: %2，手机号码: %3").arg(m_texts.strDone, m_strSn, PhoneForLog()), LogColors::Success);
}

void DeviceVerifyDialog::OnCountdown()
{
    if (--m_iCountdown <= 0)
        m_pCountdownTimer->stop();
    UpdateButtons();
}

void DeviceVerifyDialog::UpdateButtons()
{
    const bool bIdle = !m_watcher.isRunning() && !m_pVerifyWindow && !m_bDone;
    m_pBtnSendSms->setEnabled(bIdle && m_iCountdown <= 0);
    m_pBtnSendSms->setText(m_iCountdown > 0 ? tr("%1秒后重新获取").arg(m_iCountdown) : tr("获取验证码"));
    m_pComboNation->setEnabled(bIdle);
    m_pEditMobile->setEnabled(bIdle);
    m_pEditSmsCode->setEnabled(!m_bDone);
    m_pBtnConfirm->setEnabled(m_bDone || (bIdle && !m_pEditSmsCode->text().isEmpty()));
    m_pBtnConfirm->setText(m_bDone ? tr("完成") : m_texts.strConfirm);
    m_pBtnCancel->setVisible(!m_bDone);
}

void DeviceVerifyDialog::SetStatus(const QString& text, const QColor& color)
{
    m_pLabelStatus->setText(text);
    m_pLabelStatus->setStyleSheet(QStringLiteral("color:%1;").arg(color.name()));
}

void DeviceVerifyDialog::Log(const QString& text, const QColor& color)
{
    Q_EMIT SignalAppendLog(text, color);
    CDebugLog::AddLog(text);
}
