#include "CncSimServer.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <csignal>

namespace {
const QByteArray kCountsLine = QByteArrayLiteral("cnc-sim commands ");

QList<QByteArray> CountLines(const QString& logFile)
{
    QFile log(logFile);
    QList<QByteArray> lines;
    if (log.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : log.readAll().split('\n')) {
            if (line.startsWith(kCountsLine))
                lines.append(line.mid(kCountsLine.size()).trimmed());
        }
    }
    return lines;
}
} // namespace

CncSimServer::CncSimServer(const QStringList& faultSwitches)
    : TestFtpServer(QStringLiteral("korv"), QStringLiteral("korv-secret")), m_listFaultSwitches(faultSwitches)
{}

QString CncSimServer::MissingReason() const
{
    if (!QFileInfo(Program()).isExecutable())
        return QStringLiteral("%1 is not built").arg(Program());
    return {};
}

QString CncSimServer::Program() const
{
    return QStringLiteral(KORV_CNC_SIM_PROGRAM);
}

QStringList CncSimServer::Arguments(quint16 port) const
{
    return QStringList{QStringLiteral("--root"),           RootDir(),
                       QStringLiteral("--ftp-port"),       QString::number(port),
                       QStringLiteral("--info-port"),      QStringLiteral("0"),
                       QStringLiteral("--sn-port"),        QStringLiteral("0"),
                       QStringLiteral("--discovery-port"), QStringLiteral("0"),
                       QStringLiteral("--ftp-user"),       User(),
                       QStringLiteral("--ftp-password"),   Password()} +
           m_listFaultSwitches;
}

QMap<QString, qint64> CncSimServer::CommandCounts() const
{
    QMap<QString, qint64> counts;
    const qsizetype before = CountLines(LogFile()).size();
    if (!IsRunning() || ::kill(pid_t(ProcessId()), SIGUSR1) != 0)
        return counts;
    const QDeadlineTimer deadline(5000);
    QList<QByteArray> lines;
    while ((lines = CountLines(LogFile())).size() <= before && !deadline.hasExpired())
        QThread::msleep(10);
    for (const QByteArray& pair : lines.value(before).split(' ')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0)
            counts.insert(QString::fromLatin1(pair.left(equals)), pair.mid(equals + 1).toLongLong());
    }
    return counts;
}
