#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>

// The request/response service's framing on the machine side: a 4-byte big-endian
// payload length, then that many bytes of a UTF-8 JSON object.
class SimFrameCodec
{
public:
    static constexpr quint32 kMaxPayload = 1024 * 1024;

    static QByteArray Encode(const QJsonObject& message);
    // Frames a payload as it is (a controller's own bytes, right or wrong).
    static QByteArray Frame(const QByteArray& payload);

    // Appends received bytes and returns the complete frames' payloads. A length of
    // zero or above the limit makes the stream unusable: Broken() turns true.
    QList<QByteArray> Feed(const QByteArray& bytes);
    bool Broken() const { return m_bBroken; }

private:
    QByteArray m_buffer;
    bool m_bBroken = false;
};
