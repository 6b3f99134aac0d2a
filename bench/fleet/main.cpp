// Watching a shop: cnc-sim --machines N (a separate process, so that its cost is apart) watched by
// the machines page for S seconds. Prints the workbench process's CPU per machine, the longest
// stall of its event loop, the time from a machine's state change (a stop command) to its row
// showing it, the simulator's own CPU, and one 100 KiB program sent to 10 machines through the
// funnel against `curl` uploading it to the same machines one after another.
#include "BenchSupport.h"
#include "BroadCastSender.h"
#include "DiscoveryAddressList.h"
#include "FileTransferClient.h"
#include "FleetSendJob.h"
#include "FreeLoopbackPort.h"
#include "KorvBaseGlobals.h"
#include "MachineConnection.h"
#include "MachineFileService.h"
#include "MachineFleet.h"
#include "MachinePortMap.h"
#include "fleetpage/FleetPage.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

using namespace BenchSupport;

namespace {
constexpr int SendMachines = 10;
constexpr int SendBytes = 100 * 1024;

double ProcessCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double ChildCpuSeconds(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = stat.readAll();
    // Fields after the command name in parentheses; utime and stime are the 14th and 15th.
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
}

// A program that runs for a few minutes at the simulator's pace.
void WriteProgram(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        Fail(QStringLiteral("cannot write ") + path);
    file.write("G21 G90\nM3 S8000\n");
    for (int i = 0; i < 300; ++i)
        file.write(QStringLiteral("G1 X%1 Y%2 F300\n").arg(i % 2 ? 40 : 0).arg(i * 0.5).toUtf8());
    file.write("M5\nM30\n");
}

// Runs the event loop (sleeping between events, so that the figures are not of a busy wait)
// until `done` holds; false after `timeoutMs`.
bool WaitFor(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QEventLoop pause;
        QTimer::singleShot(10, &pause, &QEventLoop::quit);
        pause.exec();
    }
    return true;
}
} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir configDir;
    PrepareEnvironment(configDir);
    QApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QCommandLineParser parser;
    parser.addOptions({{"machines", "Simulated machines (50).", "N", "50"},
                       {"seconds", "How long the shop is watched (60).", "S", "60"}});
    parser.process(app);
    const int machines = qBound(SendMachines, parser.value("machines").toInt(), 250);
    const int seconds = qMax(5, parser.value("seconds").toInt());

    QTemporaryDir shopRoot;
    for (int i = 0; i < machines; ++i) {
        const QString folder = shopRoot.filePath(QStringLiteral("PB01A2406%1").arg(101 + i));
        QDir().mkpath(folder);
        WriteProgram(folder + QStringLiteral("/part.nc"));
    }
    const quint16 ftp = FreeLoopbackPort();
    const quint16 info = FreeLoopbackPort();
    const quint16 sn = FreeLoopbackPort();
    const quint16 discovery = FreeLoopbackPort();
    QProcess sim;
    sim.setProcessChannelMode(QProcess::MergedChannels);
    sim.start(QCoreApplication::applicationDirPath() + QStringLiteral("/cnc-sim"),
              {"--machines", QString::number(machines), "--root", shopRoot.path(), "--ftp-port", QString::number(ftp),
               "--info-port", QString::number(info), "--sn-port", QString::number(sn), "--discovery-port",
               QString::number(discovery), "--sn", "PB01A2406001", "--autorun"});
    QByteArray simOutput;
    if (!WaitFor(
            [&] {
                simOutput += sim.readAll();
                return simOutput.count("cnc-sim ready") == machines || sim.state() == QProcess::NotRunning;
            },
            20000) ||
        sim.state() == QProcess::NotRunning)
        Fail(QStringLiteral("cnc-sim did not start: ") + QString::fromUtf8(simOutput));

    SetSetting(g_strSettingFtpPortMapping, ftp);
    MachinePortMap::Set(30001, info);
    MachinePortMap::Set(5002, sn);
    MachinePortMap::Set(30002, discovery);
    SetSetting(DiscoveryAddressList::SettingKey, QStringLiteral("127.0.0.2-%1").arg(1 + machines));

    MachineConnection connection;
    MachineFleet fleet(&connection);
    fleet.DiscoverySender()->SetInterfaceFilter({QStringLiteral("lo")});
    FleetPage page(&fleet);
    page.resize(1400, 900);
    page.show();
    fleet.Start();
    auto reachable = [&fleet] {
        int count = 0;
        for (int row = 0; row < fleet.Count(); ++row)
            count += fleet.At(row).bReachable ? 1 : 0;
        return count;
    };
    if (!WaitFor([&] { return reachable() == machines; }, 30000))
        Fail(QStringLiteral("only %1 of %2 machines answer").arg(reachable()).arg(machines));
    const int pollMs = fleet.Timing().iPollMs;

    // The event loop's longest wait beyond a 5 ms tick.
    QElapsedTimer tickClock;
    qint64 longestStallMs = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout,
                     [&] { longestStallMs = std::max(longestStallMs, tickClock.restart() - 5); });
    tickClock.start();
    tick.start(5);

    // Every few seconds a running machine is stopped; its row must show "waiting" soon after.
    FileTransferClient commander;
    QList<qint64> latencies;
    int probeRow = -1;
    QElapsedTimer probeClock;
    QObject::connect(&fleet, &MachineFleet::SignalChanged, [&](int row) {
        if (row == probeRow && fleet.At(row).Status() == 3) {
            latencies.append(probeClock.elapsed());
            probeRow = -1;
        }
    });
    QTimer prober;
    QObject::connect(&prober, &QTimer::timeout, [&] {
        if (probeRow >= 0)
            return;
        for (int row = 0; row < fleet.Count(); ++row) {
            if (fleet.At(row).Status() != 1)
                continue;
            commander.connectToMachine(fleet.At(row).strIp, 30001);
            if (!WaitFor([&] { return commander.isConnected(); }, 2000))
                return;
            probeRow = row;
            probeClock.start();
            commander.StopProgram();
            return;
        }
    });
    prober.start(5000);

    const double cpuBefore = ProcessCpuSeconds();
    const double simBefore = ChildCpuSeconds(sim.processId());
    QElapsedTimer wall;
    wall.start();
    QEventLoop window;
    QTimer::singleShot(seconds * 1000, &window, &QEventLoop::quit);
    window.exec();
    const double wallSeconds = wall.nsecsElapsed() / 1e9;
    const double cpuPercent = 100 * (ProcessCpuSeconds() - cpuBefore) / wallSeconds;
    const double simPercent = 100 * (ChildCpuSeconds(sim.processId()) - simBefore) / wallSeconds;
    prober.stop();
    tick.stop();

    // One program to ten machines through the funnel, then the same with curl, one machine after another.
    QTemporaryDir local;
    const QString program = local.filePath(WriteRandomFiles(local.path(), 1, SendBytes).first());
    MachineFileService files;
    QList<FleetSendJob::Target> targets;
    for (int row = 0; row < SendMachines; ++row)
        targets.append({row, fleet.EndpointOf(row)});
    auto* job = new FleetSendJob(&files, targets, {program}, QStringLiteral("/"), {});
    int ok = 0;
    int ended = 0;
    QObject::connect(job, &FleetSendJob::SignalMachineEnded, [&](int, bool success, const QString&) {
        ++ended;
        ok += success ? 1 : 0;
    });
    QElapsedTimer sendClock;
    sendClock.start();
    job->Start();
    if (!WaitFor([&] { return ended == SendMachines; }, 60000) || ok != SendMachines)
        Fail(QStringLiteral("the send reached %1 of %2 machines").arg(ok).arg(SendMachines));
    const double fleetSend = sendClock.nsecsElapsed() / 1e9;
    double curlSend = 0;
    for (int row = 0; row < SendMachines; ++row) {
        curlSend += TimeProcess(QStringLiteral("curl"),
                                {"-s", "-S", "-T", program,
                                 QStringLiteral("ftp://%1:%2/curl_%3.nc").arg(fleet.At(row).strIp).arg(ftp).arg(row)});
    }

    sim.terminate();
    sim.waitForFinished(5000);

    std::sort(latencies.begin(), latencies.end());
    const qint64 worstLatency = latencies.isEmpty() ? -1 : latencies.last();
    std::printf("%d machines watched for %.0f s, poll interval %d ms\n", machines, wallSeconds, pollMs);
    std::printf("cpu_percent_total=%.2f cpu_percent_per_machine=%.3f\n", cpuPercent, cpuPercent / machines);
    std::printf("gui_stall_max_ms=%lld\n", static_cast<long long>(longestStallMs));
    std::printf("state_to_row_ms max=%lld median=%lld probes=%d (max %.2f poll intervals)\n",
                static_cast<long long>(worstLatency),
                static_cast<long long>(latencies.isEmpty() ? -1 : latencies.at(latencies.size() / 2)),
                int(latencies.size()), worstLatency / double(pollMs));
    std::printf("sim_cpu_percent=%.2f (cnc-sim, %d machines)\n", simPercent, machines);
    std::printf("fleet_send_s=%.3f curl_sequential_s=%.3f ratio_fleet_send=%.2f (%d KiB to %d machines)\n", fleetSend,
                curlSend, curlSend / fleetSend, SendBytes / 1024, SendMachines);
    return 0;
}
