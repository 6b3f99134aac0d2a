#include "AccountCaptcha.h"

#include <QBuffer>
#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>

namespace {
const char kAlphabet[] = "ABCDEFGHJKMNPRSTUVWXYZ23456789";

int Random(int low, int high)
{
    return QRandomGenerator::global()->bounded(low, high + 1);
}

QColor RandomColor(int low, int high)
{
    return QColor(Random(low, high), Random(low, high), Random(low, high));
}
} // namespace

QString AccountCaptcha::RandomText()
{
    QString text;
    for (int i = 0; i < kLength; ++i)
        text += QLatin1Char(kAlphabet[Random(0, int(sizeof(kAlphabet)) - 2)]);
    return text;
}

QImage AccountCaptcha::Draw(const QString& text)
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(RandomColor(225, 250));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    for (int i = 0; i < 4; ++i) {
        QPainterPath curve(QPointF(0, Random(0, kHeight)));
        curve.cubicTo(Random(10, 50), Random(0, kHeight), Random(60, 100), Random(0, kHeight), kWidth,
                      Random(0, kHeight));
        painter.setPen(QPen(RandomColor(120, 200), 1.2));
        painter.drawPath(curve);
    }

    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    const int step = (kWidth - 16) / qMax(1, int(text.size()));
    for (int i = 0; i < text.size(); ++i) {
        font.setPixelSize(Random(22, 28));
        painter.setFont(font);
        painter.setPen(RandomColor(20, 110));
        painter.save();
        painter.translate(10 + i * step + step / 2.0, kHeight / 2.0 + Random(-3, 3));
        painter.rotate(Random(-28, 28));
        painter.shear(Random(-20, 20) / 100.0, 0);
        painter.drawText(QRectF(-step, -kHeight / 2.0, 2.0 * step, kHeight), Qt::AlignCenter, text.mid(i, 1));
        painter.restore();
    }

    // Lines across the characters and dots everywhere keep simple readers away.
    for (int i = 0; i < 2; ++i) {
        painter.setPen(QPen(RandomColor(60, 160), 1.5));
        painter.drawLine(Random(0, 20), Random(5, kHeight - 5), Random(kWidth - 20, kWidth), Random(5, kHeight - 5));
    }
    for (int i = 0; i < 120; ++i) {
        painter.setPen(RandomColor(60, 220));
        painter.drawPoint(Random(0, kWidth - 1), Random(0, kHeight - 1));
    }
    painter.end();
    return image;
}

QByteArray AccountCaptcha::DrawJpeg(const QString& text)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!Draw(text).save(&buffer, "JPEG", 85))
        return QByteArray();
    return bytes;
}
