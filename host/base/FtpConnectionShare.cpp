#include "FtpConnectionShare.h"

#include <curl/curl.h>

namespace {
static_assert(CURL_LOCK_DATA_LAST <= 8, "one mutex per kind of shared data");

void LockShare(CURL*, curl_lock_data data, curl_lock_access, void* mutexes)
{
    static_cast<std::mutex*>(mutexes)[data].lock();
}

void UnlockShare(CURL*, curl_lock_data data, void* mutexes)
{
    static_cast<std::mutex*>(mutexes)[data].unlock();
}
} // namespace

FtpConnectionShare::FtpConnectionShare()
{
    CURLSH* share = curl_share_init();
    m_pShare = share;
    if (!share)
        return;
    curl_share_setopt(share, CURLSHOPT_LOCKFUNC, LockShare);
    curl_share_setopt(share, CURLSHOPT_UNLOCKFUNC, UnlockShare);
    curl_share_setopt(share, CURLSHOPT_USERDATA, static_cast<void*>(m_mutexes));
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_CONNECT);
}

void* FtpConnectionShare::Handle()
{
    // Never destroyed: a share still attached to an easy handle cannot be cleaned up.
    static FtpConnectionShare* instance = new FtpConnectionShare;
    return instance->m_pShare;
}
