#include "SimOptions.h"

#include "SimShop.h"

#include <QCommandLineParser>
#include <QDir>
#include <QHash>
#include <initializer_list>
#include <utility>

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

// Reads each of `counts` that is given as a non-negative byte count; false with the message for the first that is not.
bool readByteCounts(const QCommandLineParser& parser, std::initializer_list<std::pair<const char*, qint64*>> counts,
                    QString* error)
{
    for (const auto& [name, value] : counts) {
        const QString option = QString::fromLatin1(name);
        if (!parser.isSet(option))
            continue;
        bool ok = false;
        *value = parser.value(option).toLongLong(&ok);
        if (!ok || *value < 0) {
            *error = QStringLiteral("--%1: not a byte count: %2").arg(option, parser.value(option));
            return false;
        }
    }
    return true;
}

bool readMilliseconds(const QCommandLineParser& parser, const char* name, int* value, QString* error)
{
    const QString option = QString::fromLatin1(name);
    if (!parser.isSet(option))
        return true;
    bool ok = false;
    *value = parser.value(option).toInt(&ok);
    if (ok && *value >= 0)
        return true;
    *error = QStringLiteral("--%1: not a number of milliseconds: %2").arg(option, parser.value(option));
    return false;
}

const QHash<QString, QStringList>& profiles()
{
    static const QHash<QString, QStringList> presets = {
        // A small network board: one login at a time, DOS listings, GBK names, nothing beyond LIST,
        // a rename that will not overwrite, and the running program locked.
        {QStringLiteral("single-session-dos-gbk"),
         {"--max-sessions", "1", "--list-style", "dos", "--no-mlsd", "--no-size", "--name-encoding", "gbk",
          "--rnto-overwrite", "refuse550", "--busy-while-running", "--pasv-timeout", "5", "--idle-timeout", "60"}},
        // The same kind of board sold for Japanese-language controls.
        {QStringLiteral("single-session-unix-year-sjis"),
         {"--max-sessions", "1", "--list-style", "unix-year", "--no-mlsd", "--name-encoding", "sjis",
          "--rnto-overwrite", "refuse450", "--busy-while-running", "--pasv-timeout", "5"}},
        // A PC-based control running a desktop server: several logins, DOS listings, MLSD and SIZE,
        // and a rename that refuses an existing target.
        {QStringLiteral("pc-control"),
         {"--max-sessions", "4", "--list-style", "dos", "--rnto-overwrite", "refuse550", "--busy-while-running"}},
        // An old embedded board: one login, refused only after the password, a slow greeting, 8.3 names,
        // no passive mode, hidden dot-files, GBK, and an idle time-out whose 421 lingers.
        {QStringLiteral("embedded-8.3"),
         {"--max-sessions", "1", "--login-limit-reply", "530", "--greeting-delay", "1500", "--name-rule", "8.3",
          "--no-mlsd", "--no-size", "--no-passive", "--hide-dotfiles", "--name-encoding", "gbk", "--record-encoding",
          "gbk", "--stale-idle-421", "--idle-timeout", "30"}},
    };
    return presets;
}

// Puts the switches of a --profile in front of the rest, so that the rest can override them.
bool expandProfile(const QStringList& arguments, QStringList* expanded, QString* error)
{
    *expanded = arguments;
    for (int i = 1; i < expanded->size(); ++i) {
        const QString argument = expanded->at(i);
        QString name;
        if (argument == QLatin1String("--profile") && i + 1 < expanded->size())
            name = expanded->at(i + 1);
        else if (argument.startsWith(QLatin1String("--profile=")))
            name = argument.mid(10);
        else
            continue;
        if (!profiles().contains(name)) {
            *error = QStringLiteral("--profile: one of %1").arg(SimOptions::ProfileNames().join(QStringLiteral(", ")));
            return false;
        }
        expanded->remove(i, argument.contains(QLatin1Char('=')) ? 1 : 2);
        const QStringList preset = SimOptions::ProfileArguments(name);
        for (int k = 0; k < preset.size(); ++k)
            expanded->insert(1 + k, preset.at(k));
        return true;
    }
    return true;
}

} // namespace

QStringList SimOptions::ProfileArguments(const QString& profile)
{
    return profiles().value(profile);
}

