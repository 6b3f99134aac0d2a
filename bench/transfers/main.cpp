// Many small programs to the machine simulator and back through the Workspace's funnel (rows,
// logs, the per-machine limit and all), against references in the same run: one curl invocation
// over one connection and lftp with five connections, both writing straight to the real name, and
// lftp writing temporary names renamed when complete, the same work as ours. Rounds interleave
// ours and the references, each from an empty machine folder; the best of three counts. Then ours
// again against a single-session controller profile.
#include "BenchSupport.h"
#include "CncSimServer.h"

#include <FtpSettings.h>
#include <KorvBaseGlobals.h>
#include <MachineFileService.h>
#include <MachineJob.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <filepanel/FileManager.h>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <workspace/Workspace.h>

namespace {
using namespace BenchSupport;

constexpr int kRounds = 3;
// curl's command-line tool (7.88) now and then waits a whole second after each EPSV reply: such a
// run is cut short and left out of the best of three.
constexpr int kCurlLimitMs = 10000;

// Seconds up and down of one round; the best of the rounds is kept.
struct Times
{
    double up = 1e9;
    double down = 1e9;

    // A run cut short (-1) is left out.
    void Keep(double upSeconds, double downSeconds)
    {
        up = upSeconds < 0 ? up : qMin(up, upSeconds);
        down = downSeconds < 0 ? down : qMin(down, downSeconds);
    }
};

// CPU seconds the calling thread has used so far.
double ThreadCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// GUI thread CPU seconds of the last timed batch.
double g_guiCpuSeconds = 0;

// Seconds until one batch through the funnel has reported its result, as the arrows send it.
double TimeTransfers(Workspace& workspace, bool bUpload, const QStringList& names, const QString& localDir,
                     const QString& remoteDir)
{
    QList<TransferItem> items;
    for (const QString& name : names)
        items.append({bUpload, QDir(localDir).filePath(name), remoteDir + name, OperationCopy});
    QElapsedTimer clock;
    clock.start();
    const double cpuStart = ThreadCpuSeconds();
    MachineJob* job =
        workspace.FileService()->Transfer(workspace.Connection()->Endpoint(), items, RequestOrigin::FilePage);
    bool bDone = job->IsFinished();
    bool bOk = job->GetResult() == MachineJob::Result::Succeeded;
    QString error = job->ErrorText();
    QObject::connect(job, &MachineJob::SignalResult, [&](MachineJob* ended) {
        bDone = true;
        bOk = ended->GetResult() == MachineJob::Result::Succeeded;
        error = ended->ErrorText();
    });
    if (!WaitUntil([&] { return bDone; }) || !bOk)
        Fail(QStringLiteral("transfers did not end well: ") + error);
    g_guiCpuSeconds = ThreadCpuSeconds() - cpuStart;
    return clock.nsecsElapsed() / 1e9;
}

// A Workspace connected to `server`, as a user has it before sending.
std::unique_ptr<Workspace> Connect(const TestFtpServer& server)
{
    SetSetting(g_strSettingFtpUser, server.User());
    SetSetting(g_strSettingFtpPassword, server.Password());
    SetSetting(g_strSettingFtpPortMapping, server.Port());
    auto workspace = std::make_unique<Workspace>();
    workspace->ConnectToMachine(QStringLiteral("127.0.0.1"), QStringLiteral("PB01BENCH"));
    if (!WaitUntil([&] { return workspace->GetFileManager()->IsConnected(); }, 10000))
        Fail(QStringLiteral("no connection to the simulator"));
    return workspace;
}

void Check(bool bAll, const QString& who)
{
    if (!bAll)
        Fail(who + QStringLiteral(" did not move every file"));
}

// The references and ours over one simulator; prints the figures with `prefix` before the ratio names.
class Series
{
public:
    Series(CncSimServer& server, const QStringList& names, const QString& sourceDir)
        : m_server(server), m_names(names), m_strSource(sourceDir)
    {}

    void Run(Workspace& workspace)
    {
        for (int round = 0; round < kRounds; ++round) {
            RunOurs(workspace, round == 0);
            RunCurl();
            RunLftp(false, &m_lftp);
            RunLftp(true, &m_lftpSafe);
        }
    }

