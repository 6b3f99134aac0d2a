#include "AccountStore.h"

#include "AccountCaptcha.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSaveFile>
#include <QUuid>

namespace {
AccountAnswer Refuse(int code, const QString& msg)
{
    return {code, msg, {}};
}
} // namespace

AccountStore::AccountStore(const AccountOptions& options, QObject* parent) : QObject(parent), m_options(options)
{
    m_clock.start();
    QFile file(m_options.dataFile);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        m_strLoadError = file.errorString();
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        m_strLoadError = error.errorString();
    m_objBindings = document.object();
}

QString AccountStore::PhoneKey(const QString& nationCode, const QString& mobile)
{
    return QLatin1Char('+') + nationCode + QLatin1Char(' ') + mobile;
}

bool AccountStore::ValidPhone(const QString& nationCode, const QString& mobile)
{
    static const QRegularExpression nation(QStringLiteral("^[1-9][0-9]{0,3}$"));
    static const QRegularExpression china(QStringLiteral("^1[3-9][0-9]{9}$"));
    static const QRegularExpression other(QStringLiteral("^[0-9]{5,15}$"));
    if (!nation.match(nationCode).hasMatch())
        return false;
    return (nationCode == QLatin1String("86") ? china : other).match(mobile).hasMatch();
}

bool AccountStore::TakeRequest(const QString& phone)
{
    QList<qint64>& times = m_hashRequests[phone];
    const qint64 now = Now();
    while (!times.isEmpty() && now - times.first() >= m_options.rateWindowMs)
        times.removeFirst();
    if (times.size() >= m_options.rateLimit)
        return false;
    times.append(now);
    return true;
}

AccountAnswer AccountStore::RequestImage(const QString& nationCode, const QString& mobile)
{
    if (!ValidPhone(nationCode, mobile))
        return Refuse(CodeBadRequest, tr("手机号码格式不正确"));
    const QString phone = PhoneKey(nationCode, mobile);
    if (!TakeRequest(phone))
        return Refuse(CodeTooManyRequests, tr("请求过于频繁，请稍后再试"));
    // Expired pictures of every number go here, so the table never grows without bound.
    const qint64 now = Now();
    for (auto it = m_hashImages.begin(); it != m_hashImages.end();)
        it = it->iExpiresAt <= now ? m_hashImages.erase(it) : std::next(it);

    const QString text = AccountCaptcha::RandomText();
    const QByteArray jpeg = AccountCaptcha::DrawJpeg(text);
    if (jpeg.isEmpty())
        return Refuse(CodeServiceFailed, tr("验证码图片生成失败"));
    const QString imgId = QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_hashImages.insert(imgId, {text, phone, Now() + m_options.imageTtlMs});
    Q_EMIT SignalImageIssued(imgId, text);
    return {CodeOk,
            QStringLiteral("success"),
            {{"imgid", imgId},
             {"image", QString::fromLatin1(jpeg.toBase64())},
             {"label", tr("请输入图中的字符，不区分大小写")}}};
}

AccountAnswer AccountStore::RequestSms(const QString& nationCode, const QString& mobile, const QString& imgId,
                                       const QString& imgCode)
{
    if (!ValidPhone(nationCode, mobile) || imgId.isEmpty())
        return Refuse(CodeBadRequest, tr("请求参数不完整"));
    const QString phone = PhoneKey(nationCode, mobile);
    if (!TakeRequest(phone))
        return Refuse(CodeTooManyRequests, tr("请求过于频繁，请稍后再试"));
    // A picture is good for one answer, right or wrong.
    const ImageCode image = m_hashImages.take(imgId);
    const qint64 now = Now();
    if (image.strPhone != phone || image.iExpiresAt <= now)
        return Refuse(CodeImageCodeExpired, tr("图片验证码已失效，请重新获取"));
    if (image.strText.compare(imgCode.trimmed(), Qt::CaseInsensitive) != 0)
        return Refuse(CodeImageCodeWrong, tr("图片验证码错误"));
    const auto previous = m_hashSms.constFind(phone);
    if (previous != m_hashSms.constEnd() && now - previous->iSentAt < m_options.smsIntervalMs) {
        const qint64 wait = (m_options.smsIntervalMs - (now - previous->iSentAt) + 999) / 1000;
        return Refuse(CodeSmsTooSoon, tr("短信发送过于频繁，请 %1 秒后再试").arg(wait));
    }
    const QString code =
        QStringLiteral("%1").arg(QRandomGenerator::global()->bounded(1000000), 6, 10, QLatin1Char('0'));
    m_hashSms.insert(phone, {code, now + m_options.smsTtlMs, now, 0});
    Q_EMIT SignalSmsSent(phone, code);
    return {CodeOk,
            QStringLiteral("success"),
            {{"expire", int(m_options.smsTtlMs / 1000)}, {"interval", int(m_options.smsIntervalMs / 1000)}}};
}