QStringList SimOptions::ProfileNames()
{
    QStringList names = profiles().keys();
    names.sort();
    return names;
}

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
        {"machines",
         "Simulate a shop of N machines, one per loopback address from 127.0.0.2 up, each with the standard "
         "ports, its own serial number and a program folder of its own under the root.",
         "N"},
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
    const QList<QCommandLineOption> controllerList = {
        {"profile",
         "Preset of the controller switches below: single-session-dos-gbk, single-session-unix-year-sjis, "
         "pc-control, embedded-8.3. Switches given as well override it.",
         "NAME"},
        {"max-sessions", "Controller: accept N FTP logins at once; more are answered 421.", "N"},
        {"list-style", "Controller: LIST form unix (default), unix-year (always the year) or dos.", "STYLE"},
        {"no-mlsd", "Controller: no MLSD/MLST (answered 502 and left out of FEAT)."},
        {"no-size", "Controller: no SIZE (answered 502 and left out of FEAT)."},
        {"name-encoding",
         "Controller: file names on the wire in utf8 (default), gbk or sjis; OPTS UTF8 ON refused unless utf8.", "ENC"},
        {"busy-while-running", "Controller: STOR, DELE, RNFR and RNTO on the running program answered 452."},
        {"rnto-overwrite", "Controller: RNTO onto an existing name replace (default), refuse550 or refuse450 it.",
         "MODE"},
        {"disk-quota", "Controller: the root holds at most BYTES; an upload beyond is answered 552.", "BYTES"},
        {"truncate-at", "Controller: an upload keeps only its first BYTES and is still answered 226.", "BYTES"},
        {"send-short-at", "Controller: a download sends only its first BYTES and still answers 226.", "BYTES"},
        {"pasv-timeout", "Controller: a passive port not connected within S seconds is closed.", "S"},
        {"idle-timeout", "Controller: close a control connection idle for S seconds with 421 (default 300).", "S"},
        {"login-limit-reply",
         "Controller: with --max-sessions, greet every client and refuse the login after PASS with 421 "
         "(\"Too many users\") or 530 (\"maximum number of clients\") instead of a 421 greeting.",
         "CODE"},
        {"stale-idle-421", "Controller: send the idle time-out's 421 but keep the connection open; the next command "
                           "closes it."},
        {"reset-idle-after",
         "Controller: forget a login idle for S seconds, as after a power cycle: its next command "
         "gets a TCP reset.",
         "S"},
        {"greeting-delay", "Controller: send the 220 greeting MS milliseconds after the connection is accepted.", "MS"},
        {"name-rule", "Controller: STOR, RNTO and MKD accept only 8.3 names in upper case (553 otherwise).", "8.3"},
        {"no-passive", "Controller: EPSV and PASV answered 502; only active mode (EPRT/PORT) moves data."},
        {"hide-dotfiles", "Controller: folder listings leave out names starting with a dot."},
        {"record-encoding", "Controller: text in real-time records in utf8 (default) or gbk bytes.", "ENC"},
        {"record-nan", "Controller: real-time records report the spindle temperature as NaN."},
    };
    QStringList expanded;
    if (!expandProfile(arguments, &expanded, error))
        return false;
    parser.addOptions(list);
    parser.addOptions(controllerList);
    if (!parser.parse(expanded)) {
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
    if (!readByteCounts(
            parser, {{"ftp-drop-after", &o.ftpDropAfter}, {"ftp-rate", &o.ftpRate}, {"ftp-disk-full", &o.ftpSpaceLeft}},
            error))
        return false;
    if (!readMilliseconds(parser, "ftp-latency", &o.ftpLatencyMs, error))
        return false;
    if (set("machines")) {
        bool ok = false;
        o.machines = text("machines").toInt(&ok);
        if (!ok || o.machines < 1 || o.machines > SimShop::MaxMachines)
            return fail(QStringLiteral("--machines: 1 to %1").arg(SimShop::MaxMachines));
    }
    if (set("sn-error")) {
        bool ok = false;
        o.snErrorCode = text("sn-error").toInt(&ok);
        if (!ok || o.snErrorCode == 0)
            return fail(QStringLiteral("--sn-error: a non-zero error code"));
    }
    if (!ParseController(parser, &o, error))
        return false;
    *options = o;
    return true;
}

bool SimOptions::ParseController(const QCommandLineParser& parser, SimOptions* o, QString* error)
{
    auto text = [&parser](const char* name) { return parser.value(QString::fromLatin1(name)); };
    auto set = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
    auto fail = [error](const QString& message) {
        *error = message;
        return false;
    };
    const struct
    {
        const char* name;
        QString* value;
        QStringList allowed;
    } choices[] = {{"list-style", &o->listStyle, {"unix", "unix-year", "dos"}},
                   {"name-encoding", &o->nameEncoding, {"utf8", "gbk", "sjis"}},
                   {"rnto-overwrite", &o->rntoOverwrite, {"replace", "refuse550", "refuse450"}},
                   {"login-limit-reply", &o->loginLimitReply, {"greeting", "421", "530"}},
                   {"name-rule", &o->nameRule, {"8.3"}},
                   {"record-encoding", &o->recordEncoding, {"utf8", "gbk"}}};
    for (const auto& choice : choices) {
        if (!set(choice.name))
            continue;
        *choice.value = text(choice.name);
        if (!choice.allowed.contains(*choice.value))
            return fail(QStringLiteral("--%1: one of %2").arg(QLatin1String(choice.name), choice.allowed.join(", ")));
    }
    o->noMlsd = set("no-mlsd");
    o->noSize = set("no-size");
    o->busyWhileRunning = set("busy-while-running");
    o->staleIdle421 = set("stale-idle-421");
    o->noPassive = set("no-passive");
    o->hideDotfiles = set("hide-dotfiles");
    o->recordNan = set("record-nan");
    if (!readMilliseconds(parser, "greeting-delay", &o->greetingDelayMs, error))
        return false;
    if (set("max-sessions")) {
        bool ok = false;
        o->maxSessions = text("max-sessions").toInt(&ok);
        if (!ok || o->maxSessions < 1)
            return fail(QStringLiteral("--max-sessions: a positive number"));
    }
    if (!readByteCounts(
            parser,
            {{"disk-quota", &o->diskQuota}, {"truncate-at", &o->truncateAt}, {"send-short-at", &o->sendShortAt}},
            error))
        return false;
    const std::pair<const char*, double*> seconds[] = {{"pasv-timeout", &o->pasvTimeoutSeconds},
                                                       {"idle-timeout", &o->idleTimeoutSeconds},
                                                       {"reset-idle-after", &o->resetIdleSeconds}};
    for (const auto& [name, value] : seconds) {
        if (!set(name))
            continue;
        bool ok = false;
        *value = text(name).toDouble(&ok);
        if (!ok || *value <= 0)
            return fail(QStringLiteral("--%1: a positive number of seconds: %2").arg(QLatin1String(name), text(name)));
    }
    return true;
}
