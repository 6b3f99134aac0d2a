#include "SilentConnector.h"

#include "BroadCastSender.h"
#include "CDebugLog.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "LogColors.h"

#include <QTimer>

namespace {
QVariant Setting(const char* key, const QVariant& defaultValue)
{
    return CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                               QString::fromLatin1(key), defaultValue);
}

QString SavedSn()
{
    return Setting(g_strSettingLastConnectMachineSN, QString()).toString();
}
} // namespace

SilentConnector::SilentConnector(QObject* parent)
    : QObject(parent), m_pDiscoverySender(new BroadCastSender(this)), m_pSearchTimer(new QTimer(this))
{
    m_pSearchTimer->setSingleShot(true);
    connect(m_pDiscoverySender, &BroadCastSender::discoveryResult, this, &SilentConnector::OnReply);
    connect(m_pSearchTimer, &QTimer::timeout, this, &SilentConnector::OnSearchEnded);
}

bool SilentConnector::Start()
{
    const QString savedSn = SavedSn();
    if (!Setting(g_strSettingAutoConnectLastMachine, true).toBool() || savedSn.isEmpty())
        return false;
    CamBaseRegisterHelper::instance()->ClearDiscoveredMachines();
    const QString line = tr("正在查找上次连接的机床，SN: %1").arg(savedSn);
    CDebugLog::AddLog(line);
    Q_EMIT SignalAppendLog(line, LogColors::Plain);
    m_pDiscoverySender->startDiscovery(30000, 3000);
    m_pSearchTimer->start(m_nSearchMs);
    return true;
}

void SilentConnector::OnSearchEnded()
{
    m_pDiscoverySender->stopDiscovery();
    const QString line = tr("未找到上次连接的机床，SN: %1，请使用“新建连接”选择机床").arg(SavedSn());
    CDebugLog::AddLog(line);
    Q_EMIT SignalAppendLog(line, LogColors::Warning);
}

void SilentConnector::OnReply(const QString& reply)
{
    const QStringList parts = reply.split(QLatin1Char('*'));
    if (parts.size() < 4)
        return;
    const QString sn = parts.at(1);
    const QString ip = parts.at(3);
    const QString iface = parts.size() >= 6 ? parts.at(5) : QString::fromLatin1(g_strInterfaceWlan);
    if (sn.isEmpty())
        return;
    CamBaseRegisterHelper::instance()->AddDiscoveredMachine(ip, sn);
    CamBaseRegisterHelper::instance()->SaveMachineInterfaceAndIP(iface, ip, sn);
    // One machine may answer on several links; the first answer ends the search.
    if (!m_pSearchTimer->isActive() || sn != SavedSn())
        return;
    m_pSearchTimer->stop();
    m_pDiscoverySender->stopDiscovery();
    Q_EMIT SignalFound(ip, sn);
}