AccountAnswer AccountStore::CheckSms(const QString& phone, const QString& smsCode)
{
    const auto it = m_hashSms.find(phone);
    if (it == m_hashSms.end() || it->strCode.isEmpty() || it->iExpiresAt <= Now())
        return Refuse(CodeSmsCodeExpired, tr("短信验证码已失效，请重新获取"));
    if (it->iWrongTries >= m_options.smsTries)
        return Refuse(CodeSmsCodeExpired, tr("短信验证码错误次数过多，请重新获取"));
    if (it->strCode != smsCode.trimmed()) {
        const int left = m_options.smsTries - ++it->iWrongTries;
        return left > 0 ? Refuse(CodeSmsCodeWrong, tr("短信验证码错误，还可尝试 %1 次").arg(left))
                        : Refuse(CodeSmsCodeExpired, tr("短信验证码错误次数过多，请重新获取"));
    }
    // Used up, but the resend interval still counts from its sending.
    it->strCode.clear();
    return {CodeOk, QStringLiteral("success"), {}};
}

AccountAnswer AccountStore::ChangeBinding(const QString& nationCode, const QString& mobile, const QString& smsCode,
                                          const QString& sn, bool bBind)
{
    if (!ValidPhone(nationCode, mobile) || sn.trimmed().isEmpty() || smsCode.isEmpty())
        return Refuse(CodeBadRequest, tr("请求参数不完整"));
    const QString phone = PhoneKey(nationCode, mobile);
    const QJsonObject current = m_objBindings.value(sn).toObject();
    const bool bBoundToOther =
        !current.isEmpty() && PhoneKey(current.value(QLatin1String("nation-code")).toString(),
                                       current.value(QLatin1String("mobile")).toString()) != phone;
    // Checked before the code so that a refused change does not use it up.
    if (bBoundToOther)
        return Refuse(CodeBoundToOther, tr("该设备已绑定其他账号"));
    if (!bBind && current.isEmpty())
        return Refuse(CodeNotBound, tr("该设备未绑定"));
    const AccountAnswer check = CheckSms(phone, smsCode);
    if (check.iCode != CodeOk)
        return check;
    const QJsonObject previous = m_objBindings;
    if (bBind) {
        m_objBindings.insert(sn, QJsonObject{{"nation-code", nationCode},
                                             {"mobile", mobile},
                                             {"time", QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}});
    } else {
        m_objBindings.remove(sn);
    }
    if (!Save()) {
        m_objBindings = previous;
        return Refuse(CodeServiceFailed, tr("服务器保存失败，请稍后再试"));
    }
    return {CodeOk, QStringLiteral("success"), {{"sn", sn}}};
}

AccountAnswer AccountStore::Bind(const QString& nationCode, const QString& mobile, const QString& smsCode,
                                 const QString& sn)
{
    return ChangeBinding(nationCode, mobile, smsCode, sn, true);
}

AccountAnswer AccountStore::Unbind(const QString& nationCode, const QString& mobile, const QString& smsCode,
                                   const QString& sn)
{
    return ChangeBinding(nationCode, mobile, smsCode, sn, false);
}

bool AccountStore::Save()
{
    QSaveFile file(m_options.dataFile);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(m_objBindings).toJson(QJsonDocument::Indented));
    return file.commit();
}
