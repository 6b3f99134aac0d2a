#pragma once

#include "KorvBaseExport.h"

#include <mutex>

// The process-wide libcurl share that holds the FTP connection cache, so that a task
// picks up a connection that an earlier task left logged in instead of connecting and
// logging in again: sending many small programs to one machine is the daily case.
class KORVBASE_EXPORT FtpConnectionShare
{
public:
    // The share handle (a CURLSH*), created on first use and kept for the life of the process:
    // easy handles of tasks still finishing may use it until the very end. Call it after
    // curl_global_init.
    static void* Handle();

private:
    FtpConnectionShare();
    Q_DISABLE_COPY_MOVE(FtpConnectionShare)

    void* m_pShare = nullptr;
    // One lock per kind of shared data: libcurl locks them separately and from any thread.
    std::mutex m_mutexes[8];
};
