#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>

// Writes a looping, animated GIF89a from ARGB frames of one size. GIF knows only on/off
// transparency, so half-covered edge pixels are blended onto `matte`, the background the
// animation is expected to play on; fainter pixels become transparent.
class GifEncoder
{
public:
    explicit GifEncoder(const QColor& matte);

    void addFrame(const QImage& frame);
    // Delay between frames in hundredths of a second.
    QByteArray encode(int delayCentiseconds) const;

private:
    struct Palette
    {
        QList<QRgb> colours;
        QRgb mask = 0;
    };

    QImage flatten(const QImage& frame) const;
    Palette palette() const;
    static QByteArray compress(const QList<uchar>& indices);

    QRgb m_matte;
    QList<QImage> m_frames;
};
