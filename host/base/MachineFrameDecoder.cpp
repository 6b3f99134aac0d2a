#include "MachineFrameDecoder.h"

#include <QJsonDocument>
#include <QStringDecoder>
#include <QtEndian>
#include <cmath>

namespace {
// Replaces number-like tokens outside strings that JSON cannot hold (NaN, Infinity, 1e999) by null.
QByteArray NullUnusableNumbers(const QByteArray& json, bool* replaced)
{
    QByteArray out;
    out.reserve(json.size());
    bool bInString = false;
    for (qsizetype i = 0; i < json.size(); ++i) {
        const char c = json.at(i);
        if (bInString) {
            out += c;
            if (c == '\\' && i + 1 < json.size())
                out += json.at(++i);
            else if (c == '"')
                bInString = false;
            continue;
        }
        if (c == '"') {
            bInString = true;
            out += c;
            continue;
        }
        const bool bTokenStart = c == '-' || c == '+' || std::isalnum(uchar(c)) || c == '.';
        if (!bTokenStart) {
            out += c;
            continue;
        }
        qsizetype end = i;
        while (end < json.size() && (std::isalnum(uchar(json.at(end))) || QByteArray("+-.").contains(json.at(end))))
            ++end;
        const QByteArray token = json.mid(i, end - i);
        i = end - 1;
        if (token == "true" || token == "false" || token == "null") {
            out += token;
            continue;
        }
        bool bOk = false;
        const double value = token.toDouble(&bOk);
        if (bOk && std::isfinite(value)) {
            out += token;
        } else {
            out += "null";
            *replaced = true;
        }
    }
    return out;
}
} // namespace

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
        QJsonObject message;
        bool bUsable = true;
        QString error;
        if (!ParseLeniently(m_buffer.mid(offset + 4, length), &message, &bUsable, &error)) {
            m_strError = error;
            m_buffer.clear();
            return false;
        }
        m_listMessages << message;
        m_listUsable << bUsable;
        offset += 4 + length;
    }
    m_buffer.remove(0, offset);
    return true;
}

bool MachineFrameDecoder::ParseLeniently(const QByteArray& payload, QJsonObject* message, bool* usable,
                                         QString* error) const
{
    QJsonParseError parse;
    QJsonDocument document = QJsonDocument::fromJson(payload, &parse);
    QByteArray text = payload;
    if (parse.error != QJsonParseError::NoError) {
        // Not UTF-8: the machine's own encoding, else UTF-8 with the bad bytes replaced.
        QStringDecoder utf8(QStringDecoder::Utf8);
        const QString asUtf8 = utf8(payload);
        if (utf8.hasError()) {
            QStringDecoder own(m_textEncoding.constData());
            const QString decoded = own.isValid() ? QString(own(payload)) : QString();
            text = (own.isValid() && !own.hasError() ? decoded : asUtf8).toUtf8();
            document = QJsonDocument::fromJson(text, &parse);
        }
    }
    if (parse.error != QJsonParseError::NoError) {
        bool bReplaced = false;
        const QByteArray nulled = NullUnusableNumbers(text, &bReplaced);
        if (bReplaced) {
            QJsonParseError retry;
            const QJsonDocument lenient = QJsonDocument::fromJson(nulled, &retry);
            if (retry.error == QJsonParseError::NoError) {
                document = lenient;
                parse = retry;
                *usable = false;
            }
        }
    }
    if (parse.error != QJsonParseError::NoError || !document.isObject()) {
        *error = parse.error != QJsonParseError::NoError ? QStringLiteral("malformed JSON: %1").arg(parse.errorString())
                                                         : QStringLiteral("payload is not a JSON object");
        return false;
    }
    *message = document.object();
    return true;
}

bool MachineFrameDecoder::Next(QJsonObject* message, bool* usable)
{
    if (m_listMessages.isEmpty())
        return false;
    *message = m_listMessages.takeFirst();
    const bool bUsable = m_listUsable.takeFirst();
    if (usable)
        *usable = bUsable;
    return true;
}

void MachineFrameDecoder::Reset()
{
    m_buffer.clear();
    m_listMessages.clear();
    m_listUsable.clear();
    m_strError.clear();
}
