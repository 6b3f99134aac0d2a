#include "CncSimulator.h"
#include "SimFtpServer.h"
#include "SimShop.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>
#include <csignal>
#include <memory>

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
    // Without TZ the C library looks at the system's zone file on every local time, which is every
    // entry of a listing; named once, the zone is read once.
    if (qEnvironmentVariableIsEmpty("TZ"))
        qputenv("TZ", ":/etc/localtime");
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("cnc-sim"));
    QTextStream err(stderr);
    SimOptions options;
    QString error;
    if (!SimOptions::Parse(QCoreApplication::arguments(), &options, &error)) {
        err << "cnc-sim: " << error << "\n";
        return 2;
    }
    std::unique_ptr<CncSimulator> simulator;
    SimShop shop(options);
    if (options.machines > 0) {
        if (!shop.Start(&error)) {
            err << "cnc-sim: " << error << "\n";
            return 1;
        }
    } else {
        simulator = std::make_unique<CncSimulator>(options);
        if (!simulator->Start(&error)) {
            err << "cnc-sim: " << error << "\n";
            return 1;
        }
    }
    // Only a flag may be touched in a signal handler; the event loop polls it.
    std::signal(SIGTERM, requestStop);
    std::signal(SIGINT, requestStop);
    // SIGUSR1 asks for the FTP command counts, which are printed on exit as well.
    std::signal(SIGUSR1, requestCount);
    QTextStream out(stdout);
    const auto printCounts = [&] {
        if (simulator)
            out << "cnc-sim commands " << simulator->FtpServer().CommandSummary() << Qt::endl;
        for (int index = 0; index < shop.Count(); ++index)
            out << "cnc-sim commands ip=" << shop.Machine(index).ReportedIp() << " "
                << shop.Machine(index).FtpServer().CommandSummary() << Qt::endl;
    };
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
    // One line per machine for scripts and tests that started us with port 0.
    auto announce = [&out](CncSimulator& machine) {
        out << "cnc-sim ready ip=" << machine.ReportedIp() << " ftp=" << machine.FtpPort()
            << " info=" << machine.InfoPort() << " sn=" << machine.SnPort() << " discovery=" << machine.DiscoveryPort()
            << " root=" << machine.Options().rootDir << " serial=" << machine.Options().serialNumber << Qt::endl;
    };
    if (simulator)
        announce(*simulator);
    for (int index = 0; index < shop.Count(); ++index)
        announce(shop.Machine(index));
    const int code = app.exec();
    printCounts();
    return code;
}
