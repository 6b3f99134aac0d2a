#include "CncSimServer.h"

#include <QFileInfo>

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
