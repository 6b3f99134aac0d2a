#include "SimFrameCodec.h"

#include <QJsonDocument>
#include <QtEndian>

QByteArray SimFrameCodec::Encode(const QJsonObject& message)
{
    return Frame(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

QByteArray SimFrameCodec::Frame(const QByteArray& payload)
{
    QByteArray frame(4, '\0');
    qToBigEndian<quint32>(static_cast<quint32>(payload.size()), frame.data());
    return frame + payload;
}

QList<QByteArray> SimFrameCodec::Feed(const QByteArray& bytes)
{
    QList<QByteArray> frames;
    if (m_bBroken)
        return frames;
    m_buffer += bytes;
    qsizetype offset = 0;
    while (m_buffer.size() - offset >= 4) {
        const quint32 length = qFromBigEndian<quint32>(m_buffer.constData() + offset);
        if (length == 0 || length > kMaxPayload) {
            m_bBroken = true;
            m_buffer.clear();
            return frames;
        }
        if (m_buffer.size() - offset - 4 < qsizetype(length))
            break;
        frames << m_buffer.mid(offset + 4, length);
        offset += 4 + length;
    }
    m_buffer.remove(0, offset);
    return frames;
}
