#include "PyftpdlibServer.h"

#include <QProcess>

PyftpdlibServer::PyftpdlibServer() : TestFtpServer(QStringLiteral("korv"), QStringLiteral("korv-secret")) {}

QString PyftpdlibServer::MissingReason() const
{
    QProcess probe;
    probe.start(Program(), {QStringLiteral("-c"), QStringLiteral("import pyftpdlib")});
    if (!probe.waitForFinished(10000) || probe.exitStatus() != QProcess::NormalExit || probe.exitCode() != 0)
        return QStringLiteral("python3-pyftpdlib is not installed (run scripts/bootstrap)");
    return {};
}

QStringList PyftpdlibServer::Arguments(quint16 port) const
{
    return {QStringLiteral("-m"),
            QStringLiteral("pyftpdlib"),
            QStringLiteral("-i"),
            QStringLiteral("127.0.0.1"),
            QStringLiteral("-p"),
            QString::number(port),
            QStringLiteral("-w"),
            QStringLiteral("-d"),
            RootDir(),
            QStringLiteral("-u"),
            User(),
            QStringLiteral("-P"),
            Password()};
}
