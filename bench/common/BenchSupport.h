#pragma once

#include "TestFtpServer.h"

#include <QStringList>
#include <QVariant>
#include <memory>

class QCoreApplication;
class QTemporaryDir;

// What the benches have in common: they run unattended, print figures and stop at the first failure.
namespace BenchSupport {
struct Size
{
    int files = 0;
    int bytes = 0;
};

// Before the application exists: offscreen unless a platform is asked for, settings in `configDir`.
void PrepareEnvironment(const QTemporaryDir& configDir);
// --files N (with `filesHelp`, default `defaultFiles`) and --kib N (20); debug output off.
Size ParseSize(const QCoreApplication& app, const QString& filesHelp, int defaultFiles);
void SetSetting(const char* key, const QVariant& value);
[[noreturn]] void Fail(const QString& message);
// The simulator as an FTP server on loopback; fails the bench when it does not start.
std::unique_ptr<TestFtpServer> StartSimulator();
// `count` files prog_0000.nc... of `bytes` random bytes in `folder`; their names.
QStringList WriteRandomFiles(const QString& folder, int count, int bytes);
int CountFiles(const QString& folder);
// Seconds `program` ran; fails the bench when it does not end with 0.
double TimeProcess(const QString& program, const QStringList& arguments, const QString& workDir = {});
} // namespace BenchSupport
