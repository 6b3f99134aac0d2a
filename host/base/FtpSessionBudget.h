#pragma once

#include "KorvBaseExport.h"

#include <QHash>
#include <QString>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

// How many FTP logins each machine takes at once, shared by every task of the process
// (listings, transfers, the status page). Unknown at first; when a machine turns a login
// away for want of a free one, the limit drops to the logins it was holding, and later
// tasks wait for a free one instead of being refused. A learned limit is not for ever:
// a while after the last refusal one more login is tried, and kept if the machine takes it.
class KORVBASE_EXPORT FtpSessionBudget
{
public:
    static FtpSessionBudget& Instance();

    // Waits for a free login to host; false when stop() turned true first.
    bool Acquire(const QString& host, const std::function<bool()>& stop);
    void Release(const QString& host);
    // The caller holds a login slot and its login was refused.
    void LearnRefusal(const QString& host);
    // The learned limit; 0 while the machine has refused nothing.
    int Limit(const QString& host) const;
    // A login with these credentials succeeded.
    void NoteAccepted(const QString& host, const QString& credentials);
    // Whether the same credentials were accepted moments ago: a 530 now is the machine being
    // full, not a wrong password.
    bool AcceptedLately(const QString& host, const QString& credentials) const;
    // How long after a refusal the limit is probed with one more login (tests shorten it).
    void SetProbeInterval(std::chrono::milliseconds interval);

private:
    FtpSessionBudget() = default;
    Q_DISABLE_COPY_MOVE(FtpSessionBudget)

    using Clock = std::chrono::steady_clock;
    struct Machine
    {
        int iLimit = 0;
        int iInUse = 0;
        Clock::time_point refusedAt;
        size_t acceptedCredentials = 0;
        Clock::time_point acceptedAt;
    };
    mutable std::mutex m_mutex;
    std::chrono::milliseconds m_probeInterval{30000};
    std::condition_variable m_freed;
    QHash<QString, Machine> m_hashMachines;
};
