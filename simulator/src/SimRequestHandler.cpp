#include "SimRequestHandler.h"

#include "SimFrameCodec.h"
#include "SimMachine.h"
#include "SimOptions.h"
#include "SimPathJail.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringEncoder>

namespace {

// Base64 grows data by a third; what is left of a frame after the envelope.
constexpr qint64 kMaxFileOverTcp = SimFrameCodec::kMaxPayload / 4 * 3 - 4096;

QJsonObject answer(const QString& type, int code, const QString& msg)
{
    return {{"type", type}, {"code", code}, {"msg", msg}};
}

QString md5(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

} // namespace

SimRequestHandler::SimRequestHandler(const SimOptions& options, SimMachine& machine,
                                     std::function<QString()> reportedIp)
    : m_options(options), m_machine(machine), m_reportedIp(std::move(reportedIp))
{}

bool SimRequestHandler::Handle(const QJsonObject& request, QJsonObject* reply)
{
    const QString type = request.value(QLatin1String("type")).toString();
    if (type == QLatin1String("GetMachineInfoReq")) {
        *reply = answer(QStringLiteral("GetMachineInfoRes"), Ok, QStringLiteral("success"));
        reply->insert(QStringLiteral("data"), m_machine.MachineInfo(m_reportedIp()));
        return true;
    }
    if (type == QLatin1String("RealTimeDataReq")) {
        if (m_options.realTimeSilent)
            return false;
        *reply = answer(QStringLiteral("RealTimeDataRes"), Ok, QStringLiteral("success"));
        reply->insert(QStringLiteral("data"), m_machine.RealTimeData());
        return true;
    }
    if (type == QLatin1String("DownloadToolsReq")) {
        *reply = answer(QStringLiteral("DownloadToolsRes"), Ok, QStringLiteral("success"));
        reply->insert(QStringLiteral("tools"), m_machine.Tools());
        return true;
    }
    if (type == QLatin1String("UploadToolsReq")) {
        const bool ok = m_machine.SetTools(request.value(QLatin1String("tools")).toArray());
        *reply = answer(QStringLiteral("UploadToolsRes"), ok ? Ok : BadRequest,
                        ok ? QStringLiteral("success") : QStringLiteral("bad tool table"));
        return true;
    }
    if (type == QLatin1String("UploadFileReq")) {
        *reply = UploadFile(request);
        return true;
    }
    if (type == QLatin1String("DownloadFileReq")) {
        *reply = DownloadFile(request);
        return true;
    }
    if (type == QLatin1String("DownloadFileAck"))
        return false;
    if (type.endsWith(QLatin1String("Req")) && Command(type, request, reply))
        return true;
    *reply = answer(QStringLiteral("ErrorRes"), UnknownType, QStringLiteral("unknown message type: %1").arg(type));
    return true;
}

QByteArray SimRequestHandler::Frame(const QJsonObject& reply) const
{
    if (m_options.recordEncoding == QLatin1String("utf8") && !m_options.recordNan)
        return SimFrameCodec::Encode(reply);
    QString text = QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact));
    // Controllers written in C print a failed sensor as a bare NaN, which JSON does not have.
    if (m_options.recordNan && reply.value(QLatin1String("type")).toString() == QLatin1String("RealTimeDataRes"))
        text.replace(QRegularExpression(QStringLiteral("\"spindleTemp\":[^,}]*")),
                     QStringLiteral("\"spindleTemp\":NaN"));
    if (m_options.recordEncoding == QLatin1String("gbk"))
        return SimFrameCodec::Frame(QStringEncoder("GBK").encode(text));
    return SimFrameCodec::Frame(text.toUtf8());
}

bool SimRequestHandler::Command(const QString& type, const QJsonObject& request, QJsonObject* reply)
{
    const QString replyType = type.chopped(3) + QStringLiteral("Res");
    QString error;
    bool ok = false;
    int refusal = NotNow;
    if (type == QLatin1String("StartProgramReq")) {
        ok = m_machine.Start(&error);
    } else if (type == QLatin1String("StopProgramReq")) {
        ok = m_machine.Stop(&error);
    } else if (type == QLatin1String("ResetMachineReq")) {
        ok = m_machine.Reset(&error);
    } else if (type == QLatin1String("LoadProgramReq")) {
        const QString name = request.value(QLatin1String("name")).toString();
        static const QStringList runnable = {"nc", "ngc", "tap", "mpf"};
        QString local;
        if (!LocalPathFor(request, &local)) {
            refusal = NotAllowed;
            error = QStringLiteral("path not allowed");
        } else if (!runnable.contains(QFileInfo(name).suffix().toLower())) {
            refusal = BadRequest;
            error = QStringLiteral("not a program the machine can run: %1").arg(name);
        } else {
            ok = m_machine.LoadProgram(name, &error);
        }
    } else {
        return false;
    }
    *reply = ok ? answer(replyType, Ok, QStringLiteral("success")) : answer(replyType, refusal, error);
    return true;
}

bool SimRequestHandler::LocalPathFor(const QJsonObject& request, QString* localPath) const
{
    const SimPathJail jail(m_options.rootDir);
    QString path;
    const QString name = request.value(QLatin1String("name")).toString();
    if (name.isEmpty() || !jail.Resolve(QStringLiteral("/"), name, &path) || path == QLatin1String("/"))
        return false;
    *localPath = jail.LocalPath(path);
    return jail.IsInside(*localPath);
}

QJsonObject SimRequestHandler::UploadFile(const QJsonObject& request)
{
    const QString type = QStringLiteral("UploadFileAck");
    QString local;
    if (!LocalPathFor(request, &local))
        return answer(type, NotAllowed, QStringLiteral("path not allowed"));
    if (request.value(QLatin1String("encoding")).toString() != QLatin1String("base64"))
        return answer(type, BadRequest, QStringLiteral("encoding must be base64"));
    const QByteArray content = QByteArray::fromBase64(request.value(QLatin1String("data")).toString().toLatin1());
    if (content.size() != request.value(QLatin1String("totalSize")).toInteger(-1))
        return answer(type, BadRequest, QStringLiteral("size mismatch"));
    if (md5(content) != request.value(QLatin1String("hash")).toString().toLower())
        return answer(type, HashMismatch, QStringLiteral("hash mismatch"));
    QSaveFile file(local);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return answer(type, IoError, QStringLiteral("cannot write file"));
    return answer(type, Ok, QStringLiteral("success"));
}

QJsonObject SimRequestHandler::DownloadFile(const QJsonObject& request)
{
    const QString type = QStringLiteral("DownloadFileRes");
    QString local;
    if (!LocalPathFor(request, &local))
        return answer(type, NotAllowed, QStringLiteral("path not allowed"));
    QFile file(local);
    if (!file.open(QIODevice::ReadOnly))
        return answer(type, IoError, QStringLiteral("no such file"));
    if (file.size() > kMaxFileOverTcp)
        return answer(type, BadRequest, QStringLiteral("file too large for this channel; use FTP"));
    const QByteArray content = file.readAll();
    QJsonObject reply = answer(type, Ok, QStringLiteral("success"));
    reply.insert(QStringLiteral("name"), request.value(QLatin1String("name")));
    reply.insert(QStringLiteral("totalSize"), content.size());
    reply.insert(QStringLiteral("hash"), md5(content));
    reply.insert(QStringLiteral("encoding"), QStringLiteral("base64"));
    reply.insert(QStringLiteral("data"), QString::fromLatin1(content.toBase64()));
    return reply;
}
