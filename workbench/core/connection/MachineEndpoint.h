#pragma once

#include "FtpNameRules.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

// Everything needed to reach one machine's files, as one value: whoever talks to a machine
// takes it, so that a request says which machine it is for. Empty (no address) when none.
struct MachineEndpoint
{
    // Machines are addressed on the well-known FTP port; the host maps it (forwarding, simulator).
    static constexpr int WellKnownFtpPort = 21;

    QString strIp;
    QString strSn;
    int iFtpPort = WellKnownFtpPort; // after the host's port mapping, for display
    QByteArray nameEncoding = "UTF-8";
    FtpNameRules nameRules;

    // Reads the machine's settings (port mapping, name encoding, name rules) for ip.
    static MachineEndpoint For(const QString& ip, const QString& sn);

    bool IsValid() const { return !strIp.isEmpty(); }
    // How many FTP logins the machine takes at once, as the host's login budget learned it;
    // 0 while the machine has refused none.
    int LoginLimit() const;

    friend bool operator==(const MachineEndpoint& a, const MachineEndpoint& b)
    {
        return a.strIp == b.strIp && a.strSn == b.strSn;
    }
    friend bool operator!=(const MachineEndpoint& a, const MachineEndpoint& b) { return !(a == b); }
};
Q_DECLARE_METATYPE(MachineEndpoint)
