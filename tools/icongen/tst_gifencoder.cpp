#include "GifEncoder.h"

#include <QBuffer>
#include <QImageReader>
#include <QRandomGenerator>
#include <QTest>

// Decodes with Qt's own GIF reader, the one the workbench plays the animation with.
class TestGifEncoder : public QObject
{
    Q_OBJECT

private:
    static QList<QImage> decode(const QByteArray& gif, int* loops = nullptr)
    {
        QBuffer buffer;
        buffer.setData(gif);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer, "gif");
        QList<QImage> frames;
        for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
            frames.append(clearTransparent(frame.convertToFormat(QImage::Format_ARGB32)));
        if (loops)
            *loops = reader.loopCount();
        return frames;
    }

    // The reader gives transparent pixels the background's colour; only their alpha matters.
    static QImage clearTransparent(QImage image)
    {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) == 0)
                    image.setPixel(x, y, qRgba(0, 0, 0, 0));
        return image;
    }

    static QImage noise(QSize size, int colours, quint32 seed, bool holes)
    {
        QRandomGenerator random(seed);
        QImage image(size, QImage::Format_ARGB32);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x) {
                const int c = random.bounded(colours);
                const bool hole = holes && random.bounded(4) == 0;
                image.setPixel(x, y, hole ? qRgba(0, 0, 0, 0) : qRgb(c * 7 % 256, c * 13 % 256, c * 29 % 256));
            }
        return image;
    }

private slots:
    void roundTripsExactColours_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("colours");
        QTest::addColumn<bool>("holes");
        QTest::newRow("single pixel") << QSize(1, 1) << 1 << false;
        QTest::newRow("flat") << QSize(64, 64) << 1 << false;
        QTest::newRow("two colours, odd size") << QSize(37, 13) << 2 << true;
        // Random pixels fill the 4096-entry code table several times over, forcing clear codes.
        QTest::newRow("table resets") << QSize(200, 150) << 255 << false;
        QTest::newRow("table resets with holes") << QSize(128, 128) << 200 << true;
    }
    void roundTripsExactColours()
    {
        QFETCH(QSize, size);
        QFETCH(int, colours);
        QFETCH(bool, holes);
        GifEncoder encoder(Qt::white);
        const QList<QImage> frames{noise(size, colours, 1, holes), noise(size, colours, 2, holes)};
        for (const QImage& frame : frames)
            encoder.addFrame(frame);
        int loops = 0;
        const QList<QImage> decoded = decode(encoder.encode(5), &loops);
        QCOMPARE(decoded.size(), frames.size());
        QCOMPARE(loops, -1);
        for (int i = 0; i < frames.size(); ++i)
            QCOMPARE(decoded.at(i), frames.at(i));
    }

    void blendsHalfCoveredPixelsOntoMatte()
    {
        QImage frame(3, 1, QImage::Format_ARGB32);
        frame.setPixel(0, 0, qRgba(255, 0, 0, 255));
        frame.setPixel(1, 0, qRgba(255, 0, 0, 128)); // unpremultiplied half red
        frame.setPixel(2, 0, qRgba(255, 0, 0, 127));
        GifEncoder encoder(QColor(0, 0, 255));
        encoder.addFrame(frame);
        const QImage out = decode(encoder.encode(1)).value(0);
        QCOMPARE(out.pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(out.pixel(1, 0), qRgb(128, 0, 127));
        QCOMPARE(qAlpha(out.pixel(2, 0)), 0);
    }

    void reducesPaletteWhenColoursOverflow()
    {
        QImage frame(64, 64, QImage::Format_ARGB32);
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
                frame.setPixel(x, y, qRgb(x * 4, y * 4, 128));
        GifEncoder encoder(Qt::white);
        encoder.addFrame(frame);
        const QImage out = decode(encoder.encode(1)).value(0);
        QVERIFY(!out.isNull());
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) {
                const QRgb p = out.pixel(x, y);
                QVERIFY(qAbs(qRed(p) - x * 4) < 32 && qAbs(qGreen(p) - y * 4) < 32 && qBlue(p) == 128);
            }
    }

    void rejectsFramesOfAnotherSize()
    {
        GifEncoder encoder(Qt::white);
        encoder.addFrame(QImage(4, 4, QImage::Format_ARGB32));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, encoder.addFrame(QImage(5, 4, QImage::Format_ARGB32)));
    }
};

QTEST_GUILESS_MAIN(TestGifEncoder)
#include "tst_gifencoder.moc"
