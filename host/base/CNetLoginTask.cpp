#include "CNetLoginTask.h"

#include "KorvPaths.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <curl/curl.h>
#include <memory>

namespace {

// ".invalid" never resolves: without a configured service nothing leaves the computer.
const char kDefaultBaseUrl[] = "https://account.korv.invalid";

size_t collect(char* data, size_t size, size_t count, void* target)
{
    static_cast<QByteArray*>(target)->append(data, qsizetype(size * count));
    return size * count;
}

} // namespace

CNetLoginTask::CNetLoginTask(QObject* parent) : QObject(parent) {}

QString CNetLoginTask::BaseUrl()
{
    const QSettings settings(KorvPaths::SettingsFile(), QSettings::IniFormat);
    QString url = settings.value(QStringLiteral("Account/BaseUrl"), QString::fromLatin1(kDefaultBaseUrl)).toString();
    while (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}

QString CNetLoginTask::PathFor(int requestKind)
{
    switch (requestKind) {
    case RequestImageCode:
        return QStringLiteral("/api/v1/captcha/image");
    case RequestSmsCode:
        return QStringLiteral("/api/v1/captcha/sms");
    case RequestBindDevice:
        return QStringLiteral("/api/v1/device/bind");
    case RequestUnbindDevice:
        return QStringLiteral("/api/v1/device/unbind");
    default:
        return QString();
    }
}

bool CNetLoginTask::Start(int requestKind, const QVariant& parameters)
{
    m_result = QVariant();
    m_strError.clear();
    const QString path = PathFor(requestKind);
    if (path.isEmpty()) {
        m_strError = QStringLiteral("unknown request kind %1").arg(requestKind);
        return false;
    }
    const QJsonObject object = parameters.userType() == QMetaType::QJsonObject
                                   ? parameters.toJsonObject()
                                   : QJsonObject::fromVariantMap(parameters.toMap());
    const QByteArray body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    const QByteArray url = (BaseUrl() + path).toUtf8();

    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), &curl_easy_cleanup);
    if (!curl) {
        m_strError = QStringLiteral("cannot create a transfer handle");
        return false;
    }
    curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
    headers = curl_slist_append(headers, "Accept: application/xml");
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headerList(headers, &curl_slist_free_all);
    QByteArray answer;
    CURL* handle = curl.get();
    curl_easy_setopt(handle, CURLOPT_URL, url.constData());
    curl_easy_setopt(handle, CURLOPT_POST, 1L);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, body.constData());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, long(body.size()));
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headerList.get());
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &collect);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, kTimeoutMs);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L); // safe on worker threads
    curl_easy_setopt(handle, CURLOPT_NOPROXY, "127.0.0.1,localhost");
    const CURLcode code = curl_easy_perform(handle);
    if (code != CURLE_OK) {
        m_strError = QString::fromUtf8(curl_easy_strerror(code));
        return false;
    }
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    m_result = answer;
    if (status < 200 || status >= 300) {
        m_strError = QStringLiteral("HTTP status %1").arg(status);
        return false;
    }
    return true;
}
