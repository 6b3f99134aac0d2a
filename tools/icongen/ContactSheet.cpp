#include "ContactSheet.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <stdexcept>

namespace {
constexpr int Cell = 96;
constexpr int Columns = 8;
const QColor Light(0xf5, 0xf6, 0xf7);
const QColor Dark(0x2b, 0x2f, 0x36);

QList<QImage> readFrames(const QString& file)
{
    QImageReader reader(file);
    QList<QImage> frames;
    for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
        frames.append(frame);
    if (frames.isEmpty())
        throw std::runtime_error("cannot read back " + file.toStdString() + ": " + reader.errorString().toStdString());
    return frames;
}

// Half size on light and dark, then the full pixel size enlarged to fill the rest of the cell.
void drawCell(QPainter& p, const QRect& cell, const QImage& image)
{
    p.fillRect(cell, Qt::white);
    p.setPen(QColor(0xdd, 0xdd, 0xdd));
    p.drawRect(cell.adjusted(0, 0, -1, -1));
    const QSize shown = image.size() / 2;
    p.fillRect(QRect(cell.topLeft() + QPoint(2, 2), QSize(Cell / 2 - 3, shown.height() + 4)), Light);
    p.fillRect(QRect(cell.topLeft() + QPoint(Cell / 2 + 1, 2), QSize(Cell / 2 - 3, shown.height() + 4)), Dark);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(QRect(cell.topLeft() + QPoint(4, 4), shown), image);
    p.drawImage(QRect(cell.topLeft() + QPoint(Cell / 2 + 3, 4), shown), image);
    const int big = Cell - shown.height() - 12;
    p.fillRect(QRect(cell.left() + (Cell - big) / 2, cell.bottom() - big - 2, big, big), Light);
    p.drawImage(QRect(cell.left() + (Cell - big) / 2, cell.bottom() - big - 2, big, big), image);
}
} // namespace

QImage ContactSheet::compose(const QStringList& files)
{
    QList<QImage> images;
    for (const QString& file : files)
        images.append(readFrames(file));
    const int rows = (int(images.size()) + Columns - 1) / Columns;
    QImage sheet(Columns * Cell, rows * Cell, QImage::Format_ARGB32);
    sheet.fill(Qt::white);
    QPainter p(&sheet);
    for (int i = 0; i < images.size(); ++i)
        drawCell(p, QRect((i % Columns) * Cell, (i / Columns) * Cell, Cell, Cell), images.at(i));
    return sheet;
}
