#pragma once

#include "KorvBaseExport.h"

#include <QMap>
#include <QString>

// The host's record of the connected machine and of the machines found by discovery.
// GUI thread only.
class KORVBASE_EXPORT CamBaseRegisterHelper
{
public:
    static CamBaseRegisterHelper* instance();

    void SetCurrentMachineConnectStatus(bool bConnected, const QString& ip, const QString& sn);
    bool GetCurrentMachineConnectStatus() const { return m_bConnected; }
    QString GetCurrentMachineSN() const { return m_strSn; }
    QString GetCurrentMachineIP() const { return m_strIp; }
    void SetCurrentCameraVer(const QString& version) { m_strCameraVer = version; }
    QString GetCurrentCameraVer() const { return m_strCameraVer; }

    // Serial number to IP of every machine that answered discovery.
    void AddDiscoveredMachine(const QString& ip, const QString& sn);
    QMap<QString, QString> GetDiscoveredMachines() const { return m_mapDiscovered; }
    void ClearDiscoveredMachines() { m_mapDiscovered.clear(); }
    // Interface name (eth, wlan, usb) to IP, per serial number; kept across discoveries.
    void SaveMachineInterfaceAndIP(const QString& interface, const QString& ip, const QString& sn);
    QMap<QString, QString> GetMachineInterfaceIPs(const QString& sn) const { return m_mapInterfaces.value(sn); }

private:
    CamBaseRegisterHelper() = default;
    Q_DISABLE_COPY_MOVE(CamBaseRegisterHelper)

    bool m_bConnected = false;
    QString m_strIp;
    QString m_strSn;
    QString m_strCameraVer;
    QMap<QString, QString> m_mapDiscovered;
    QMap<QString, QMap<QString, QString>> m_mapInterfaces;
};
