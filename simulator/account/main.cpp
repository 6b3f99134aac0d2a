#include "AccountService.h"

#include <QGuiApplication>
#include <QTextStream>
#include <QTimer>
#include <csignal>

namespace {
volatile std::sig_atomic_t g_stopRequested = 0;

void requestStop(int)
{
    g_stopRequested = 1;
}
} // namespace

int main(int argc, char* argv[])
{
    // Pictures are drawn with fonts, which need a GUI application, but never a screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("account-sim"));
    QTextStream err(stderr);
    AccountOptions options;
    QString error;
    if (!AccountOptions::Parse(QCoreApplication::arguments(), &options, &error)) {
        err << "account-sim: " << error << "\n";
        return 2;
    }
    AccountService service(options);
    if (!service.Start(&error)) {
        err << "account-sim: " << error << "\n";
        return 1;
    }
    std::signal(SIGTERM, requestStop);
    std::signal(SIGINT, requestStop);
    QTimer stopPoll;
    QObject::connect(&stopPoll, &QTimer::timeout, &app, [] {
        if (g_stopRequested)
            QCoreApplication::quit();
    });
    stopPoll.start(100);
    QTextStream(stdout) << "account-sim ready url=" << service.BaseUrl() << " data=" << options.dataFile << Qt::endl;
    return app.exec();
}