    void Print(const char* prefix) const
    {
        const int files = int(m_names.size());
        const auto line = [files](const char* who, double up, double down) {
            std::printf("  %-24s upload %7.1f files/s (%.3f s)  download %7.1f files/s (%.3f s)\n", who, files / up, up,
                        files / down, down);
        };
        line("ours", m_ours.up, m_ours.down);
        line("curl, 1 connection", m_curl.up, m_curl.down);
        line("lftp, 5 connections", m_lftp.up, m_lftp.down);
        line("lftp, 5, temp names", m_lftpSafe.up, m_lftpSafe.down);
        std::printf("%s upload\n%s download\n", qPrintable(m_strCommandsUp), qPrintable(m_strCommandsDown));
        std::printf("%sgui_cpu_us_per_file upload=%.0f download=%.0f\n", prefix, 1e6 * m_oursGui.up / files,
                    1e6 * m_oursGui.down / files);
        std::printf("%sratio upload=%.2f download=%.2f\n", prefix, qMin(m_curl.up, m_lftp.up) / m_ours.up,
                    qMin(m_curl.down, m_lftp.down) / m_ours.down);
        std::printf("%ssafe_ratio upload=%.2f download=%.2f\n", prefix, m_lftpSafe.up / m_ours.up,
                    m_lftpSafe.down / m_ours.down);
    }

private:
    void RunOurs(Workspace& workspace, bool bCount)
    {
        EmptyFolder(m_server, QStringLiteral("/ours"));
        QTemporaryDir back;
        const QMap<QString, qint64> start = bCount ? m_server.CommandCounts() : QMap<QString, qint64>();
        const double up = TimeTransfers(workspace, true, m_names, m_strSource, QStringLiteral("/ours/"));
        const double guiUp = g_guiCpuSeconds;
        const QMap<QString, qint64> middle = bCount ? m_server.CommandCounts() : QMap<QString, qint64>();
        const double down = TimeTransfers(workspace, false, m_names, back.path(), QStringLiteral("/ours/"));
        m_oursGui.Keep(guiUp, g_guiCpuSeconds);
        if (bCount) {
            m_strCommandsUp = CommandsPerFile(start, middle, int(m_names.size()));
            m_strCommandsDown = CommandsPerFile(middle, m_server.CommandCounts(), int(m_names.size()));
        }
        Check(CountFiles(m_server.LocalPath(QStringLiteral("/ours"))) == m_names.size() &&
                  CountFiles(back.path()) == m_names.size(),
              QStringLiteral("ours"));
        m_ours.Keep(up, down);
    }

    void RunCurl()
    {
        EmptyFolder(m_server, QStringLiteral("/curl"));
        QTemporaryDir back;
        const QString account = m_server.User() + QLatin1Char(':') + m_server.Password();
        const QString base = QStringLiteral("ftp://127.0.0.1:%1/curl/").arg(m_server.Port());
        const QString glob = QLatin1Char('{') + m_names.join(QLatin1Char(',')) + QLatin1Char('}');
        const QStringList quiet{QStringLiteral("-s"), QStringLiteral("-S"), QStringLiteral("-u"), account};
        const double up = TimeProcess(QStringLiteral("curl"), quiet + QStringList{QStringLiteral("-T"), glob, base},
                                      m_strSource, kCurlLimitMs);
        const double down =
            TimeProcess(QStringLiteral("curl"),
                        quiet + QStringList{base + glob, QStringLiteral("-o"), back.path() + "/#1"}, {}, kCurlLimitMs);
        Check(down < 0 || CountFiles(back.path()) == m_names.size(), QStringLiteral("curl"));
        m_curl.Keep(up, down);
    }

    void RunLftp(bool bTempFiles, Times* times)
    {
        EmptyFolder(m_server, QStringLiteral("/lftp"));
        QTemporaryDir back;
        const double up =
            TimeLftp(m_server, QStringLiteral("mirror -R --parallel=5 %1 /lftp").arg(m_strSource), bTempFiles);
        const double down =
            TimeLftp(m_server, QStringLiteral("mirror --parallel=5 /lftp %1").arg(back.path()), bTempFiles);
        Check(CountFiles(back.path()) == m_names.size(), QStringLiteral("lftp"));
        times->Keep(up, down);
    }

    CncSimServer& m_server;
    const QStringList m_names;
    const QString m_strSource;
    Times m_ours;
    Times m_oursGui; // CPU seconds of the GUI thread
    Times m_curl;
    Times m_lftp;
    Times m_lftpSafe;
    QString m_strCommandsUp;
    QString m_strCommandsDown;
};

void RunSeries(const QStringList& switches, const QStringList& names, const QString& source, const char* prefix)
{
    auto server = StartSimulator(switches);
    Series series(*server, names, source);
    std::unique_ptr<Workspace> workspace = Connect(*server);
    series.Run(*workspace);
    series.Print(prefix);
}
} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir configDir;
    PrepareEnvironment(configDir);
    QApplication app(argc, argv);
    const Size size = ParseSize(app, QStringLiteral("Files per run (200)."), 200, true);
    QTemporaryDir source;
    const QStringList names = WriteRandomFiles(source.path(), size.files, size.bytes);

    std::printf("%d files of %d KiB, cnc-sim on loopback, best of %d interleaved rounds\n", size.files,
                size.bytes / 1024, kRounds);
    RunSeries({}, names, source.path(), "");
    if (size.latencyMs > 0) {
        std::printf("cnc-sim answering every command %d ms late\n", size.latencyMs);
        RunSeries({QStringLiteral("--ftp-latency"), QString::number(size.latencyMs)}, names, source.path(), "latency_");
    }

    // A controller that takes one login at a time: the figure to watch is how close the learned
    // limit of one gets to the multi-login run above.
    const QString profile = QStringLiteral("single-session-dos-gbk");
    auto single = StartSimulator({QStringLiteral("--profile"), profile});
    single->MakeDir(QStringLiteral("/ours"));
    FtpSettings::SetNameEncodingFor(QStringLiteral("127.0.0.1"), "GBK");
    std::unique_ptr<Workspace> workspace = Connect(*single);
    QTemporaryDir back;
    const double up = TimeTransfers(*workspace, true, names, source.path(), QStringLiteral("/ours/"));
    const double down = TimeTransfers(*workspace, false, names, back.path(), QStringLiteral("/ours/"));
    std::printf("%s: upload %.1f files/s (%.2f s), download %.1f files/s (%.2f s), %d transfer(s) at once\n",
                qPrintable(profile), names.size() / up, up, names.size() / down, down,
                workspace->FileService()->MaxTransfers());
    return 0;
}
