#pragma once

#include <QMetaType>
#include <QString>

// One transfer report from the workspace to the transfer list; each row keeps the latest one whole.
struct TanslateInfo
{
    // States as the workspace fills them; 2 and 3 are both drawn as a transfer in progress.
    enum State
    {
        StateFailed = 0,
        StateSucceeded = 1,
        StateRunning = 2,
        StateWaiting = 3,
        StateCancelled = 4, // stopped by the user; retried like a failure
    };

    // A row that may still be cancelled, and one that may be sent again.
    static bool IsActive(int state) { return state == StateRunning || state == StateWaiting; }
    static bool IsRetryable(int state) { return state == StateFailed || state == StateCancelled; }

    double totalSize = 0;
    double doneSize = 0;
    QString fileName;
    bool direction = false; // true: towards the local computer (left arrow)
    int state = StateRunning;
    QString machinePath;
    QString localPath; // the file on this computer, for opening its folder

    friend bool operator==(const TanslateInfo& a, const TanslateInfo& b)
    {
        return a.totalSize == b.totalSize && a.doneSize == b.doneSize && a.fileName == b.fileName &&
               a.direction == b.direction && a.state == b.state && a.machinePath == b.machinePath &&
               a.localPath == b.localPath;
    }
    friend bool operator!=(const TanslateInfo& a, const TanslateInfo& b) { return !(a == b); }
};
Q_DECLARE_METATYPE(TanslateInfo)

// Queued connections look the type up by this name; safe to call more than once.
inline void RegisterTanslateInfoMetaType()
{
    qRegisterMetaType<TanslateInfo>("TanslateInfo");
}
