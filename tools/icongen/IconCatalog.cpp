#include "IconCatalog.h"

#include "GifEncoder.h"
#include "IconPainter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>

namespace {
using Glyph = IconPainter::Glyph;

const QColor Accent(0x36, 0x8b, 0xd4);
const QColor BarGrey(0x8a, 0x90, 0x99);
const QColor Disabled(0xb4, 0xb9, 0xc0);
const QColor Green(0x17, 0xa0, 0x61);
const QColor DarkGreen(0x10, 0x80, 0x4c);
const QColor DarkBlue(0x25, 0x6f, 0xb0);
const QColor Red(0xe5, 0x3b, 0x32);
const QColor Orange(0xf6, 0x9e, 0x3b);
const QColor OfflineGrey(0x99, 0x99, 0x99);
const QColor FolderBack(0xe8, 0xa8, 0x2e);
const QColor FolderFront(0xf7, 0xc9, 0x4f);
const QColor Paper(0xff, 0xff, 0xff);
const QColor PaperLine(0x7a, 0x86, 0x94);
const QColor Glass(0xd6, 0xea, 0xfa);
const QColor VerifyGreen(0x18, 0x85, 0x53);
const QColor VerifyBlue(0x3b, 0x7d, 0xee);
// Tool-page buttons sit on a light panel; the animation's soft edges are blended onto it.
const QColor ToolPanel(0xf5, 0xf6, 0xf7);

// The workbench button of the host's side bar: a folder holding a sheet.
void drawFilesWorkbench(IconPainter& p, const QColor& color, const QColor& sheet)
{
    const QRectF bounds(2.5, 4, 19, 16);
    p.folder(bounds, color.darker(125), color, false);
    QPainterPath paper;
    paper.addRoundedRect(QRectF(5.5, 6.4, 13, 6), 0.6, 0.6);
    p.fill(paper, sheet);
    p.folder(bounds, Qt::transparent, color, false);
}

void drawNewConnection(IconPainter& p, const QColor& color, const QColor& badge)
{
    p.chainLink(QPointF(8.2, 13.8), 10.5, -45, color, 2.1);
    p.chainLink(QPointF(13.8, 8.2), 10.5, -45, color, 2.1);
    p.badge(QPointF(17.6, 17.6), 4.6, badge, Glyph::Plus);
}

void drawDisconnect(IconPainter& p, const QColor& color, const QColor& spark)
{
    p.chainLink(QPointF(6.6, 17.4), 10.5, -45, color, 2.1);
    p.chainLink(QPointF(17.4, 6.6), 10.5, -45, color, 2.1);
    QPainterPath sparks;
    sparks.moveTo(9.6, 8.0);
    sparks.lineTo(11.0, 9.4);
    sparks.moveTo(14.4, 16.0);
    sparks.lineTo(13.0, 14.6);
    sparks.moveTo(8.0, 12.0);
    sparks.lineTo(10.0, 12.0);
    sparks.moveTo(16.0, 12.0);
    sparks.lineTo(14.0, 12.0);
    sparks.moveTo(12.0, 8.0);
    sparks.lineTo(12.0, 10.0);
    sparks.moveTo(12.0, 16.0);
    sparks.lineTo(12.0, 14.0);
    p.stroke(sparks, spark, 1.5);
}

void drawMachineState(IconPainter& p, const QColor& frame, const QColor& pulse)
{
    p.monitor(QRectF(2, 3, 20, 14), frame, Qt::white);
    QPainterPath line;
    line.moveTo(4.6, 10.4);
    line.lineTo(8.2, 10.4);
    line.lineTo(9.8, 6.6);
    line.lineTo(12.2, 14.0);
    line.lineTo(14.2, 8.4);
    line.lineTo(15.6, 10.4);
    line.lineTo(19.4, 10.4);
    p.stroke(line, pulse, 1.6);
}

void drawTransmission(IconPainter& p, const QColor& right, const QColor& left)
{
    p.arrow(QPointF(3, 8), QPointF(21, 8), right, 2.2);
    p.arrow(QPointF(21, 16), QPointF(3, 16), left, 2.2);
}

void drawDevice(IconPainter& p, const QColor& badge, Glyph glyph)
{
    p.machine(QRectF(1.5, 3, 18, 15), Accent, Glass);
    p.badge(QPointF(18.2, 17.8), 4.4, badge, glyph);
}

void drawSync(IconPainter& p, const QColor& color, qreal rotation)
{
    p.cycleArrows(QPointF(12, 12), 7.6, 2.4, color, rotation, 2);
}

void drawTransferButtonArrow(IconPainter& p, bool right, const QColor& color)
{
    p.blockArrow(QRectF(3, 6, 18, 12), right, color);
}

void drawStatus(IconPainter& p, const QColor& color, Glyph glyph)
{
    p.badge(QPointF(12, 12), 10, color, glyph, false);
}
} // namespace

IconCatalog::IconCatalog()
{
    addHostIcons();
    addToolPageIcons();
    addFilePanelIcons();
    addMachineStatusIcons();
    addVerificationIcons();
}

