#include "FtpSessionBudget.h"

#include "CDebugLog.h"

#include <chrono>

namespace {
constexpr auto kStopPoll = std::chrono::milliseconds(100);
}

FtpSessionBudget& FtpSessionBudget::Instance()
{
    // Never destroyed: a task still finishing on a pool thread at exit may release its login after
    // static destructors have run.
    static FtpSessionBudget* budget = new FtpSessionBudget;
    return *budget;
}

bool FtpSessionBudget::Acquire(const QString& host, const std::function<bool()>& stop)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    Machine& machine = m_hashMachines[host];
    while (machine.iLimit > 0 && machine.iInUse >= machine.iLimit) {
        if (stop && stop())
            return false;
        m_freed.wait_for(lock, kStopPoll);
    }
    ++machine.iInUse;
    return true;
}

void FtpSessionBudget::Release(const QString& host)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        Machine& machine = m_hashMachines[host];
        machine.iInUse = qMax(0, machine.iInUse - 1);
    }
    m_freed.notify_all();
}

void FtpSessionBudget::LearnRefusal(const QString& host)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    Machine& machine = m_hashMachines[host];
    // The others holding a login are what the machine accepts; never less than one.
    const int accepted = qMax(1, machine.iInUse - 1);
    if (machine.iLimit == 0 || accepted < machine.iLimit) {
        machine.iLimit = accepted;
        CDebugLog::AddLog(QStringLiteral("FTP %1 accepts %2 login(s) at once").arg(host).arg(accepted));
    }
}

int FtpSessionBudget::Limit(const QString& host) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_hashMachines.value(host).iLimit;
}
