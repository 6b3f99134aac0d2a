#include "BenchSupport.h"

#include <CamBaseTextHelper.h>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace BenchSupport {
void PrepareEnvironment(const QTemporaryDir& configDir)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Files in memory where there is room: creating thousands of files on a shared disk costs the
    // simulator more than everything the clients do, and that cost is the disk's, not theirs.
    if (qEnvironmentVariableIsEmpty("TMPDIR") && QFileInfo(QStringLiteral("/dev/shm")).isWritable())
        qputenv("TMPDIR", "/dev/shm");
    qputenv("KORV_CONFIG_DIR", configDir.path().toUtf8());
}

Size ParseSize(const QCoreApplication& app, const QString& filesHelp, int defaultFiles, bool bLatency)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QCommandLineParser parser;
    parser.addOptions(
        {{"files", filesHelp, "N", QString::number(defaultFiles)}, {"kib", "Size of each file (20).", "N", "20"}});
    if (bLatency)
        parser.addOption({"latency", "Also run everything against cnc-sim answering MS milliseconds late.", "MS", "0"});
    parser.process(app);
    return {parser.value("files").toInt(), parser.value("kib").toInt() * 1024,
            bLatency ? parser.value("latency").toInt() : 0};
}

void SetSetting(const char* key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, true);
}

bool WaitUntil(const std::function<bool()>& condition, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    // Wakes the loop now and then, so that the deadline is seen when nothing else happens.
    QTimer wake;
    wake.start(100);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void Fail(const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    std::exit(1);
}

std::unique_ptr<CncSimServer> StartSimulator(const QStringList& switches)
{
    auto server = std::make_unique<CncSimServer>(switches);
    if (!server->Start())
        Fail(server->ErrorString());
    return server;
}

QString CommandsPerFile(const QMap<QString, qint64>& before, const QMap<QString, qint64>& after, int files)
{
    if (after.isEmpty() || files <= 0)
        return QStringLiteral("commands_per_file=? (the simulator did not report its counts)");
    const auto perFile = [&](const QString& verb) {
        return QString::number(double(after.value(verb) - before.value(verb)) / files, 'f', 2);
    };
    QStringList verbs;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (it.key() != QLatin1String("total") && it.value() != before.value(it.key()))
            verbs << it.key() + QLatin1Char('=') + perFile(it.key());
    }
    return QStringLiteral("commands_per_file=%1 (%2)").arg(perFile(QStringLiteral("total")), verbs.join(' '));
}

QStringList WriteRandomFiles(const QString& folder, int count, int bytes)
{
    QStringList names;
    for (int i = 0; i < count; ++i) {
        names.append(QStringLiteral("prog_%1.nc").arg(i, 4, 10, QLatin1Char('0')));
        QFile file(QDir(folder).filePath(names.last()));
        QByteArray data(bytes, Qt::Uninitialized);
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(data.data()), data.size() / 4);
        if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
            Fail(QStringLiteral("cannot write ") + file.fileName());
    }
    return names;
}

int CountFiles(const QString& folder)
{
    return int(QDir(folder).entryList(QDir::Files).size());
}

double TimeProcess(const QString& program, const QStringList& arguments, const QString& workDir, int limitMs)
{
    QProcess process;
    process.setWorkingDirectory(workDir);
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    if (!process.waitForFinished(limitMs) && process.state() == QProcess::Running) {
        process.kill();
        process.waitForFinished(-1);
        return -1;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        Fail(program + QStringLiteral(" failed: ") + QString::fromLocal8Bit(process.readAllStandardError()));
    return clock.nsecsElapsed() / 1e9;
}
double TimeLftp(const TestFtpServer& server, const QString& commands, bool bTempFiles)
{
    const QString script =
        QStringLiteral("set net:max-retries 1; set xfer:clobber on; set xfer:use-temp-file %1; "
                       "open -u %2,%3 -p %4 127.0.0.1; %5; quit")
            .arg(bTempFiles ? QStringLiteral("yes") : QStringLiteral("no"), server.User(), server.Password())
            .arg(server.Port())
            .arg(commands);
    return TimeProcess(QStringLiteral("lftp"), {QStringLiteral("-c"), script});
}

void EmptyFolder(const TestFtpServer& server, const QString& remotePath)
{
    QDir folder(server.LocalPath(remotePath));
    if (!folder.removeRecursively() || !server.MakeDir(remotePath))
        Fail(QStringLiteral("cannot empty ") + folder.path());
}
} // namespace BenchSupport
