// Many small programs to the machine simulator and back through the Workspace's slots
// (rows, logs, the per-machine limit and all), against one curl invocation that moves
// the same files over one connection, then ours again against a single-session controller
// profile. The ratio line gives ours/curl in files per second.
#include "BenchSupport.h"
#include "CncSimServer.h"
#include "TestFtpServer.h"

#include <FtpSettings.h>
#include <KorvBaseGlobals.h>
#include <MachineFileService.h>
#include <MachineJob.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <filepanel/FileManager.h>
#include <functional>
#include <workspace/Workspace.h>

namespace {
using namespace BenchSupport;

// Seconds until one batch through the funnel has reported its result, as the arrows send it.
double TimeTransfers(Workspace& workspace, bool bUpload, const QStringList& names, const QString& localDir)
{
    QList<TransferItem> items;
    for (const QString& name : names)
        items.append({bUpload, QDir(localDir).filePath(name), QStringLiteral("/ours/") + name, OperationCopy});
    QElapsedTimer clock;
    clock.start();
    MachineJob* job =
        workspace.FileService()->Transfer(workspace.Connection()->Endpoint(), items, RequestOrigin::FilePage);
    bool bDone = false;
    bool bOk = false;
    QObject::connect(job, &MachineJob::SignalResult, [&](MachineJob* ended) {
        bDone = true;
        bOk = ended->GetResult() == MachineJob::Result::Succeeded;
    });
    if (!QTest::qWaitFor([&] { return bDone; }, 600000) || !bOk)
        Fail(QStringLiteral("transfers did not end well"));
    return clock.nsecsElapsed() / 1e9;
}

double TimeCurl(const QStringList& arguments, const QString& workDir)
{
    return TimeProcess(QStringLiteral("curl"), QStringList{QStringLiteral("-s"), QStringLiteral("-S")} + arguments,
                       workDir);
}

struct OursResult
{
    double up = 0;
    double down = 0;
    int maxTransfers = 0;
};

// Uploads every file to /ours of the server and downloads it back through a fresh Workspace.
OursResult RunOurs(TestFtpServer& server, const QStringList& names, const QString& sourceDir)
{
    server.MakeDir(QStringLiteral("/ours"));
    SetSetting(g_strSettingFtpUser, server.User());
    SetSetting(g_strSettingFtpPassword, server.Password());
    SetSetting(g_strSettingFtpPortMapping, server.Port());
    QTemporaryDir back;
    Workspace workspace;
    workspace.ConnectToMachine(QStringLiteral("127.0.0.1"), QStringLiteral("PB01BENCH"));
    if (!QTest::qWaitFor([&] { return workspace.GetFileManager()->IsConnected(); }, 10000))
        Fail(QStringLiteral("no connection to the simulator"));
    OursResult result;
    result.up = TimeTransfers(workspace, true, names, sourceDir);
    result.down = TimeTransfers(workspace, false, names, back.path());
    if (CountFiles(server.LocalPath(QStringLiteral("/ours"))) != names.size() ||
        CountFiles(back.path()) != names.size())
        Fail(QStringLiteral("our transfers did not move every file"));
    result.maxTransfers = workspace.FileService()->MaxTransfers();
    return result;
}
} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir configDir;
    PrepareEnvironment(configDir);
    QApplication app(argc, argv);
    const Size size = ParseSize(app, QStringLiteral("Files per run (200)."), 200);
    const int files = size.files;
    const int bytes = size.bytes;

    auto server = BenchSupport::StartSimulator();
    server->MakeDir(QStringLiteral("/curl"));

    QTemporaryDir source;
    QTemporaryDir curlBack;
    const QStringList names = WriteRandomFiles(source.path(), files, bytes);

    const OursResult ours = RunOurs(*server, names, source.path());
    const double oursUp = ours.up;
    const double oursDown = ours.down;

    const QString account = server->User() + QLatin1Char(':') + server->Password();
    const QString base = QStringLiteral("ftp://127.0.0.1:%1/curl/").arg(server->Port());
    const QString glob = QLatin1Char('{') + names.join(QLatin1Char(',')) + QLatin1Char('}');
    const double curlUp = TimeCurl({QStringLiteral("-u"), account, QStringLiteral("-T"), glob, base}, source.path());
    const double curlDown = TimeCurl(
        {QStringLiteral("-u"), account, base + glob, QStringLiteral("-o"), curlBack.path() + QStringLiteral("/#1")},
        source.path());
    if (CountFiles(curlBack.path()) != files)
        Fail(QStringLiteral("curl did not move every file"));

    const auto rate = [files](double seconds) { return files / seconds; };
    std::printf("%d files of %d KiB, cnc-sim on loopback, %d transfers at once\n", files, bytes / 1024,
                ours.maxTransfers);
    std::printf("upload:   ours %.1f files/s (%.2f s), curl %.1f files/s (%.2f s)\n", rate(oursUp), oursUp,
                rate(curlUp), curlUp);
    std::printf("download: ours %.1f files/s (%.2f s), curl %.1f files/s (%.2f s)\n", rate(oursDown), oursDown,
                rate(curlDown), curlDown);
    std::printf("ratio upload=%.2f download=%.2f\n", curlUp / oursUp, curlDown / oursDown);

    // A controller that takes one login at a time: the figure to watch is how close the learned
    // limit of one gets to the multi-login run above.
    const QString profile = QStringLiteral("single-session-dos-gbk");
    CncSimServer single({QStringLiteral("--profile"), profile});
    if (!single.Start())
        Fail(single.ErrorString());
    FtpSettings::SetNameEncodingFor(QStringLiteral("127.0.0.1"), "GBK");
    const OursResult one = RunOurs(single, names, source.path());
    std::printf("%s: upload %.1f files/s (%.2f s), download %.1f files/s (%.2f s), %d transfer(s) at once\n",
                qPrintable(profile), rate(one.up), one.up, rate(one.down), one.down, one.maxTransfers);
    return 0;
}
