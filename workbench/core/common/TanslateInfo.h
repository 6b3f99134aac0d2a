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
    };

    double totalSize = 0;
    double doneSize = 0;
    QString fileName;
    bool direction = false; // true: towards the local computer (left arrow)
    int state = StateRunning;
    QString machinePath;

    friend bool operator==(const TanslateInfo& a, const TanslateInfo& b)
    {
        return a.totalSize == b.totalSize && a.doneSize == b.doneSize && a.fileName == b.fileName &&
               a.direction == b.direction && a.state == b.state && a.machinePath == b.machinePath;
    }
    friend bool operator!=(const TanslateInfo& a, const TanslateInfo& b) { return !(a == b); }
};
Q_DECLARE_METATYPE(TanslateInfo)

// Queued connections look the type up by this name; safe to call more than once.
inline void RegisterTanslateInfoMetaType()
{
    qRegisterMetaType<TanslateInfo>("TanslateInfo");
}