void IconCatalog::addHostIcons()
{
    m_icons.append({"icon/ico_ltb_file_sel.png", 48,
                    [](IconPainter& p) { drawFilesWorkbench(p, Accent, QColor(0xe3, 0xf0, 0xfb)); }});
    m_icons.append({"icon/ico_ltb_file_unsel.png", 48,
                    [](IconPainter& p) { drawFilesWorkbench(p, BarGrey, QColor(0xd4, 0xd8, 0xdd)); }});
}

void IconCatalog::addToolPageIcons()
{
    const QString dir = QStringLiteral("icon/ToolPage/");
    const int size = 64;
    m_icons.append(
        {dir + "ico_function_files_build.png", size, [](IconPainter& p) { drawNewConnection(p, Accent, Green); }});
    m_icons.append({dir + "ico_function_files_build_g.png", size,
                    [](IconPainter& p) { drawNewConnection(p, Disabled, Disabled); }});
    m_icons.append(
        {dir + "ico_function_files_offline.png", size, [](IconPainter& p) { drawDisconnect(p, Accent, Red); }});
    m_icons.append({dir + "ico_function_files_offline_g.png", size,
                    [](IconPainter& p) { drawDisconnect(p, Disabled, Disabled); }});
    m_icons.append({dir + "ico_function_files_machine_state_nor.png", size,
                    [](IconPainter& p) { drawMachineState(p, Accent, Green); }});
    m_icons.append({dir + "ico_function_files_machine_state_g.png", size,
                    [](IconPainter& p) { drawMachineState(p, Disabled, Disabled); }});
    m_icons.append({dir + "ico_function_files_transmission.png", size,
                    [](IconPainter& p) { drawTransmission(p, Green, Accent); }});
    m_icons.append({dir + "ico_function_files_transmission_g.png", size,
                    [](IconPainter& p) { drawTransmission(p, Disabled, Disabled); }});
    m_icons.append(
        {dir + "ico_files_device_bingding.png", size, [](IconPainter& p) { drawDevice(p, Green, Glyph::Link); }});
    m_icons.append(
        {dir + "ico_files_device_unbing.png", size, [](IconPainter& p) { drawDevice(p, Red, Glyph::Minus); }});
    m_icons.append(
        {dir + "ico_function_files_synchronization.png", size, [](IconPainter& p) { drawSync(p, Accent, -60); }});
    m_icons.append({dir + "ico_function_files_synchronization_finish.png", size, [](IconPainter& p) {
                        drawSync(p, Green, -60);
                        p.glyph(QPointF(12, 12), 6.4, Green, Glyph::Check);
                    }});
    // Two arrows repeat every half turn, so the loop spins half a turn.
    m_animations.append({dir + "ico_function_files_synchronization_bac.gif", size, 12, 6,
                         [](IconPainter& p, qreal phase) { drawSync(p, Accent, -60 + 180 * phase); }});
}

void IconCatalog::addFilePanelIcons()
{
    const QString dir = QStringLiteral("icon/filepanel/");
    m_icons.append({dir + "desktop.png", 32, [](IconPainter& p) { p.monitor(QRectF(2, 3, 20, 13.5), Accent, Glass); }});
    m_icons.append({dir + "download.png", 32, [](IconPainter& p) {
                        p.arrow(QPointF(12, 2), QPointF(12, 15.5), Green, 2.6);
                        QPainterPath tray;
                        tray.moveTo(3, 14);
                        tray.lineTo(3, 20.5);
                        tray.lineTo(21, 20.5);
                        tray.lineTo(21, 14);
                        p.stroke(tray, Accent, 2.4);
                    }});
    m_icons.append({dir + "fileFormat.png", 32, [](IconPainter& p) {
                        p.page(QRectF(4.5, 2, 15, 20), PaperLine, Paper, 0, PaperLine);
                        QPainterPath band;
                        band.addRoundedRect(QRectF(7, 14, 10, 4.6), 0.8, 0.8);
                        p.fill(band, Accent);
                    }});
    m_icons.append({dir + "txt.png", 32, [](IconPainter& p) {
                        QPainterPath behind;
                        behind.addRoundedRect(QRectF(7.5, 1.5, 13, 17), 0.6, 0.6);
                        p.fill(behind, QColor(0xbf, 0xd8, 0xee));
                        p.page(QRectF(3.5, 4.5, 13.5, 18), DarkBlue, Paper, 3, Accent);
                    }});
    m_icons.append({dir + "open.png", 32,
                    [](IconPainter& p) { p.folder(QRectF(2, 3.5, 19, 17), FolderBack, FolderFront, true); }});
    m_icons.append(
        {dir + "ico_local.png", 40, [](IconPainter& p) { p.laptop(QRectF(4, 4.5, 16, 11), Accent, Glass); }});
    m_icons.append(
        {dir + "ico_machine.png", 40, [](IconPainter& p) { p.machine(QRectF(2, 3.5, 20, 17), Accent, Glass); }});
    m_icons.append({dir + "ico_arrow_right_green.png", 32,
                    [](IconPainter& p) { p.blockArrow(QRectF(2.5, 4.5, 19, 15), true, Green); }});
    m_icons.append({dir + "ico_arrow_left_blue.png", 32,
                    [](IconPainter& p) { p.blockArrow(QRectF(2.5, 4.5, 19, 15), false, Accent); }});
    // Upload (local to machine) points right, download points left; the odd number is the
    // stronger look of each pair.
    m_icons.append(
        {dir + "img_file_arrow_1.png", 64, [](IconPainter& p) { drawTransferButtonArrow(p, true, DarkGreen); }});
    m_icons.append({dir + "img_file_arrow_2.png", 64, [](IconPainter& p) { drawTransferButtonArrow(p, true, Green); }});
    m_icons.append(
        {dir + "img_file_arrow_3.png", 64, [](IconPainter& p) { drawTransferButtonArrow(p, false, DarkBlue); }});
    m_icons.append(
        {dir + "img_file_arrow_4.png", 64, [](IconPainter& p) { drawTransferButtonArrow(p, false, Accent); }});
    m_icons.append(
        {dir + "restart.png", 48, [](IconPainter& p) { p.cycleArrows(QPointF(12, 12.5), 7.4, 2.6, Accent, -50, 1); }});
}

