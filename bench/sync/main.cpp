// Folder synchronisation of the Workspace (listing, difference, rows, logs and the limit of
// five) from a local folder of many small programs into an empty machine folder of the
// simulator, against lftp's reverse mirror with five transfers at once; then both again
// over the now equal folders. The last line gives lftp seconds / ours for both runs.
#include "BenchSupport.h"

#include <CVarnokMessageBox.h>
#include <FolderSync.h>
#include <KorvBaseGlobals.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <filepanel/FileManager.h>
#include <filepanel/FileSelectPanel.h>
#include <workspace/Workspace.h>

namespace {
using namespace BenchSupport;

bool Wait(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 600000);
}

double TimeOurs(Workspace& workspace)
{
    FolderSync* sync = workspace.GetFolderSync();
    QElapsedTimer clock;
    clock.start();
    workspace.SlotFileSyncBtnClicked();
    if (!Wait([&] { return sync->GetButtonState() != FolderSync::ButtonRunning; }))
        Fail(QStringLiteral("the synchronisation did not end"));
    const double seconds = clock.nsecsElapsed() / 1e9;
    if (sync->GetButtonState() != FolderSync::ButtonFinished)
        Fail(QStringLiteral("the synchronisation failed"));
    return seconds;
}

double TimeLftp(const TestFtpServer& server, const QString& source)
{
    const QString script = QStringLiteral("set net:max-retries 1; set xfer:clobber on; open -u %1,%2 -p %3 127.0.0.1; "
                                          "mirror -R --parallel=5 %4 /lftp; quit")
                               .arg(server.User(), server.Password())
                               .arg(server.Port())
                               .arg(source);
    return TimeProcess(QStringLiteral("lftp"), {QStringLiteral("-c"), script});
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
    const Size size = ParseSize(app, QStringLiteral("Files in the folder (500)."), 500);
    const int files = size.files;
    const int bytes = size.bytes;

    auto server = BenchSupport::StartSimulator();
    server->MakeDir(QStringLiteral("/ours"));
    server->MakeDir(QStringLiteral("/lftp"));
    SetSetting(g_strSettingFtpUser, server->User());
    SetSetting(g_strSettingFtpPassword, server->Password());
    SetSetting(g_strSettingFtpPortMapping, server->Port());

    QTemporaryDir source;
    WriteRandomFiles(source.path(), files, bytes);

    Workspace workspace;
    FileManager* manager = workspace.GetFileManager();
    workspace.ConnectToMachine(QStringLiteral("127.0.0.1"), QStringLiteral("PB01BENCH"));
    if (!Wait([&] { return manager->IsConnected(); }))
        Fail(QStringLiteral("no connection to the simulator"));
    manager->LocalPanel()->OpenFolder(source.path());
    manager->MachinePanel()->OpenFolder(QStringLiteral("/ours"));
    if (!Wait([&] {
            return manager->LocalPanel()->CurrentPath() == source.path() &&
                   manager->MachinePanel()->CurrentPath().startsWith(QStringLiteral("/ours")) && !g_bTranslating;
        }))
        Fail(QStringLiteral("the panels did not open the folders"));

    const double oursSync = TimeOurs(workspace);
    if (CountFiles(server->LocalPath(QStringLiteral("/ours"))) != files)
        Fail(QStringLiteral("our synchronisation did not send every file"));
    Wait([] { return !g_bTranslating; });
    const double oursNoop = TimeOurs(workspace);
    const double lftpSync = TimeLftp(*server, source.path());
    if (CountFiles(server->LocalPath(QStringLiteral("/lftp"))) != files)
        Fail(QStringLiteral("lftp did not send every file"));
    const double lftpNoop = TimeLftp(*server, source.path());

    std::printf("%d files of %d KiB into an empty cnc-sim folder on loopback, 5 transfers at once\n", files,
                bytes / 1024);
    std::printf("sync:  ours %.3f s, lftp mirror -R %.3f s\n", oursSync, lftpSync);
    std::printf("no-op: ours %.3f s, lftp mirror -R %.3f s\n", oursNoop, lftpNoop);
    std::printf("ratio sync=%.2f noop=%.2f\n", lftpSync / oursSync, lftpNoop / oursNoop);
    return 0;
}
