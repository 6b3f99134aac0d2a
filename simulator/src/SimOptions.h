#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>

class QCommandLineParser;

// Everything cnc-sim can be told on its command line, including the fault switches
// that let the workbench's failure paths be exercised against the real wire.
struct SimOptions
{
    QHostAddress bindAddress{QHostAddress::LocalHost};
    QString rootDir;
    quint16 ftpPort = 2121;
    quint16 infoPort = 30001;
    quint16 snPort = 5002;
    quint16 discoveryPort = 30002;
    QString serialNumber = QStringLiteral("PB01A2406001");
    QString sysVersion = QStringLiteral("1.5.2");
    QString fwVersion = QStringLiteral("2.3.0");
    QString interfaceName = QStringLiteral("eth");
    QString ftpUser;
    QString ftpPassword;
    int machines = 0; // a shop: this many machines on 127.0.0.2, 127.0.0.3, … instead of one

    // The simulated machine.
    QString runProgram;       // started at once, relative to the root
    bool autorun = false;     // cycle through every program of the root
    double timeScale = 1.0;   // simulated seconds per wall-clock second
    double bootSeconds = 0;   // state 0 while the controller starts
    bool forbid = false;      // interlock open: state 4, nothing runs
    double idleSeconds = 3.0; // waiting between programs in autorun

    // Fault switches.
    qint64 ftpDropAfter = -1; // bytes per transfer before the data link is cut
    qint64 ftpRate = 0;       // bytes per second per transfer, 0 = unlimited
    int ftpLatencyMs = 0;     // delay before each FTP command is answered
    qint64 ftpSpaceLeft = -1; // bytes an upload may write before 552 "disk full", -1 = unlimited
    QStringList ftpRefused;   // upper-case verbs answered with 550; "VERB:text" only for arguments holding text
    int snErrorCode = 0;
    bool snSilent = false;
    bool realTimeSilent = false;
    double vanishAfter = -1;     // seconds until every port closes
    bool vanishSilently = false; // ... or until the ports stay open and nothing answers
    double alarmAfter = -1;      // seconds of running until a servo alarm latches

    // Controller behaviours: how the FTP servers of real controllers differ from a desktop server.
    int maxSessions = 0;                                  // further logins answered 421; 0 = no limit
    QString listStyle = QStringLiteral("unix");           // LIST form: unix, unix-year or dos
    bool noMlsd = false;                                  // MLSD/MLST unknown (502), not in FEAT
    bool noSize = false;                                  // SIZE unknown (502), not in FEAT
    QString nameEncoding = QStringLiteral("utf8");        // names on the wire: utf8, gbk or sjis
    bool busyWhileRunning = false;                        // STOR/DELE/RNFR/RNTO on the running program: 452
    QString rntoOverwrite = QStringLiteral("replace");    // RNTO onto an existing name: replace, refuse550, refuse450
    qint64 diskQuota = -1;                                // bytes the root may hold; an upload beyond gets 552
    qint64 truncateAt = -1;                               // an upload keeps only this many bytes, still 226
    qint64 sendShortAt = -1;                              // a download sends only this many bytes, still 226
    double pasvTimeoutSeconds = -1;                       // a passive port not connected by then is closed
    double idleTimeoutSeconds = 300;                      // an idle control connection is closed with 421
    QString loginLimitReply = QStringLiteral("greeting"); // --max-sessions refusal: greeting, 421 or 530 after PASS
    bool staleIdle421 = false;                            // the idle 421 is sent but the connection stays open
    double resetIdleSeconds = -1;                         // an idle login is forgotten: next command gets a reset
    int greetingDelayMs = 0;                              // the 220 greeting comes this late
    QString nameRule;                                     // "8.3": STOR, RNTO and MKD take only 8.3 names
    bool noPassive = false;                               // EPSV and PASV answered 502
    bool hideDotfiles = false;                            // folder listings leave out names starting with "."
    QString recordEncoding = QStringLiteral("utf8");      // text of real-time records: utf8 or gbk
    bool recordNan = false;                               // real-time records carry NaN as the spindle temperature

    // Argument lists the --profile presets stand for; explicit switches after them win.
    static QStringList ProfileArguments(const QString& profile);
    static QStringList ProfileNames();

    // Returns false with a message for the user on a bad command line; --help and
    // --version print and exit inside.
    static bool Parse(const QStringList& arguments, SimOptions* options, QString* error);

private:
    static bool ParseController(const QCommandLineParser& parser, SimOptions* options, QString* error);
};