void IconCatalog::addMachineStatusIcons()
{
    const QString dir = QStringLiteral("icon/MachineStatus/");
    m_icons.append(
        {dir + "ico_machine_status_.png", 32, [](IconPainter& p) { drawStatus(p, OfflineGrey, Glyph::Power); }});
    m_icons.append({dir + "ico_machine_status_run.png", 32, [](IconPainter& p) { drawStatus(p, Green, Glyph::Play); }});
    m_icons.append(
        {dir + "ico_machine_status_alert.png", 32, [](IconPainter& p) { drawStatus(p, Red, Glyph::Exclamation); }});
    m_icons.append(
        {dir + "ico_machine_status_wait.png", 32, [](IconPainter& p) { drawStatus(p, Orange, Glyph::Clock); }});
    m_icons.append({dir + "ico_machine_status_outline.png", 32, [](IconPainter& p) {
                        QPainterPath ring;
                        ring.addEllipse(QPointF(12, 12), 8.6, 8.6);
                        ring.moveTo(6, 18);
                        ring.lineTo(18, 6);
                        p.stroke(ring, Red, 2.6);
                    }});
    m_icons.append({dir + "ico_machine_status_folder.png", 32,
                    [](IconPainter& p) { p.folder(QRectF(2, 3.5, 20, 17), FolderBack, FolderFront, false); }});
    m_icons.append({dir + "ico_machine_status_files.png", 32,
                    [](IconPainter& p) { p.page(QRectF(4.5, 2, 15, 20), DarkBlue, Paper, 3, Accent); }});
    m_icons.append({dir + "ico_machine_status_files_edit.png", 32,
                    [](IconPainter& p) { p.pencil(QPointF(3.5, 20.5), 22, Accent); }});
    m_icons.append({dir + "ico_machine_status_files_del.png", 32,
                    [](IconPainter& p) { p.trashCan(QRectF(4.5, 2, 15, 20), Red); }});
}

void IconCatalog::addVerificationIcons()
{
    m_icons.append({"icon/left/icon_sign_pic_safty.png", 40, [](IconPainter& p) {
                        p.shield(QRectF(3.5, 1.5, 17, 21), VerifyGreen);
                        p.glyph(QPointF(12, 11.8), 9, Qt::white, Glyph::Check);
                    }});
    m_icons.append({"icon/left/icon_sign_pic_safty_refresh.png", 32,
                    [](IconPainter& p) { p.cycleArrows(QPointF(12, 12), 7.8, 2.4, VerifyBlue, -60, 2); }});
}

QStringList IconCatalog::paths() const
{
    QStringList out;
    for (const Icon& icon : m_icons)
        out.append(icon.path);
    for (const Animation& animation : m_animations)
        out.append(animation.path);
    return out;
}

QStringList IconCatalog::writeAll(const QString& resourceDir) const
{
    const QDir root(resourceDir);
    QStringList written;
    auto blank = [](int size) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        return image;
    };
    auto target = [&root](const QString& path) {
        const QString file = root.filePath(path);
        QDir().mkpath(QFileInfo(file).absolutePath());
        return file;
    };

    for (const Icon& icon : m_icons) {
        QImage image = blank(icon.size);
        {
            IconPainter painter(image);
            icon.draw(painter);
        }
        const QString file = target(icon.path);
        if (!image.convertToFormat(QImage::Format_ARGB32).save(file, "PNG"))
            throw std::runtime_error("cannot write " + file.toStdString());
        written.append(file);
    }
    for (const Animation& animation : m_animations) {
        GifEncoder gif(ToolPanel);
        for (int i = 0; i < animation.frames; ++i) {
            QImage image = blank(animation.size);
            {
                IconPainter painter(image);
                animation.draw(painter, qreal(i) / animation.frames);
            }
            gif.addFrame(image);
        }
        const QString file = target(animation.path);
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(gif.encode(animation.delayCentiseconds)) < 0)
            throw std::runtime_error("cannot write " + file.toStdString());
        written.append(file);
    }
    return written;
}
