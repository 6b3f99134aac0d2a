// Folder synchronisation of the Workspace (listing, difference, rows, logs and the limit of
// five) from a local folder of many small programs into an empty machine folder of the
// simulator, against lftp's reverse mirror with five transfers at once; then both again
// over the now equal folders. The last line gives lftp seconds / ours for both runs.
#include "TestFtpServer.h"

#include <CVarnokMessageBox.h>
#include <CamBaseTextHelper.h>
#include <KorvBaseGlobals.h>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <filepanel/FileManager.h>
#include <filepanel/FileSelectPanel.h>
#include <workspace/FolderSync.h>
#include <workspace/Workspace.h>

namespace {
void SetSetting(const char* key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, true);
}

[[noreturn]] void Fail(const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    std::exit(1);
}

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
    QProcess lftp;
    QElapsedTimer clock;
    clock.start();
    lftp.start(QStringLiteral("lftp"), {QStringLiteral("-c"), script});
    if (!lftp.waitForFinished(-1) || lftp.exitCode() != 0)
        Fail(QStringLiteral("lftp failed: ") + QString::fromLocal8Bit(lftp.readAllStandardError()));
    return clock.nsecsElapsed() / 1e9;
}

int CountFiles(const QString& folder)
{
    return int(QDir(folder).entryList(QDir::Files).size());
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir configDir;
    qputenv("KORV_CONFIG_DIR", configDir.path().toUtf8());
    QApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    // "Already in step" and the like are confirmed at once: nobody sits at the bench.
    CVarnokMessageBox::SetTestResponder([](const StructMsgBoxRequest&) {
        return StructMsgBoxAnswer{MsgButtonConfirm, false};
    });
    QCommandLineParser parser;
    parser.addOptions({{"files", "Files in the folder (500).", "N", "500"}, {"kib", "Size of each (20).", "N", "20"}});
    parser.process(app);
    const int files = parser.value("files").toInt();
    const int bytes = parser.value("kib").toInt() * 1024;

    auto server = TestFtpServer::Create(FtpServerKind::CncSim);
    if (!server->Start())
        Fail(server->ErrorString());
    server->MakeDir(QStringLiteral("/ours"));
    server->MakeDir(QStringLiteral("/lftp"));
    SetSetting(g_strSettingFtpUser, server->User());
    SetSetting(g_strSettingFtpPassword, server->Password());
    SetSetting(g_strSettingFtpPortMapping, server->Port());

    QTemporaryDir source;
    for (int i = 0; i < files; ++i) {
        QFile file(source.filePath(QStringLiteral("prog_%1.nc").arg(i, 4, 10, QLatin1Char('0'))));
        QByteArray data(bytes, Qt::Uninitialized);
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(data.data()), data.size() / 4);
        if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
            Fail(QStringLiteral("cannot write ") + file.fileName());
    }

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
