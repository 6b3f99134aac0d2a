#include "TransferActivity.h"

#include "KorvBaseGlobals.h"

TransferActivity::TransferActivity(QObject* parent)
    : QObject(parent), m_pSelf(std::make_shared<TransferActivity*>(this))
{}

TransferActivity::~TransferActivity()
{
    *m_pSelf = nullptr;
    if (m_bBusy)
        g_bTranslating = false;
}

TransferActivity::Hold TransferActivity::Begin(const QString& ip)
{
    Change(ip, 1);
    std::weak_ptr<TransferActivity*> self = m_pSelf;
    return Hold(nullptr, [self, ip](void*) {
        if (const auto owner = self.lock(); owner && *owner)
            (*owner)->Change(ip, -1);
    });
}

void TransferActivity::SetConnectedIp(const QString& ip)
{
    m_strConnectedIp = ip;
    Publish();
}

void TransferActivity::Change(const QString& ip, int delta)
{
    const int count = m_hashCount.value(ip) + delta;
    if (count > 0)
        m_hashCount.insert(ip, count);
    else
        m_hashCount.remove(ip);
    Publish();
}

void TransferActivity::Publish()
{
    const bool busy = IsBusy();
    g_bTranslating = busy;
    if (busy == m_bBusy)
        return;
    m_bBusy = busy;
    Q_EMIT SignalBusyChanged(busy);
}
