#pragma once

#include "KorvBaseExport.h"

#include <QHash>
#include <QString>
#include <condition_variable>
#include <functional>
#include <mutex>

// How many FTP logins each machine takes at once, shared by every task of the process
// (listings, transfers, the status page). Unknown at first; when a machine turns a login
// away (421) the limit drops to the logins it was holding, and later tasks wait for a
// free one instead of being refused.
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

private:
    FtpSessionBudget() = default;
    Q_DISABLE_COPY_MOVE(FtpSessionBudget)

    struct Machine
    {
        int iLimit = 0;
        int iInUse = 0;
    };
    mutable std::mutex m_mutex;
    std::condition_variable m_freed;
    QHash<QString, Machine> m_hashMachines;
};
