#include "AccountOptions.h"

#include <QCommandLineParser>
#include <QDir>

bool AccountOptions::Parse(const QStringList& arguments, AccountOptions* options, QString* error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Local account service: picture codes, SMS codes (printed, "
                                                    "not sent) and device bindings over HTTP."));
    parser.addHelpOption();
    parser.addOptions({
        {"bind", "Address to listen on (default 127.0.0.1).", "ADDR"},
        {"port", "HTTP port (default 8090; 0 picks a free one).", "N"},
        {"data", "Bindings file (default account-bindings.json in the current folder).", "FILE"},
        {"log", "Also append the console lines to this file.", "FILE"},
        {"image-ttl", "Seconds a picture code stays valid (default 120).", "S"},
        {"sms-ttl", "Seconds an SMS code stays valid (default 300).", "S"},
        {"sms-tries", "Wrong SMS codes before the code is void (default 5).", "N"},
        {"sms-interval", "Least seconds between two SMS codes to one number (default 60).", "S"},
        {"rate-limit", "Picture and SMS requests allowed per number and window (default 20).", "N"},
        {"rate-window", "Length of the rate window in seconds (default 600).", "S"},
    });
    if (!parser.parse(arguments)) {
        *error = parser.errorText();
        return false;
    }
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (!parser.positionalArguments().isEmpty()) {
        *error = QStringLiteral("unexpected argument: %1").arg(parser.positionalArguments().first());
        return false;
    }
    AccountOptions o;
    auto text = [&parser](const char* name) { return parser.value(QString::fromLatin1(name)); };
    auto set = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
    if (set("bind") && !o.bindAddress.setAddress(text("bind"))) {
        *error = QStringLiteral("--bind: not an address: %1").arg(text("bind"));
        return false;
    }
    o.dataFile = QDir::current().absoluteFilePath(set("data") ? text("data") : QStringLiteral("account-bindings.json"));
    if (set("log"))
        o.logFile = QDir::current().absoluteFilePath(text("log"));

    const std::pair<const char*, qint64*> seconds[] = {{"image-ttl", &o.imageTtlMs},
                                                       {"sms-ttl", &o.smsTtlMs},
                                                       {"sms-interval", &o.smsIntervalMs},
                                                       {"rate-window", &o.rateWindowMs}};
    for (const auto& [name, value] : seconds) {
        if (!set(name))
            continue;
        bool ok = false;
        const double number = text(name).toDouble(&ok);
        if (!ok || number < 0) {
            *error = QStringLiteral("--%1: not a non-negative number: %2").arg(QLatin1String(name), text(name));
            return false;
        }
        *value = qint64(number * 1000);
    }
    bool ok = true;
    const std::pair<const char*, int*> counts[] = {{"sms-tries", &o.smsTries}, {"rate-limit", &o.rateLimit}};
    for (const auto& [name, value] : counts) {
        if (set(name))
            *value = text(name).toInt(&ok);
        if (!ok || *value < 1) {
            *error = QStringLiteral("--%1: a count of at least 1: %2").arg(QLatin1String(name), text(name));
            return false;
        }
    }
    if (set("port")) {
        const uint port = text("port").toUInt(&ok);
        if (!ok || port > 65535) {
            *error = QStringLiteral("--port: not a port: %1").arg(text("port"));
            return false;
        }
        o.port = quint16(port);
    }
    *options = o;
    return true;
}
