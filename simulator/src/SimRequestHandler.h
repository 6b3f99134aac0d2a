#pragma once

#include <QJsonObject>
#include <functional>

class SimMachine;
struct SimOptions;

// Answers the messages of the request/response service. Knows nothing of sockets:
// one JSON object in, at most one out.
class SimRequestHandler
{
public:
    enum Code
    {
        Ok = 0,
        BadRequest = 1,
        UnknownType = 2,
        HashMismatch = 3,
        NotAllowed = 4,
        IoError = 5,
        NotNow = 6 // a command the machine's state does not allow
    };

    SimRequestHandler(const SimOptions& options, SimMachine& machine, std::function<QString()> reportedIp);

    // False when the message gets no answer (acknowledgements, a silenced service).
    bool Handle(const QJsonObject& request, QJsonObject* reply);
    // The reply as the controller puts it on the wire (--record-encoding, --record-nan).
    QByteArray Frame(const QJsonObject& reply) const;

private:
    // Start, stop, reset and load; false for any other type.
    bool Command(const QString& type, const QJsonObject& request, QJsonObject* reply);
    QJsonObject UploadFile(const QJsonObject& request);
    QJsonObject DownloadFile(const QJsonObject& request);
    bool LocalPathFor(const QJsonObject& request, QString* localPath) const;

    const SimOptions& m_options;
    SimMachine& m_machine;
    std::function<QString()> m_reportedIp;
};
