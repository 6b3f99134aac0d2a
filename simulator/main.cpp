#include "CncSimulator.h"
#include "SimFtpServer.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>
#include <csignal>

namespace {
volatile std::sig_atomic_t g_stopRequested = 0;
volatile std::sig_atomic_t g_countRequested = 0;

void requestStop(int)
{
    g_stopRequested = 1;
}

void requestCount(int)
{
    g_countRequested = 1;
}
} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("cnc-sim"));
    QTextStream err(stderr);
    SimOptions options;
    QString error;
    if (!SimOptions::Parse(QCoreApplication::arguments(), &options, &error)) {
        err << "cnc-sim: " << error << "\n";
        return 2;
    }
    CncSimulator simulator(options);
    if (!simulator.Start(&error)) {
        err << "cnc-sim: " << error << "\n";
        return 1;
    }
    // Only a flag may be touched in a signal handler; the event loop polls it.
    std::signal(SIGTERM, requestStop);
    std::signal(SIGINT, requestStop);
    // SIGUSR1 asks for the FTP command counts, which are printed on exit as well.
    std::signal(SIGUSR1, requestCount);
    QTextStream out(stdout);
    const auto printCounts = [&] { out << "cnc-sim commands " << simulator.FtpServer().CommandSummary() << Qt::endl; };
    QTimer stopPoll;
    QObject::connect(&stopPoll, &QTimer::timeout, &app, [&] {
        if (g_countRequested) {
            g_countRequested = 0;
            printCounts();
        }
        if (g_stopRequested)
            QCoreApplication::quit();
    });
    stopPoll.start(100);
    // One line for scripts and tests that started us with port 0.
    out << "cnc-sim ready ip=" << simulator.ReportedIp() << " ftp=" << simulator.FtpPort()
        << " info=" << simulator.InfoPort() << " sn=" << simulator.SnPort()
        << " discovery=" << simulator.DiscoveryPort() << " root=" << options.rootDir << Qt::endl;
    const int code = app.exec();
    printCounts();
    return code;
}
