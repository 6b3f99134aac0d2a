#pragma once

#include "KorvBaseExport.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

// Framing of the machine's request/response service (docs/protocol.md): a 4-byte
// big-endian payload length, then that many bytes of a UTF-8 JSON object. The
// decoder takes bytes as TCP delivers them, split or merged, and yields messages.
// Controllers put their own bytes in text fields (names in GBK) and print failed
// sensors as NaN: such a message is still read, its text decoded with the machine's
// name encoding and a value JSON cannot hold marked unusable, so that only that
// record is lost. Anything else it cannot trust (zero or oversized length, a payload
// that is not a JSON object) breaks the stream for good: the connection must be dropped.
class KORVBASE_EXPORT MachineFrameDecoder
{
public:
    static constexpr quint32 kMaxPayload = 1024 * 1024;

    static QByteArray Encode(const QJsonObject& message);

    // False once the stream is broken; ErrorString() says why.
    bool Feed(const QByteArray& bytes);
    // Takes the oldest decoded message; false when none is waiting. *usable turns false for a
    // message that held a value JSON cannot hold (NaN, infinity, a number out of range).
    bool Next(QJsonObject* message, bool* usable = nullptr);
    // How the machine spells text that is not UTF-8 (a QStringConverter name, "GBK").
    void SetTextEncoding(const QByteArray& encoding) { m_textEncoding = encoding; }

    bool IsBroken() const { return !m_strError.isEmpty(); }
    const QString& ErrorString() const { return m_strError; }
    void Reset();

private:
    // The payload parsed leniently (foreign text, unusable numbers); false when it is no JSON object.
    bool ParseLeniently(const QByteArray& payload, QJsonObject* message, bool* usable, QString* error) const;

    QByteArray m_buffer;
    QByteArray m_textEncoding = "UTF-8";
    QList<QJsonObject> m_listMessages;
    QList<bool> m_listUsable;
    QString m_strError;
};
