// Folder synchronisation of the Workspace (listing, difference, rows, logs and the limit of
// five) from a local folder of many small programs into an empty machine folder of the
// simulator, then again over the now equal folders (no-op), against lftp's reverse mirror with
// five transfers at once in the same run: writing straight to the real name, and writing
// temporary names renamed when complete, the same work as ours. Rounds interleave ours and the
// references, each from an empty machine folder; the best of three counts. The longest stall of
// the GUI thread during our synchronisations is printed too.
#include "BenchSupport.h"
#include "StallRecorder.h"

#include <CVarnokMessageBox.h>
#include <FolderSync.h>
#include <KorvBaseGlobals.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <filepanel/FileManager.h>
#include <filepanel/FileSelectPanel.h>
#include <workspace/Workspace.h>

namespace {
using namespace BenchSupport;

constexpr int kRounds = 3;

bool Wait(const std::function<bool()>& condition)
{
    return WaitUntil(condition);
}

double TimeOurs(Workspace& workspace, StallRecorder& stalls)
{
    FolderSync* sync = workspace.GetFolderSync();
    QElapsedTimer clock;
    clock.start();
    stalls.Start();
    workspace.SlotFileSyncBtnClicked();
    if (!Wait([&] { return sync->GetButtonState() != FolderSync::ButtonRunning; }))
        Fail(QStringLiteral("the synchronisation did not end"));
    const double seconds = clock.nsecsElapsed() / 1e9;
    if (sync->GetButtonState() != FolderSync::ButtonFinished)
        Fail(QStringLiteral("the synchronisation failed"));
    Wait([] { return !g_bTranslating; });
    return seconds;
}

struct Best
{
    double sync = 1e9;
    double noop = 1e9;
};

// Ours and the references over one simulator; prints the figures with `prefix` before the ratio names.
void RunSeries(const QStringList& switches, const QString& source, int files, const char* prefix)
{
    auto server = StartSimulator(switches);
    SetSetting(g_strSettingFtpUser, server->User());
    SetSetting(g_strSettingFtpPassword, server->Password());
    SetSetting(g_strSettingFtpPortMapping, server->Port());
    Workspace workspace;
    FileManager* manager = workspace.GetFileManager();
    workspace.ConnectToMachine(QStringLiteral("127.0.0.1"), QStringLiteral("PB01BENCH"));
    if (!Wait([&] { return manager->IsConnected(); }))
        Fail(QStringLiteral("no connection to the simulator"));
    manager->LocalPanel()->OpenFolder(source);
    if (!Wait([&] { return manager->LocalPanel()->CurrentPath() == source; }))
        Fail(QStringLiteral("the local panel did not open ") + source);

    const auto lftp = [&](bool bTempFiles) {
        return TimeLftp(*server, QStringLiteral("mirror -R --parallel=5 %1 /lftp").arg(source), bTempFiles);
    };
    Best ours;
    Best plain;
    Best safe;
    StallRecorder stalls;
    qint64 longestStallMs = 0;
    QString commands;
    for (int round = 0; round < kRounds; ++round) {
        // A new, empty folder each round. A folder emptied behind the workbench's back is refilled
        // too (the synchronisation scenario tests cover it).
        const QString folder = QStringLiteral("/ours%1").arg(round);
        server->MakeDir(folder);
        manager->MachinePanel()->OpenFolder(folder);
        if (!Wait([&] { return manager->MachinePanel()->CurrentPath().startsWith(folder) && !g_bTranslating; }))
            Fail(QStringLiteral("the machine panel did not open ") + folder);
        const QMap<QString, qint64> before = round == 0 ? server->CommandCounts() : QMap<QString, qint64>();
        ours.sync = qMin(ours.sync, TimeOurs(workspace, stalls));
        longestStallMs = qMax(longestStallMs, stalls.LongestMs());
        if (round == 0)
            commands = CommandsPerFile(before, server->CommandCounts(), files);
        const int sent = CountFiles(server->LocalPath(folder));
        if (sent != files)
            Fail(QStringLiteral("round %1: our synchronisation sent %2 of %3 files").arg(round).arg(sent).arg(files));
        ours.noop = qMin(ours.noop, TimeOurs(workspace, stalls));

        EmptyFolder(*server, QStringLiteral("/lftp"));
        plain.sync = qMin(plain.sync, lftp(false));
        if (CountFiles(server->LocalPath(QStringLiteral("/lftp"))) != files)
            Fail(QStringLiteral("lftp did not send every file"));
        plain.noop = qMin(plain.noop, lftp(false));

        EmptyFolder(*server, QStringLiteral("/lftp"));
        safe.sync = qMin(safe.sync, lftp(true));
    }

    std::printf("  sync:  ours %.3f s, lftp mirror -R %.3f s, with temp names %.3f s\n", ours.sync, plain.sync,
                safe.sync);
    std::printf("  no-op: ours %.3f s, lftp mirror -R %.3f s\n", ours.noop, plain.noop);
    std::printf("  longest GUI thread stall during our synchronisations %lld ms\n", qint64(longestStallMs));
    std::printf("%s\n", qPrintable(commands));
    std::printf("%sratio sync=%.2f noop=%.2f\n", prefix, plain.sync / ours.sync, plain.noop / ours.noop);
    std::printf("%ssafe_ratio sync=%.2f\n", prefix, safe.sync / ours.sync);
}
} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir configDir;
    PrepareEnvironment(configDir);
    QApplication app(argc, argv);
    // "Already in step" and the like are confirmed at once: nobody sits at the bench.
    CVarnokMessageBox::SetTestResponder([](const StructMsgBoxRequest&) {
        return StructMsgBoxAnswer{MsgButtonConfirm, false};
    });
    const Size size = ParseSize(app, QStringLiteral("Files in the folder (500)."), 500, true);
    QTemporaryDir source;
    WriteRandomFiles(source.path(), size.files, size.bytes);

    std::printf("%d files of %d KiB into an empty cnc-sim folder on loopback, 5 transfers at once, best of %d "
                "interleaved rounds\n",
                size.files, size.bytes / 1024, kRounds);
    RunSeries({}, source.path(), size.files, "");
    if (size.latencyMs > 0) {
        std::printf("cnc-sim answering every command %d ms late\n", size.latencyMs);
        RunSeries({QStringLiteral("--ftp-latency"), QString::number(size.latencyMs)}, source.path(), size.files,
                  "latency_");
    }
    return 0;
}
