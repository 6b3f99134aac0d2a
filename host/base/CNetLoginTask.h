#pragma once

#include "KorvBaseExport.h"

#include <QObject>
#include <QString>
#include <QVariant>

// One blocking request to the cloud account service, for use from a thread-pool
// task. The parameters (a JSON object or a variant map) are posted as JSON to the
// path of the request kind under the base address of the host setting
// "Account/BaseUrl"; the service answers in XML, which GetResult() returns as bytes.
class KORVBASE_EXPORT CNetLoginTask : public QObject
{
    Q_OBJECT
public:
    enum RequestKind
    {
        RequestImageCode = 1, // picture code for a phone number
        RequestSmsCode = 2,
        RequestBindDevice = 3,
        RequestUnbindDevice = 4,
    };
    static constexpr long kTimeoutMs = 10000;

    explicit CNetLoginTask(QObject* parent = nullptr);

    // Runs the request to its end; true when the service answered with HTTP 2xx.
    bool Start(int requestKind, const QVariant& parameters);
    // The answer's body as a QByteArray (also after an HTTP error status).
    QVariant GetResult() const { return m_result; }
    QString ErrorString() const { return m_strError; }

    static QString BaseUrl();
    // Empty for an unknown kind.
    static QString PathFor(int requestKind);

private:
    QVariant m_result;
    QString m_strError;
};
