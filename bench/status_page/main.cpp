// Cost of one real-time record on a shown status page (offscreen): SetRealTimeData alone, and
// SetRealTimeData followed by the page's repaint of what the record changed (3D view included),
// as the event loop does it after every record. A forced repaint of the whole page is printed
// for reference.
#include "CModule3DView.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <cmath>
#include <cstdio>

namespace {
constexpr int RecordCount = 10000;
constexpr int FrameCount = 1000;

void QuietMessages(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    // The offscreen platform warns on every change of the window's minimum size.
    if (type != QtDebugMsg && type != QtInfoMsg && !message.contains(QLatin1String("propagateSizeHints")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

// A machine cutting a circle: every field the page shows changes from record to record.
StructRealTimeData Record(int i)
{
    StructRealTimeData data;
    data.sn = QStringLiteral("PB01A2406001");
    data.status = 1 + (i / 500) % 3;
    data.runTime = 3500 + i;
    const double t = i * 0.01;
    data.MCS = {-200 + 40 * std::cos(t), -150 + 40 * std::sin(t), -98 - t * 0.01, 0, 0, std::fmod(t * 10, 360)};
    data.WCS = {40 * std::cos(t), 40 * std::sin(t), 2 - t * 0.01, 0, 0, std::fmod(t * 10, 360)};
    data.G53DTG = {std::sin(t), std::cos(t), 0, 0, 0, 0};
    data.G5xDTG = data.G53DTG;
    data.load = {40 + 5 * std::sin(t), 12.0 + i % 9, 11.0 + i % 7, 3, 2, 0, 2.0 + i % 3};
    data.feed = 900 + i % 50;
    data.feedRate = 80 + i % 40;
    data.spindleSpeed = 12000 + i % 100;
    data.spindleRate = 100;
    data.spindleTemp = 31 + (i % 100) / 10.0;
    data.toolInfo = {1 + (i / 1000) % 6, 1, 47.9, 1.5875, 3.175, {1}};
    data.program.name = QStringLiteral("bracket_6061.nc");
    data.program.curLine = 10 + i % 300;
    data.program.totalLine = 340;
    data.program.timeUsed = i;
    data.program.timeLeft = 20000 - i;
    data.program.currentLines.startLine = std::max(1, data.program.curLine - 3);
    data.program.currentLines.endLine = data.program.currentLines.startLine + 11;
    for (int line = 0; line < 12; ++line)
        data.program.currentLines.lines << QStringLiteral("N%1 G1 X%2 Y%3 F900").arg(line).arg(line * 1.5).arg(i % 40);
    return data;
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(QuietMessages);
    QApplication app(argc, argv);
    if (qEnvironmentVariableIsEmpty("KORV_RESOURCE_DIR"))
        qputenv("KORV_RESOURCE_DIR", (QCoreApplication::applicationDirPath() + "/../bin/resources").toUtf8());

    MachineStatusWidget page;
    page.resize(1440, 860);
    page.show();
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 400)
        QCoreApplication::processEvents();
    std::printf("3D view ready: %s\n", page.View3D()->GetMachineReady() ? "yes" : "no");

    QList<StructRealTimeData> records;
    for (int i = 0; i < RecordCount; ++i)
        records << Record(i);

    QElapsedTimer timer;
    timer.start();
    for (const StructRealTimeData& record : std::as_const(records))
        page.SetRealTimeData(record);
    const double perRecord = timer.nsecsElapsed() / 1000.0 / RecordCount;
    QCoreApplication::processEvents();

    timer.restart();
    for (int i = 0; i < FrameCount; ++i) {
        page.SetRealTimeData(records.at(i * 31 % RecordCount));
        QCoreApplication::processEvents();
    }
    const double perFrame = timer.nsecsElapsed() / 1000.0 / FrameCount;

    timer.restart();
    for (int i = 0; i < FrameCount / 10; ++i)
        page.repaint();
    std::printf("whole page repaint: %.1f us\n", timer.nsecsElapsed() / 1000.0 / (FrameCount / 10));

    std::printf("records=%d frames=%d (aim: under 500 us per record, under 5000 us per frame)\n", RecordCount,
                FrameCount);
    std::printf("us_per_record=%.1f us_per_frame=%.1f\n", perRecord, perFrame);
    return 0;
}
