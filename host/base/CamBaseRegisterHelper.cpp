#include "CamBaseRegisterHelper.h"

CamBaseRegisterHelper* CamBaseRegisterHelper::instance()
{
    static CamBaseRegisterHelper helper;
    return &helper;
}

void CamBaseRegisterHelper::SetCurrentMachineConnectStatus(bool bConnected, const QString& ip, const QString& sn)
{
    m_bConnected = bConnected;
    m_strIp = ip;
    m_strSn = sn;
    if (!bConnected)
        m_strCameraVer.clear();
}

void CamBaseRegisterHelper::AddDiscoveredMachine(const QString& ip, const QString& sn)
{
    if (!sn.isEmpty())
        m_mapDiscovered.insert(sn, ip);
}

void CamBaseRegisterHelper::SaveMachineInterfaceAndIP(const QString& interface, const QString& ip, const QString& sn)
{
    if (!sn.isEmpty() && !interface.isEmpty())
        m_mapInterfaces[sn].insert(interface, ip);
}
