#include "MachineFrameDecoder.h"

#include <QJsonDocument>
#include <QtEndian>

QByteArray MachineFrameDecoder::Encode(const QJsonObject& message)
{
    const QByteArray payload = QJsonDocument(message).toJson(QJsonDocument::Compact);
    QByteArray frame(4, '\0');
    qToBigEndian<quint32>(quint32(payload.size()), frame.data());
    return frame + payload;
}

bool MachineFrameDecoder::Feed(const QByteArray& bytes)
{
    if (IsBroken())
        return false;
    m_buffer += bytes;
    qsizetype offset = 0;
    while (m_buffer.size() - offset >= 4) {
        const quint32 length = qFromBigEndian<quint32>(m_buffer.constData() + offset);
        if (length == 0 || length > kMaxPayload) {
            m_strError = QStringLiteral("frame length %1 outside 1..%2").arg(length).arg(kMaxPayload);
            m_buffer.clear();
            return false;
        }
        if (m_buffer.size() - offset - 4 < qsizetype(length))
            break;
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(m_buffer.mid(offset + 4, length), &error);
        if (error.error != QJsonParseError::NoError || !document.isObject()) {
            m_strError = error.error != QJsonParseError::NoError
                             ? QStringLiteral("malformed JSON: %1").arg(error.errorString())
                             : QStringLiteral("payload is not a JSON object");
            m_buffer.clear();
            return false;
        }
        m_listMessages << document.object();
        offset += 4 + length;
    }
    m_buffer.remove(0, offset);
    return true;
}

bool MachineFrameDecoder::Next(QJsonObject* message)
{
    if (m_listMessages.isEmpty())
        return false;
    *message = m_listMessages.takeFirst();
    return true;
}

void MachineFrameDecoder::Reset()
{
    m_buffer.clear();
    m_listMessages.clear();
    m_strError.clear();
}
