#include "FtpSessionBudget.h"

#include "CDebugLog.h"

#include <chrono>

namespace {
constexpr auto kStopPoll = std::chrono::milliseconds(100);
constexpr auto kAcceptedLately = std::chrono::seconds(60);
} // namespace

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
        // A refusal may have been a passing shortage (another client, a slow logout): try one more.
        if (Clock::now() - machine.refusedAt >= m_probeInterval) {
            machine.refusedAt = Clock::now();
            ++machine.iLimit;
            CDebugLog::AddLog(QStringLiteral("FTP %1: trying %2 login(s) at once").arg(host).arg(machine.iLimit));
            break;
        }
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
    machine.refusedAt = Clock::now();
    if (machine.iLimit == 0 || accepted < machine.iLimit)
        machine.iLimit = accepted;
    CDebugLog::AddLog(QStringLiteral("FTP %1 refused a login with %2 in use; accepts %3 at once")
                          .arg(host)
                          .arg(machine.iInUse)
                          .arg(machine.iLimit));
}

int FtpSessionBudget::Limit(const QString& host) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_hashMachines.value(host).iLimit;
}

void FtpSessionBudget::NoteAccepted(const QString& host, const QString& credentials)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    Machine& machine = m_hashMachines[host];
    machine.acceptedCredentials = qHash(credentials);
    machine.acceptedAt = Clock::now();
}

bool FtpSessionBudget::AcceptedLately(const QString& host, const QString& credentials) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto it = m_hashMachines.constFind(host);
    return it != m_hashMachines.constEnd() && it->acceptedCredentials == qHash(credentials) &&
           it->acceptedAt != Clock::time_point() && Clock::now() - it->acceptedAt < kAcceptedLately;
}

void FtpSessionBudget::SetProbeInterval(std::chrono::milliseconds interval)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_probeInterval = interval;
}
