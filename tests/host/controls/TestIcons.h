#pragma once

#include <QColor>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>

// Writes a 64 x 64 PNG tool icon (a rounded outline with a bar inside) in one colour, for tests
// that need icon files on disk and must tell the icons apart in a grabbed image.
inline QString WriteTestIcon(const QDir& dir, const QString& name, const QColor& colour, bool bFilled)
{
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 5));
    painter.setBrush(bFilled ? QBrush(colour) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(QRectF(8, 8, 48, 48), 10, 10);
    painter.setPen(QPen(bFilled ? QColor(Qt::white) : colour, 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(22, 32), QPointF(42, 32));
    painter.end();
    const QString path = dir.filePath(name + QStringLiteral(".png"));
    image.save(path);
    return path;
}
