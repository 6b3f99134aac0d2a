#pragma once

#include "CncSimServer.h"

#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>

class QCoreApplication;
class QTemporaryDir;

// What the benches have in common: they run unattended, print figures and stop at the first failure.
namespace BenchSupport {
struct Size
{
    int files = 0;
    int bytes = 0;
    int latencyMs = 0; // --latency: a second series against a simulator answering this late
};

// Before the application exists: offscreen unless a platform is asked for, settings in `configDir`.
void PrepareEnvironment(const QTemporaryDir& configDir);
// --files N (with `filesHelp`, default `defaultFiles`), --kib N (20) and, where offered, --latency MS;
// debug output off.
Size ParseSize(const QCoreApplication& app, const QString& filesHelp, int defaultFiles, bool bLatency = false);
void SetSetting(const char* key, const QVariant& value);
// Runs the event loop as the application's own does, waking on every event, until `condition`
// holds or `timeoutMs` has passed. QTest::qWaitFor sleeps 10 ms between its rounds, which would
// hold every queued result back and be measured as ours.
bool WaitUntil(const std::function<bool()>& condition, int timeoutMs = 600000);
[[noreturn]] void Fail(const QString& message);
// The simulator as an FTP server on loopback with more cnc-sim switches; fails the bench when it does not start.
std::unique_ptr<CncSimServer> StartSimulator(const QStringList& switches = {});
// "commands_per_file=8.00 (EPSV=1.00 ...)": the commands the simulator received between the two counts.
QString CommandsPerFile(const QMap<QString, qint64>& before, const QMap<QString, qint64>& after, int files);
// `count` files prog_0000.nc... of `bytes` random bytes in `folder`; their names.
QStringList WriteRandomFiles(const QString& folder, int count, int bytes);
int CountFiles(const QString& folder);
// Seconds `program` ran; fails the bench when it does not end with 0. With a limit, a run that
// takes longer is stopped and reported as -1.
double TimeProcess(const QString& program, const QStringList& arguments, const QString& workDir = {}, int limitMs = -1);
// Seconds lftp took for `commands` on a login to `server`; with bTempFiles it writes each file
// under a temporary name and renames it when complete, the same work as ours.
double TimeLftp(const TestFtpServer& server, const QString& commands, bool bTempFiles);
// Removes everything in a folder of the server, so that a round starts as the first did.
void EmptyFolder(const TestFtpServer& server, const QString& remotePath);
} // namespace BenchSupport
