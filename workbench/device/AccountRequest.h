#pragma once

#include <QJsonObject>
#include <QString>

// One answer of the cloud account service, as the dialogs read it.
struct StructAccountReply
{
    bool bHasCode = false; // the answer carried a "code" at all
    QString strCode;       // "0" is success
    QString strMsg;        // the service's own words for the user
    QJsonObject objData;
    QString strTransportError; // set when no answer came back

    bool IsSuccess() const { return bHasCode && strCode == QLatin1String("0"); }
};

namespace AccountRequest {
// Runs one host account request to its end and turns its XML answer into JSON.
// Blocks: call it from a thread-pool task only.
StructAccountReply Run(int requestKind, const QJsonObject& parameters);
// What a user reads about a reply that is not a success.
QString FailureText(const StructAccountReply& reply);
} // namespace AccountRequest
