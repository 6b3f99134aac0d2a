#include "GifEncoder.h"

#include <QHash>
#include <stdexcept>
#include <unordered_map>

namespace {
constexpr int TransparentIndex = 0;
constexpr int MaxColours = 255; // index 0 is kept for transparency
constexpr int MinCodeSize = 8;
constexpr int MaxCode = 4096;

void appendU16(QByteArray& out, int value)
{
    out.append(char(value & 0xff));
    out.append(char((value >> 8) & 0xff));
}

// Packs variable-width codes least significant bit first, as GIF's LZW stream wants.
class BitWriter
{
public:
    void write(int code, int width)
    {
        m_buffer |= quint32(code) << m_bits;
        m_bits += width;
        while (m_bits >= 8) {
            m_bytes.append(char(m_buffer & 0xff));
            m_buffer >>= 8;
            m_bits -= 8;
        }
    }
    QByteArray finish()
    {
        if (m_bits > 0)
            m_bytes.append(char(m_buffer & 0xff));
        return m_bytes;
    }

private:
    quint32 m_buffer = 0;
    int m_bits = 0;
    QByteArray m_bytes;
};
} // namespace

GifEncoder::GifEncoder(const QColor& matte) : m_matte(matte.rgb()) {}

void GifEncoder::addFrame(const QImage& frame)
{
    if (!m_frames.isEmpty() && frame.size() != m_frames.first().size())
        throw std::invalid_argument("every GIF frame must have the first frame's size");
    m_frames.append(flatten(frame));
}

QImage GifEncoder::flatten(const QImage& frame) const
{
    QImage out = frame.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < out.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x) {
            const QRgb p = line[x];
            const int a = qAlpha(p);
            if (a < 128) {
                line[x] = qRgba(0, 0, 0, 0);
                continue;
            }
            auto blend = [a](int c, int m) { return (c * a + m * (255 - a) + 127) / 255; };
            line[x] =
                qRgb(blend(qRed(p), qRed(m_matte)), blend(qGreen(p), qGreen(m_matte)), blend(qBlue(p), qBlue(m_matte)));
        }
    }
    return out;
}

GifEncoder::Palette GifEncoder::palette() const
{
    // Exact colours when they fit; otherwise drop low bits until they do.
    for (int shift = 0; shift < 8; ++shift) {
        const QRgb mask = qRgb(0xff << shift & 0xff, 0xff << shift & 0xff, 0xff << shift & 0xff);
        QList<QRgb> colours;
        QHash<QRgb, bool> seen;
        for (const QImage& frame : m_frames) {
            for (int y = 0; y < frame.height(); ++y) {
                const auto* line = reinterpret_cast<const QRgb*>(frame.constScanLine(y));
                for (int x = 0; x < frame.width(); ++x) {
                    if (qAlpha(line[x]) == 0)
                        continue;
                    const QRgb c = line[x] & mask;
                    if (!seen.contains(c)) {
                        seen.insert(c, true);
                        colours.append(c);
                    }
                }
            }
        }
        if (colours.size() <= MaxColours)
            return {colours, mask};
    }
    return {};
}

QByteArray GifEncoder::compress(const QList<uchar>& indices)
{
    const int clearCode = 1 << MinCodeSize;
    const int endCode = clearCode + 1;
    BitWriter bits;
    std::unordered_map<quint32, int> table;
    int codeWidth = MinCodeSize + 1;
    int next = endCode + 1;
    bits.write(clearCode, codeWidth);

    int prefix = indices.isEmpty() ? 0 : indices.first();
    for (qsizetype i = 1; i < indices.size(); ++i) {
        const uchar k = indices.at(i);
        const quint32 key = quint32(prefix) << 8 | k;
        const auto found = table.find(key);
        if (found != table.end()) {
            prefix = found->second;
            continue;
        }
        bits.write(prefix, codeWidth);
        if (next < MaxCode) {
            table.emplace(key, next++);
            // The decoder learns each code one step later, so widen once `next` passes the limit.
            if (next > (1 << codeWidth) && codeWidth < 12)
                ++codeWidth;
        } else {
            bits.write(clearCode, codeWidth);
            table.clear();
            next = endCode + 1;
            codeWidth = MinCodeSize + 1;
        }
        prefix = k;
    }
    bits.write(prefix, codeWidth);
    bits.write(endCode, codeWidth);

    const QByteArray packed = bits.finish();
    QByteArray out;
    out.append(char(MinCodeSize));
    for (qsizetype pos = 0; pos < packed.size(); pos += 255) {
        const QByteArray block = packed.mid(pos, 255);
        out.append(char(block.size()));
        out.append(block);
    }
    out.append(char(0));
    return out;
}

QByteArray GifEncoder::encode(int delayCentiseconds) const
{
    if (m_frames.isEmpty())
        return {};
    const Palette table = palette();
    const QList<QRgb>& colours = table.colours;
    QHash<QRgb, int> indexOf;
    for (int i = 0; i < colours.size(); ++i)
        indexOf.insert(colours.at(i), i + 1);

    const QSize size = m_frames.first().size();
    QByteArray out("GIF89a");
    appendU16(out, size.width());
    appendU16(out, size.height());
    out.append(char(0xf7)); // global table of 256 entries, 8-bit colour resolution
    out.append(char(TransparentIndex));
    out.append(char(0));
    out.append(char(qRed(m_matte))).append(char(qGreen(m_matte))).append(char(qBlue(m_matte)));
    for (int i = 1; i < 256; ++i) {
        const QRgb c = i <= colours.size() ? colours.at(i - 1) : m_matte;
        out.append(char(qRed(c))).append(char(qGreen(c))).append(char(qBlue(c)));
    }
    // Loop forever.
    out.append("\x21\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00", 19);

    for (const QImage& frame : m_frames) {
        out.append("\x21\xf9\x04", 3);
        out.append(char(0x09)); // restore to background after each frame; transparency on
        appendU16(out, delayCentiseconds);
        out.append(char(TransparentIndex));
        out.append(char(0));
        out.append(char(0x2c));
        appendU16(out, 0);
        appendU16(out, 0);
        appendU16(out, size.width());
        appendU16(out, size.height());
        out.append(char(0));

        QList<uchar> indices;
        indices.reserve(size.width() * size.height());
        for (int y = 0; y < frame.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(frame.constScanLine(y));
            for (int x = 0; x < frame.width(); ++x)
                indices.append(qAlpha(line[x]) == 0 ? TransparentIndex : uchar(indexOf.value(line[x] & table.mask)));
        }
        out.append(compress(indices));
    }
    out.append(char(0x3b));
    return out;
}
