#include "SimOptions.h"

#include <QCommandLineParser>
#include <QDir>

namespace {

bool toPort(const QString& text, quint16* port)
{
    bool ok = false;
    const uint value = text.toUInt(&ok);
    if (!ok || value > 65535)
        return false;
    *port = static_cast<quint16>(value);
    return true;
}

} // namespace

bool SimOptions::Parse(const QStringList& arguments, SimOptions* options, QString* error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Simulated networked CNC machine: FTP, request/response, "
                                                    "serial-number and discovery services."));
    parser.addHelpOption();
    const QList<QCommandLineOption> list = {
        {"bind", "Address to listen on (default 127.0.0.1).", "ADDR"},
        {"root", "Folder served over FTP and holding the programs.", "DIR"},
        {"ftp-port", "FTP control port (default 2121; 0 picks a free one).", "N"},
        {"info-port", "Request/response port (default 30001).", "N"},
        {"sn-port", "Serial-number port (default 5002).", "N"},
        {"discovery-port", "UDP discovery port (default 30002).", "N"},
        {"sn", "Serial number.", "SN"},
        {"sys-version", "System version reported (default 1.5.2).", "V"},
        {"fw-version", "Firmware version reported (default 2.3.0).", "V"},
        {"interface", "Interface the machine reports: eth, wlan or usb (default eth).", "NAME"},
        {"ftp-user", "FTP user; without it any login is accepted.", "U"},
        {"ftp-password", "FTP password.", "P"},
        {"run", "Start this program (path inside the root) at once.", "FILE"},
        {"autorun", "Run every program of the root in turn."},
        {"time-scale", "Simulated seconds per real second (default 1).", "X"},
        {"boot-seconds", "Report state 0 for this long after start.", "S"},
        {"idle-seconds", "Waiting time between programs with --autorun (default 3).", "S"},
        {"forbid", "Interlock open: report state 4 and run nothing."},
        {"ftp-drop-after", "Fault: cut every FTP data transfer after N bytes.", "N"},
        {"ftp-rate", "Fault: limit every FTP data transfer to N bytes per second.", "N"},
        {"ftp-disk-full", "Fault: refuse every upload with 552 after N bytes.", "N"},
        {"ftp-latency", "Fault: answer every FTP command MS milliseconds late.", "MS"},
        {"ftp-refuse",
         "Fault: answer this FTP command with 550 (repeatable); CMD:TEXT only when its argument "
         "contains TEXT, e.g. STOR:bad.nc.",
         "CMD"},
        {"sn-error", "Fault: answer the serial-number request with this error code.", "CODE"},
        {"sn-silent", "Fault: never answer the serial-number request."},
        {"old-version", "Fault: report system version 1.4.6."},
        {"rt-silent", "Fault: stop answering real-time data requests."},
        {"vanish-after", "Fault: close every port after S seconds.", "S"},
        {"vanish-silent", "With --vanish-after: keep the ports open but answer nothing, like a machine whose "
                          "cable was pulled."},
        {"alarm-after", "Fault: raise a servo alarm after S seconds of running; it holds until a reset.", "S"},
    };
    parser.addOptions(list);
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

    SimOptions o;
    auto text = [&parser](const char* name) { return parser.value(QString::fromLatin1(name)); };
    auto set = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
    auto fail = [error](const QString& message) {
        *error = message;
        return false;
    };

    if (set("bind") && !o.bindAddress.setAddress(text("bind")))
        return fail(QStringLiteral("--bind: not an address: %1").arg(text("bind")));
    o.rootDir = set("root") ? QDir(text("root")).absolutePath() : QDir::currentPath();
    if (!QDir(o.rootDir).exists())
        return fail(QStringLiteral("--root: no such folder: %1").arg(o.rootDir));
    const std::pair<const char*, quint16*> ports[] = {{"ftp-port", &o.ftpPort},
                                                      {"info-port", &o.infoPort},
                                                      {"sn-port", &o.snPort},
                                                      {"discovery-port", &o.discoveryPort}};
    for (const auto& [name, port] : ports) {
        if (set(name) && !toPort(text(name), port))
            return fail(QStringLiteral("--%1: not a port: %2").arg(QLatin1String(name), text(name)));
    }
    if (set("sn"))
        o.serialNumber = text("sn");
    if (set("sys-version"))
        o.sysVersion = text("sys-version");
    if (set("old-version"))
        o.sysVersion = QStringLiteral("1.4.6");
    if (set("fw-version"))
        o.fwVersion = text("fw-version");
    if (set("interface")) {
        o.interfaceName = text("interface");
        if (!QStringList{"eth", "wlan", "usb"}.contains(o.interfaceName))
            return fail(QStringLiteral("--interface: one of eth, wlan, usb"));
    }
    o.ftpUser = text("ftp-user");
    o.ftpPassword = text("ftp-password");
    if (o.ftpUser.isEmpty() != o.ftpPassword.isEmpty())
        return fail(QStringLiteral("--ftp-user and --ftp-password go together"));
    o.runProgram = text("run");
    o.autorun = set("autorun");
    o.forbid = set("forbid");
    o.snSilent = set("sn-silent");
    o.realTimeSilent = set("rt-silent");
    o.vanishSilently = set("vanish-silent");
    o.ftpRefused.clear();
    for (const QString& verb : parser.values(QStringLiteral("ftp-refuse"))) {
        const int colon = verb.indexOf(QLatin1Char(':'));
        o.ftpRefused << (colon < 0 ? verb.toUpper() : verb.left(colon).toUpper() + verb.mid(colon));
    }

    const std::pair<const char*, double*> reals[] = {{"time-scale", &o.timeScale},
                                                     {"boot-seconds", &o.bootSeconds},
                                                     {"idle-seconds", &o.idleSeconds},
                                                     {"vanish-after", &o.vanishAfter},
                                                     {"alarm-after", &o.alarmAfter}};
    for (const auto& [name, value] : reals) {
        if (!set(name))
            continue;
        bool ok = false;
        *value = text(name).toDouble(&ok);
        if (!ok || *value < 0)
            return fail(QStringLiteral("--%1: not a non-negative number: %2").arg(QLatin1String(name), text(name)));
    }
    const std::pair<const char*, qint64*> counts[] = {
        {"ftp-drop-after", &o.ftpDropAfter}, {"ftp-rate", &o.ftpRate}, {"ftp-disk-full", &o.ftpSpaceLeft}};
    for (const auto& [name, value] : counts) {
        if (!set(name))
            continue;
        bool ok = false;
        *value = text(name).toLongLong(&ok);
        if (!ok || *value < 0)
            return fail(QStringLiteral("--%1: not a byte count: %2").arg(QLatin1String(name), text(name)));
    }
    if (set("ftp-latency")) {
        bool ok = false;
        o.ftpLatencyMs = text("ftp-latency").toInt(&ok);
        if (!ok || o.ftpLatencyMs < 0)
            return fail(QStringLiteral("--ftp-latency: not a number of milliseconds: %1").arg(text("ftp-latency")));
    }
    if (set("sn-error")) {
        bool ok = false;
        o.snErrorCode = text("sn-error").toInt(&ok);
        if (!ok || o.snErrorCode == 0)
            return fail(QStringLiteral("--sn-error: a non-zero error code"));
    }
    *options = o;
    return true;
}
