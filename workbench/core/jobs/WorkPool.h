#pragma once

class QThreadPool;

// The workbench's own threads for blocking I/O (local folders, file comparison, account
// requests). Apart from the host's global pool, so that the plug-in can drain its own work
// before it is unloaded without waiting on anybody else's.
class WorkPool final
{
public:
    static QThreadPool* Instance();
    // Waits at most `milliseconds` for every queued and running job; true when none is left.
    static bool Drain(int milliseconds);
};
