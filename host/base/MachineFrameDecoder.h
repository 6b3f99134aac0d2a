#pragma once

#include "KorvBaseExport.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

// Framing of the machine's request/response service (docs/protocol.md): a 4-byte
// big-endian payload length, then that many bytes of a UTF-8 JSON object. The
// decoder takes bytes as TCP delivers them, split or merged, and yields messages.
// Anything it cannot trust (zero or oversized length, a payload that is not a JSON
// object) breaks the stream for good: the connection must be dropped.
class KORVBASE_EXPORT MachineFrameDecoder
{
public:
    static constexpr quint32 kMaxPayload = 1024 * 1024;

    static QByteArray Encode(const QJsonObject& message);

    // False once the stream is broken; ErrorString() says why.
    bool Feed(const QByteArray& bytes);
    // Takes the oldest decoded message; false when none is waiting.
    bool Next(QJsonObject* message);

    bool IsBroken() const { return !m_strError.isEmpty(); }
    const QString& ErrorString() const { return m_strError; }
    void Reset();

private:
    QByteArray m_buffer;
    QList<QJsonObject> m_listMessages;
    QString m_strError;
};
