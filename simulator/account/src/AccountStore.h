#pragma once

#include "AccountOptions.h"

#include <QElapsedTimer>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>

// One answer of the service: "code" 0 is success, anything else a refusal whose
// "msg" a user can read; "data" carries the request's results.
struct AccountAnswer
{
    int iCode = 0;
    QString strMsg;
    QJsonObject objData;
};

// The account service's rules, without the wire: picture codes (checked once,
// two-minute life), SMS codes (five-minute life, five wrong tries), a rate limit per
// phone number, and the device bindings kept in a JSON file.
class AccountStore : public QObject
{
    Q_OBJECT
public:
    enum Code
    {
        CodeOk = 0,
        CodeBadRequest = 1001,
        CodeImageCodeWrong = 1002,
        CodeImageCodeExpired = 1003,
        CodeTooManyRequests = 1004,
        CodeSmsTooSoon = 1005,
        CodeSmsCodeWrong = 1006,
        CodeSmsCodeExpired = 1007,
        CodeBoundToOther = 1008,
        CodeNotBound = 1009,
        CodeServiceFailed = 1010,
    };

    explicit AccountStore(const AccountOptions& options, QObject* parent = nullptr);

    AccountAnswer RequestImage(const QString& nationCode, const QString& mobile);
    AccountAnswer RequestSms(const QString& nationCode, const QString& mobile, const QString& imgId,
                             const QString& imgCode);
    AccountAnswer Bind(const QString& nationCode, const QString& mobile, const QString& smsCode, const QString& sn);
    AccountAnswer Unbind(const QString& nationCode, const QString& mobile, const QString& smsCode, const QString& sn);

    // The bindings as stored: serial number -> {"nation-code", "mobile", "time"}.
    QJsonObject Bindings() const { return m_objBindings; }
    QString LoadError() const { return m_strLoadError; }

Q_SIGNALS:
    // The phone's side of an SMS: the service prints it, tests read it here.
    void SignalSmsSent(const QString& phone, const QString& code);
    // The text drawn into a picture; never printed, for tests that play the user's eyes.
    void SignalImageIssued(const QString& imgId, const QString& text);

private:
    struct ImageCode
    {
        QString strText;
        QString strPhone;
        qint64 iExpiresAt = 0;
    };
    struct SmsCode
    {
        QString strCode;
        qint64 iExpiresAt = 0;
        qint64 iSentAt = 0;
        int iWrongTries = 0;
    };

    static QString PhoneKey(const QString& nationCode, const QString& mobile);
    static bool ValidPhone(const QString& nationCode, const QString& mobile);
    qint64 Now() const { return m_clock.elapsed(); }
    bool TakeRequest(const QString& phone);
    AccountAnswer CheckSms(const QString& phone, const QString& smsCode);
    AccountAnswer ChangeBinding(const QString& nationCode, const QString& mobile, const QString& smsCode,
                                const QString& sn, bool bBind);
    bool Save();

    const AccountOptions m_options;
    QElapsedTimer m_clock;
    QHash<QString, ImageCode> m_hashImages;
    QHash<QString, SmsCode> m_hashSms;
    QHash<QString, QList<qint64>> m_hashRequests;
    QJsonObject m_objBindings;
    QString m_strLoadError;
};
