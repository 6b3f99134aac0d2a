#include "FtpSession.h"

#include "CDebugLog.h"
#include "FtpConnectionShare.h"
#include "FtpListingParser.h"
#include "FtpSessionBudget.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QIODevice>
#include <QRegularExpression>
#include <QSet>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QThread>
#include <QUrl>
#include <algorithm>
#include <cctype>
#include <curl/curl.h>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace {
constexpr long kBufferSize = 512 * 1024;
constexpr int kSalvageWaitMs = 100;
constexpr long kStopPollMs = 100; // longest wait before a stop request is seen
constexpr int kReconnectAttempts = 6;
constexpr unsigned long kReconnectWaitMs = 50; // doubled on every attempt
constexpr long kIdleLoginSeconds = 24 * 3600;

// Per-step state handed to libcurl's callbacks.
struct Transfer
{
    const FtpSession::StopCheck* stopCheck = nullptr;
    const FtpSession::ProgressFn* progress = nullptr;
    QIODevice* device = nullptr;
    QByteArray* buffer = nullptr;
    bool bUpload = false;
    bool bDeviceFailed = false;
    void* curl = nullptr;
    const int* lastSocket = nullptr; // opened last in this step: an upload's data connection
    QElapsedTimer uploadClock = QElapsedTimer();
    bool bSendBufferGrown = false;
};

// The kernel's own send buffer grows to megabytes, and an upload's byte count then runs that far
// ahead of the machine: a slow link showed a burst, then silence. A data connection starts with
// 128 KiB in flight, far more than a shop network needs; one that has averaged tens of megabytes a
// second gets four times that, as 128 KiB held a loopback upload to a third of its speed.
constexpr int kSendBuffer = 64 * 1024; // the kernel doubles it
constexpr int kFastSendBuffer = 256 * 1024;
constexpr qint64 kFastBytesPerMs = 40 * 1024;
constexpr qint64 kFastAfterMs = 50;

void GrowSendBufferOfFastLink(Transfer* transfer, qint64 sent)
{
    if (transfer->bSendBufferGrown || !transfer->lastSocket || *transfer->lastSocket < 0)
        return;
    if (!transfer->uploadClock.isValid()) {
        transfer->uploadClock.start();
        return;
    }
    const qint64 elapsedMs = transfer->uploadClock.elapsed();
    if (elapsedMs >= kFastAfterMs && sent >= kFastBytesPerMs * elapsedMs)
        transfer->bSendBufferGrown =
            setsockopt(*transfer->lastSocket, SOL_SOCKET, SO_SNDBUF, &kFastSendBuffer, sizeof kFastSendBuffer) == 0;
}

bool StopRequested(const Transfer* transfer)
{
    return transfer->stopCheck && *transfer->stopCheck && (*transfer->stopCheck)();
}

size_t OnHeader(char* data, size_t size, size_t count, void* replies)
{
    QByteArray line(data, qsizetype(size * count));
    static_cast<QList<QByteArray>*>(replies)->append(line.trimmed());
    return size * count;
}

size_t OnWrite(char* data, size_t size, size_t count, void* userData)
{
    auto* transfer = static_cast<Transfer*>(userData);
    const qint64 bytes = qint64(size * count);
    if (transfer->buffer) {
        transfer->buffer->append(data, bytes);
        return size_t(bytes);
    }
    if (StopRequested(transfer) || transfer->device->write(data, bytes) != bytes) {
        transfer->bDeviceFailed = !StopRequested(transfer);
        return 0;
    }
    return size_t(bytes);
}

size_t OnRead(char* data, size_t size, size_t count, void* userData)
{
    auto* transfer = static_cast<Transfer*>(userData);
    if (StopRequested(transfer))
        return CURL_READFUNC_ABORT;
    const qint64 read = transfer->device->read(data, qint64(size * count));
    if (read < 0) {
        transfer->bDeviceFailed = true;
        return CURL_READFUNC_ABORT;
    }
    return size_t(read);
}

int OnProgress(void* userData, curl_off_t dlTotal, curl_off_t dlNow, curl_off_t ulTotal, curl_off_t ulNow)
{
    auto* transfer = static_cast<Transfer*>(userData);
    if (StopRequested(transfer)) {
        // Stopped between two commands, libcurl would otherwise cache a connection whose replies
        // are still on their way, and the next step on it would read them as its own.
        curl_easy_setopt(static_cast<CURL*>(transfer->curl), CURLOPT_FORBID_REUSE, 1L);
        return 1;
    }
    if (transfer->bUpload)
        GrowSendBufferOfFastLink(transfer, qint64(ulNow));
    if (!transfer->progress || !*transfer->progress)
        return 0;
    const bool bGoOn =
        transfer->bUpload ? (*transfer->progress)(ulNow, ulTotal) : (*transfer->progress)(dlNow, dlTotal);
    return bGoOn ? 0 : 1;
}

// A machine without a free login says so with a 421 (instead of the greeting or after USER/PASS)
// or with a 530 whose text speaks of a limit; a plain 530 is about the password.
bool IsLoginLimitReply(const QByteArray& reply)
{
    if (reply.startsWith("421"))
        return true;
    static const QRegularExpression limit(QStringLiteral("maximum|too many|limit"),
                                          QRegularExpression::CaseInsensitiveOption);
    return reply.startsWith("530") && limit.match(QString::fromUtf8(reply)).hasMatch();
}

// The connection broke: reset, or closed without a reply.
bool IsConnectionLost(CURLcode code)
{
    return code == CURLE_RECV_ERROR || code == CURLE_SEND_ERROR || code == CURLE_GOT_NOTHING;
}

// Commands after which the machine is no longer what it was: never sent twice blindly.
bool ChangesMachine(const QString& command)
{
    static const QStringList verbs{"DELE", "RNTO", "STOR", "APPE", "STOU", "MKD", "XMKD", "RMD", "XRMD", "SITE"};
    QString verb = command.section(QLatin1Char(' '), 0, 0).toUpper();
    return verbs.contains(verb.remove(QLatin1Char('*')));
}

// The "size=" fact of an MLST reply.
bool SizeFact(const QList<QByteArray>& replies, qint64* size)
{
    for (const QByteArray& line : replies) {
        if (line.size() >= 3 && std::isdigit(uchar(line[0])))
            continue;
        for (const QByteArray& fact : line.split(';')) {
            bool bOk = false;
            const qint64 value = fact.toLower().startsWith("size=") ? fact.mid(5).toLongLong(&bOk) : -1;
            if (bOk) {
                *size = value;
                return true;
            }
        }
    }
    return false;
}

// Machines that refused passive mode and moved data in active mode: later sessions start in it.
std::mutex& ActiveModeMutex()
{
    static auto* mutex = new std::mutex; // never destroyed: pool tasks may finish after static destructors
    return *mutex;
}

QSet<QString>& ActiveModeMachines()
{
    static auto* machines = new QSet<QString>;
    return *machines;
}

long ResponseSeconds(const FtpSettings& settings)
{
    return qMax(1L, long(settings.responseTimeoutMs + 999) / 1000);
}

// What FEAT told of each machine ("host:port"), for sessions that start on a cached login.
struct Features
{
    bool bMlsd = false;
    bool bSize = false;
};

std::mutex& FeaturesMutex()
{
    static auto* mutex = new std::mutex;
    return *mutex;
}

QHash<QString, Features>& MachineFeatures()
{
    static auto* features = new QHash<QString, Features>;
    return *features;
}

// The control connections open now, in any session, with their local ports (0 until known; a
// connected socket keeps its port): a cached login is looked up by its ports.
std::mutex& ControlSocketsMutex()
{
    static auto* mutex = new std::mutex;
    return *mutex;
}

QHash<int, int>& ControlSockets()
{
    static auto* sockets = new QHash<int, int>;
    return *sockets;
}

// Idle multi handles, handed from one task to the next: each task runs on its own thread, and
// making a multi handle (its wake-up socket pair, its tables) per task was a tenth of a small
// file's cost. Connections are not in them but in the shared cache. Names are: every passive data
// connection leaves its "address:port" there, and every step walks all of them to expire the old
// ones, so a multi retires after a few dozen tasks and takes its names with it.
struct MultiPool
{
    std::mutex mutex;
    std::vector<FtpSession::PooledMulti> idle;
};

MultiPool& IdleMultis()
{
    static auto* pool = new MultiPool; // never destroyed: tasks may end after static destructors
    return *pool;
}

constexpr std::size_t kIdleMultisKept = 16;
constexpr int kTasksPerMulti = 64;

FtpSession::PooledMulti TakeMulti()
{
    MultiPool& pool = IdleMultis();
    {
        std::lock_guard<std::mutex> lock(pool.mutex);
        if (!pool.idle.empty()) {
            const FtpSession::PooledMulti multi = pool.idle.back();
            pool.idle.pop_back();
            return multi;
        }
    }
    CURLM* multi = curl_multi_init();
    // The shared connection cache is trimmed to the multi's limit whenever a step ends; the
    // default (four per easy handle) would close the idle logins other tasks are about to reuse.
    if (multi)
        curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, 32L);
    return {multi, 0};
}

void GiveBackMulti(FtpSession::PooledMulti multi)
{
    if (++multi.tasksServed < kTasksPerMulti) {
        MultiPool& pool = IdleMultis();
        std::lock_guard<std::mutex> lock(pool.mutex);
        if (pool.idle.size() < kIdleMultisKept) {
            pool.idle.push_back(multi);
            return;
        }
    }
    curl_multi_cleanup(static_cast<CURLM*>(multi.handle));
}

int PortOf(const sockaddr_storage& address)
{
    return ntohs(address.ss_family == AF_INET6 ? reinterpret_cast<const sockaddr_in6*>(&address)->sin6_port
                                               : reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

// A server reply that names the cause better than libcurl's code does.
QString ReasonFromReply(const QByteArray& reply)
{
    if (reply.startsWith("552"))
        return QCoreApplication::translate("FtpTask", "服务器存储空间不足");
    // Controllers also answer 452 while the file is in use (a program running from storage).
    if (reply.startsWith("452"))
        return QCoreApplication::translate("FtpTask", "机床暂时无法写入（存储空间不足或文件正被使用）");
    if (reply.startsWith("421"))
        return QCoreApplication::translate("FtpTask", "机床的FTP连接数已满");
    if (reply.startsWith("530"))
        return QCoreApplication::translate("FtpTask", "FTP登录被拒绝，请检查用户名和密码");
    return QString();
}

QString Reason(CURLcode code)
{
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
        return QCoreApplication::translate("FtpTask", "无法连接FTP服务器");
    case CURLE_LOGIN_DENIED:
        return QCoreApplication::translate("FtpTask", "FTP登录被拒绝，请检查用户名和密码");
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_FTP_ACCEPT_TIMEOUT:
        return QCoreApplication::translate("FtpTask", "FTP服务器响应超时");
    case CURLE_REMOTE_DISK_FULL:
        return QCoreApplication::translate("FtpTask", "服务器存储空间不足");
    case CURLE_REMOTE_FILE_NOT_FOUND:
    case CURLE_FTP_COULDNT_RETR_FILE:
        return QCoreApplication::translate("FtpTask", "远程文件不存在");
    case CURLE_REMOTE_ACCESS_DENIED:
        return QCoreApplication::translate("FtpTask", "远程路径不存在或没有权限");
    case CURLE_UPLOAD_FAILED:
        return QCoreApplication::translate("FtpTask", "服务器拒绝写入文件");
    case CURLE_QUOTE_ERROR:
        return QCoreApplication::translate("FtpTask", "服务器拒绝了命令");
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_FTP_CANT_GET_HOST:
    case CURLE_FTP_WEIRD_PASV_REPLY:
        return QCoreApplication::translate("FtpTask", "FTP连接中断");
    default:
        // libcurl's own words are English; the debug log keeps them.
        return QCoreApplication::translate("FtpTask", "FTP错误（代码%1）").arg(int(code));
    }
}

bool HasControlCharacters(const QString& text)
{
    return text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n'));
}

QString JoinPath(const QString& dir, const QString& name)
{
    return dir.endsWith(QLatin1Char('/')) ? dir + name : dir + QLatin1Char('/') + name;
}

// curl_slist owner for the quote commands of one step.
class QuoteList
{
public:
    explicit QuoteList(const QList<QByteArray>& commands)
    {
        for (const QByteArray& command : commands)
            m_pList = curl_slist_append(m_pList, command.constData());
    }
    ~QuoteList() { curl_slist_free_all(m_pList); }
    Q_DISABLE_COPY_MOVE(QuoteList)
    curl_slist* get() const { return m_pList; }

private:
    curl_slist* m_pList = nullptr;
};
// The session whose step runs on this thread. A cached connection outlives the session that
// opened it and may be closed while another session performs, so the close-socket callback
// asks this rather than trusting the pointer registered with the connection.
thread_local FtpSession* t_pPerformingSession = nullptr;

// libcurl, and the TLS library under it, are set up as this library loads: on the loading thread and
// before any thread pool exists. The TLS library's exit handler then runs after the pool's threads
// have been joined; registered later, it freed the thread data that those threads free again as they end.
const struct CurlGlobalInit
{
    CurlGlobalInit() { curl_global_init(CURL_GLOBAL_DEFAULT); }
} g_curlGlobalInit;
} // namespace

FtpSession::FtpSession(const QString& host, int port, const FtpSettings& settings, StopCheck stopCheck)
    : m_strHost(host), m_iPort(port), m_settings(settings), m_stopCheck(std::move(stopCheck)),
      m_errorBuffer(CURL_ERROR_SIZE + 1, '\0')
{
    CURL* curl = curl_easy_init();
    m_pCurl = curl;
    m_multi = TakeMulti();
    if (!curl)
        return;
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "ftp");
    if (void* share = FtpConnectionShare::Handle())
        curl_easy_setopt(curl, CURLOPT_SHARE, share);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_USERNAME, m_settings.user.toUtf8().constData());
    curl_easy_setopt(curl, CURLOPT_PASSWORD, m_settings.password.toUtf8().constData());
    // libcurl's connect time-out also covers the greeting and the login; the TCP connection alone is
    // held to the connect time-out in RunStep, and the replies get the response time-out.
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, long(m_settings.connectTimeoutMs + m_settings.responseTimeoutMs));
    const long responseSeconds = ResponseSeconds(m_settings);
    curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, responseSeconds);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, responseSeconds);
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(curl, CURLOPT_BUFFERSIZE, kBufferSize);
    curl_easy_setopt(curl, CURLOPT_UPLOAD_BUFFERSIZE, kBufferSize);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, m_errorBuffer.data());
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, OnHeader);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &m_listReplies);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, OnProgress);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, OnWrite);
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, OnRead);
    static_assert(std::is_same_v<curl_socket_t, int>, "OnCloseSocket takes a POSIX descriptor");
    curl_easy_setopt(curl, CURLOPT_CLOSESOCKETFUNCTION, &FtpSession::OnCloseSocket);
    curl_easy_setopt(curl, CURLOPT_SOCKOPTFUNCTION, &FtpSession::OnSocketOpened);
    curl_easy_setopt(curl, CURLOPT_SOCKOPTDATA, this);
    curl_opensocket_callback open = [](void* data, curlsocktype purpose, curl_sockaddr* address) -> curl_socket_t {
        auto* session = static_cast<FtpSession*>(data);
        const int fd = ::socket(address->family, address->socktype, address->protocol);
        const auto* peer = reinterpret_cast<const sockaddr*>(&address->addr);
        const in_port_t peerPort = peer->sa_family == AF_INET6 ? reinterpret_cast<const sockaddr_in6*>(peer)->sin6_port
                                                               : reinterpret_cast<const sockaddr_in*>(peer)->sin_port;
        if (fd >= 0 && purpose == CURLSOCKTYPE_IPCXN && ntohs(peerPort) == session->m_iPort) {
            session->m_iConnectingFd = fd;
            session->m_tcpDeadline = QDeadlineTimer(session->m_settings.connectTimeoutMs);
            session->m_bNewLogin = true;
            std::lock_guard<std::mutex> lock(ControlSocketsMutex());
            ControlSockets().insert(fd, 0);
        }
        return fd;
    };
    curl_easy_setopt(curl, CURLOPT_OPENSOCKETFUNCTION, open);
    curl_easy_setopt(curl, CURLOPT_OPENSOCKETDATA, this);
    curl_easy_setopt(curl, CURLOPT_PREREQFUNCTION, &FtpSession::OnPrerequest);
    curl_easy_setopt(curl, CURLOPT_PREREQDATA, this);
}

FtpSession::~FtpSession()
{
    // Every step removes the easy handle from the multi, so the multi goes back empty.
    if (m_multi.handle)
        GiveBackMulti(m_multi);
    if (m_pCurl)
        curl_easy_cleanup(static_cast<CURL*>(m_pCurl));
    curl_slist_free_all(static_cast<curl_slist*>(m_pStepQuote));
}

void FtpSession::SetStepQuote(const QList<QByteArray>& commands)
{
    curl_slist* quote = nullptr;
    for (const QByteArray& command : commands)
        quote = curl_slist_append(quote, command.constData());
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_QUOTE, quote);
    curl_slist_free_all(static_cast<curl_slist*>(m_pStepQuote));
    m_pStepQuote = quote;
}

int FtpSession::OnPrerequest(void* data, char*, char*, int remotePort, int localPort)
{
    auto* session = static_cast<FtpSession*>(data);
    CURL* curl = static_cast<CURL*>(session->m_pCurl);
    if (session->m_bNewLogin) {
        // Every new login is greeted once, before the step's own commands; a cached one never again.
        session->SetStepQuote(session->GreetingCommands() + session->m_listStepQuote);
        session->m_bGreetedLogin = true;
        return CURL_PREREQFUNC_OK;
    }
    // libcurl counts the response time-out from the last command sent, so a login cached for longer
    // would time out at once in the log-in step, which sends nothing on it: that step's overall
    // bound holds instead.
    if (session->m_bLoginStep)
        curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, kIdleLoginSeconds);
    // A cached login with something unread on it holds an idle time-out's 421 or has been closed:
    // the step goes again on a new connection. Servers say nothing unasked otherwise.
    std::lock_guard<std::mutex> lock(ControlSocketsMutex());
    QHash<int, int>& sockets = ControlSockets();
    for (auto it = sockets.begin(); it != sockets.end(); ++it) {
        const int fd = it.key();
        if (it.value() == 0) {
            sockaddr_storage local{};
            socklen_t localLength = sizeof(local);
            if (getsockname(fd, reinterpret_cast<sockaddr*>(&local), &localLength) == 0)
                it.value() = PortOf(local);
        }
        sockaddr_storage peer{};
        socklen_t peerLength = sizeof(peer);
        if (it.value() != localPort || getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &peerLength) != 0 ||
            PortOf(peer) != remotePort)
            continue;
        pollfd unread{fd, POLLIN, 0};
        if (poll(&unread, 1, 0) > 0) {
            session->m_bStaleLogin = true;
            curl_easy_setopt(curl, CURLOPT_FORBID_REUSE, 1L);
            return CURL_PREREQFUNC_ABORT;
        }
        break;
    }
    return CURL_PREREQFUNC_OK;
}

int FtpSession::OnSocketOpened(void* session, int descriptor, int)
{
    static_cast<FtpSession*>(session)->m_iLastOpenedSocket = descriptor;
    setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
    return CURL_SOCKOPT_OK;
}

int FtpSession::OnCloseSocket(void*, int descriptor)
{
    {
        std::lock_guard<std::mutex> lock(ControlSocketsMutex());
        ControlSockets().remove(descriptor);
    }
    if (t_pPerformingSession && t_pPerformingSession->m_iConnectingFd == descriptor)
        t_pPerformingSession->m_iConnectingFd = -1;
    if (t_pPerformingSession)
        t_pPerformingSession->SalvageReply(descriptor);
    return ::close(descriptor);
}

void FtpSession::SalvageReply(int fd)
{
    // Only a connection that fails during a step can hold an unread reply; data connections go to
    // another port than the control connection.
    sockaddr_storage peer{};
    socklen_t length = sizeof(peer);
    if (getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &length) != 0)
        return;
    const in_port_t port = peer.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6*>(&peer)->sin6_port
                                                      : reinterpret_cast<sockaddr_in*>(&peer)->sin_port;
    if (ntohs(port) != m_iPort)
        return;
    pollfd waitFor{fd, POLLIN, 0};
    if (poll(&waitFor, 1, kSalvageWaitMs) <= 0)
        return;
    QByteArray unread;
    char chunk[1024];
    ssize_t got;
    while (unread.size() < 8 * 1024 && (got = recv(fd, chunk, sizeof(chunk), MSG_DONTWAIT)) > 0)
        unread.append(chunk, got);
    for (const QByteArray& line : unread.split('\n')) {
        const QByteArray reply = line.trimmed();
        if (reply.size() >= 3 && std::isdigit(uchar(reply[0])))
            m_listReplies.append(reply);
    }
}

QByteArray FtpSession::UrlFor(const QString& remotePath) const
{
    const QString path = remotePath.startsWith(QLatin1Char('/')) ? remotePath : QLatin1Char('/') + remotePath;
    const QString host =
        m_strHost.contains(QLatin1Char(':')) ? QLatin1Char('[') + m_strHost + QLatin1Char(']') : m_strHost;
    return "ftp://" + QUrl::toAce(host) + ':' + QByteArray::number(m_iPort) + ToWire(path).toPercentEncoding("/");
}

bool FtpSession::LooksLikeUtf8(const QByteArray& bytes)
{
    if (std::all_of(bytes.cbegin(), bytes.cend(), [](char c) { return uchar(c) < 0x80; }))
        return false;
    QStringDecoder utf8(QStringDecoder::Utf8);
    (void)QString(utf8(bytes));
    return !utf8.hasError();
}

bool FtpSession::IsUtf8() const
{
    return m_settings.nameEncoding.compare("UTF-8", Qt::CaseInsensitive) == 0;
}

QByteArray FtpSession::ToWire(const QString& text) const
{
    if (IsUtf8())
        return text.toUtf8();
    QStringEncoder encoder(m_settings.nameEncoding.constData());
    return encoder.isValid() ? QByteArray(encoder(text)) : text.toUtf8();
}

void FtpSession::Reset(const QByteArray& url, void* transfer)
{
    static_cast<Transfer*>(transfer)->curl = m_pCurl;
    static_cast<Transfer*>(transfer)->lastSocket = &m_iLastOpenedSocket;
    m_iLastOpenedSocket = -1;
    CURL* curl = static_cast<CURL*>(m_pCurl);
    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_NOBODY, 0L);
    curl_easy_setopt(curl, CURLOPT_UPLOAD, 0L);
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, nullptr);
    SetStepQuote({});
    m_listStepQuote.clear();
    curl_easy_setopt(curl, CURLOPT_POSTQUOTE, nullptr);
    curl_easy_setopt(curl, CURLOPT_INFILESIZE_LARGE, curl_off_t(-1));
    curl_easy_setopt(curl, CURLOPT_IGNORE_CONTENT_LENGTH, 0L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, 0L);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, transfer);
    curl_easy_setopt(curl, CURLOPT_READDATA, transfer);
    curl_easy_setopt(curl, CURLOPT_XFERINFODATA, transfer);
}

bool FtpSession::Perform(const QString& action)
{
    if (!m_pCurl)
        return Fail(QCoreApplication::translate("FtpTask", "无法初始化FTP连接"));
    CURL* curl = static_cast<CURL*>(m_pCurl);
    CURLcode code = CURLE_OK;
    bool bFreshTried = false;
    bool bActiveTried = false;
    m_bOutcomeUnknown = false;
    m_bPassiveRefused = false;
    for (int attempt = 0;; ++attempt) {
        m_listReplies.clear();
        m_errorBuffer.fill('\0');
        code = CURLcode(RunStep());
        curl_easy_setopt(curl, CURLOPT_FRESH_CONNECT, 0L);
        long connects = 0;
        curl_easy_getinfo(curl, CURLINFO_NUM_CONNECTS, &connects);
        m_bReused = connects == 0;
        m_lastRefusal.clear();
        for (auto it = m_listReplies.crbegin(); it != m_listReplies.crend(); ++it) {
            if (it->size() >= 3 && (it->at(0) == '4' || it->at(0) == '5')) {
                m_lastRefusal = *it;
                break;
            }
        }
        if (code == CURLE_OK && m_bGreetedLogin)
            LearnFeatures();
        if (code == CURLE_OK || (m_stopCheck && m_stopCheck()))
            break;
        // A cached login the machine has dropped: the 421 of its idle time-out still unread, or a reset
        // (power cycle) before any answer. Nothing ran; once more on a new connection.
        const bool bStale = m_bStaleLogin || (!m_listReplies.isEmpty() && m_listReplies.constFirst().startsWith("421"));
        const bool bLostUnanswered = m_listReplies.isEmpty() && IsConnectionLost(code) && m_bStepRepeatable;
        if (m_bReused && !bFreshTried && (bStale || bLostUnanswered)) {
            bFreshTried = true;
            curl_easy_setopt(curl, CURLOPT_FRESH_CONNECT, 1L);
            continue;
        }
        // libcurl drops the connection after a refused command; a controller with one login slot turns
        // the reconnection away until it has seen the old one go. Nothing ran: try again shortly.
        const bool bLoginRefused = IsLoginLimitReply(m_lastRefusal) || code == CURLE_LOGIN_DENIED;
        if (m_bConnected && !m_bReused && bLoginRefused && attempt < kReconnectAttempts) {
            QThread::msleep(kReconnectWaitMs << attempt);
            continue;
        }
        // EPSV and PASV refused: the machine may still connect back to us (active mode), once.
        if (code == CURLE_FTP_WEIRD_PASV_REPLY && m_lastRefusal.startsWith('5')) {
            m_bPassiveRefused = true;
            if (!bActiveTried && !m_bActive && UseActiveMode()) {
                CDebugLog::AddLog(
                    QStringLiteral("FTP %1:%2 passive mode refused; trying active mode").arg(m_strHost).arg(m_iPort));
                bActiveTried = true;
                continue;
            }
        }
        break;
    }
    m_iLastCode = code;
    if (code == CURLE_OK) {
        if (bActiveTried) {
            std::lock_guard<std::mutex> lock(ActiveModeMutex());
            ActiveModeMachines().insert(MachineKey());
        }
        return true;
    }
    if (m_stopCheck && m_stopCheck()) {
        m_bStopped = true;
        return Fail(QCoreApplication::translate("FtpTask", "%1已停止").arg(action));
    }
    m_bOutcomeUnknown = IsConnectionLost(code) && !m_bStepRepeatable;
    CDebugLog::AddLog(QStringLiteral("FTP %1 %2:%3 failed: curl %4 %5 %6 last reply \"%7\"%8")
                          .arg(action, m_strHost)
                          .arg(m_iPort)
                          .arg(int(code))
                          .arg(QString::fromUtf8(curl_easy_strerror(code)),
                               QString::fromUtf8(m_errorBuffer.constData()), QString::fromUtf8(m_lastRefusal))
                          .arg(m_bReused ? QStringLiteral(" (cached connection)") : QString()));
    QString reason = ReasonFromReply(m_lastRefusal);
    if (m_bPassiveRefused)
        reason = bActiveTried ? QCoreApplication::translate("FtpTask", "机床拒绝了被动模式，主动模式也未成功")
                              : QCoreApplication::translate("FtpTask", "机床拒绝了被动模式");
    else if (m_bOutcomeUnknown)
        reason = QCoreApplication::translate("FtpTask", "机床回复之前连接已中断，结果未知");
    const QString step = m_listStepCommands.isEmpty() ? action : FailedCommand();
    QString message =
        QCoreApplication::translate("FtpTask", "%1失败：%2").arg(step, reason.isEmpty() ? Reason(code) : reason);
    if (!m_lastRefusal.isEmpty())
        message += QCoreApplication::translate("FtpTask", "（服务器回复：%1）").arg(QString::fromUtf8(m_lastRefusal));
    if (code == CURLE_COULDNT_CONNECT || code == CURLE_OPERATION_TIMEDOUT)
        message += QStringLiteral("（%1:%2）").arg(m_strHost).arg(m_iPort);
    return Fail(message);
}

bool FtpSession::UseActiveMode()
{
    char* local = nullptr;
    curl_easy_getinfo(static_cast<CURL*>(m_pCurl), CURLINFO_LOCAL_IP, &local);
    if (!local || !*local)
        return false;
    // The control connection's own address, never another: where the machine connects back to.
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_FTPPORT, local);
    m_bActive = true;
    return true;
}

QString FtpSession::FailedCommand() const
{
    // Each RNFR answered 350 let the next command go; the step failed at the first one not passed.
    int accepted = 0;
    for (const QByteArray& reply : m_listReplies)
        accepted += reply.startsWith("350") ? 1 : 0;
    for (int i = 0; i < m_listStepCommands.size(); ++i) {
        QString verb = m_listStepCommands.at(i).section(QLatin1Char(' '), 0, 0);
        verb.remove(QLatin1Char('*'));
        if (i + 1 == m_listStepCommands.size() || verb.compare(QLatin1String("RNFR"), Qt::CaseInsensitive) != 0 ||
            accepted-- <= 0)
            return verb;
    }
    return QString();
}

int FtpSession::RunStep()
{
    CURLM* multi = static_cast<CURLM*>(m_multi.handle);
    CURL* curl = static_cast<CURL*>(m_pCurl);
    if (!multi)
        return curl_easy_perform(curl);
    m_bNewLogin = false;
    m_bGreetedLogin = false;
    m_bStaleLogin = false;
    if (curl_multi_add_handle(multi, curl) != CURLM_OK)
        return CURLE_FAILED_INIT;
    t_pPerformingSession = this;
    int running = 1;
    CURLcode result = CURLE_OK;
    while (running > 0) {
        if (curl_multi_perform(multi, &running) != CURLM_OK) {
            result = CURLE_FAILED_INIT;
            break;
        }
        if (running == 0)
            break;
        if (m_iConnectingFd >= 0) {
            sockaddr_storage peer{};
            socklen_t length = sizeof(peer);
            if (getpeername(m_iConnectingFd, reinterpret_cast<sockaddr*>(&peer), &length) == 0) {
                m_iConnectingFd = -1;
            } else if (m_tcpDeadline.hasExpired()) {
                result = CURLE_OPERATION_TIMEDOUT;
                break;
            }
        }
        // A stop request must not wait for a silent server: it ends the step at the next wake-up.
        if (m_stopCheck && m_stopCheck()) {
            result = CURLE_ABORTED_BY_CALLBACK;
            // Nobody may reuse a connection left in the middle of an exchange.
            curl_easy_setopt(curl, CURLOPT_FORBID_REUSE, 1L);
            break;
        }
        // libcurl 7.88 can leave a step due with no socket to wait on (after the EPSV or PASV reply,
        // before it connects the data connection); curl_easy_perform then sleeps a whole second.
        // With no socket named, look again after a millisecond.
        fd_set readSet, writeSet, errorSet;
        FD_ZERO(&readSet);
        FD_ZERO(&writeSet);
        FD_ZERO(&errorSet);
        int maxFd = -1;
        curl_multi_fdset(multi, &readSet, &writeSet, &errorSet, &maxFd);
        long timeoutMs = -1;
        curl_multi_timeout(multi, &timeoutMs);
        if (maxFd < 0 || timeoutMs < 0 || timeoutMs > kStopPollMs)
            timeoutMs = maxFd < 0 ? 1 : kStopPollMs;
        curl_multi_poll(multi, nullptr, 0, int(timeoutMs), nullptr);
    }
    int queued = 0;
    while (CURLMsg* message = curl_multi_info_read(multi, &queued)) {
        if (message->msg == CURLMSG_DONE && message->easy_handle == curl)
            result = message->data.result;
    }
    curl_multi_remove_handle(multi, curl);
    curl_easy_setopt(curl, CURLOPT_FORBID_REUSE, 0L);
    // Another attempt of the step sends its own commands again, without the greeting.
    if (m_bGreetedLogin)
        SetStepQuote(m_listStepQuote);
    t_pPerformingSession = nullptr;
    m_iConnectingFd = -1;
    return result;
}

bool FtpSession::Fail(const QString& message)
{
    m_strError = message;
    return false;
}

QList<QByteArray> FtpSession::WireCommands(const QStringList& commands) const
{
    QList<QByteArray> wire;
    for (const QString& command : commands)
        wire.append(ToWire(command));
    return wire;
}

bool FtpSession::SizeReplied(qint64* size) const
{
    for (const QByteArray& reply : m_listReplies) {
        bool bOk = false;
        const qint64 value = reply.startsWith("213 ") ? reply.mid(4).trimmed().toLongLong(&bOk) : -1;
        if (bOk) {
            *size = value;
            return true;
        }
    }
    return false;
}

void FtpSession::FinishDespiteStop()
{
    m_stopCheck = {};
}

bool FtpSession::Connect(const QString& folder)
{
    Transfer transfer{&m_stopCheck};
    const QByteArray url = UrlFor(folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/'));
    Reset(url, &transfer);
    CURL* curl = static_cast<CURL*>(m_pCurl);
    // A cached login costs nothing here: no command goes out, and the pre-request check finds one
    // that the machine has dropped meanwhile. A new one is greeted (OnPrerequest).
    curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, long(m_settings.connectTimeoutMs + m_settings.responseTimeoutMs));
    const QString credentials = m_settings.user + QLatin1Char('\n') + m_settings.password;
    FtpSessionBudget& budget = FtpSessionBudget::Instance();
    m_bLoginStep = true;
    const bool bLoggedIn = Perform(QCoreApplication::translate("FtpTask", "连接FTP服务器"));
    m_bLoginStep = false;
    curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, ResponseSeconds(m_settings));
    if (!bLoggedIn) {
        // A 530 right after the same credentials worked is the machine being full, whatever it says.
        m_bLoginRefusedAsBusy =
            !m_bReused && (IsLoginLimitReply(m_lastRefusal) ||
                           (m_lastRefusal.startsWith("530") && budget.AcceptedLately(m_strHost, credentials)));
        if (m_bLoginRefusedAsBusy || m_iLastCode != CURLE_REMOTE_ACCESS_DENIED || folder == QLatin1String("/"))
            return false;
        return Connect();
    }
    budget.NoteAccepted(m_strHost, credentials);
    {
        std::lock_guard<std::mutex> lock(ActiveModeMutex());
        if (ActiveModeMachines().contains(MachineKey()))
            UseActiveMode();
    }
    bool bKnown = false;
    {
        std::lock_guard<std::mutex> lock(FeaturesMutex());
        const auto known = MachineFeatures().constFind(MachineKey());
        bKnown = known != MachineFeatures().constEnd();
        m_bMlsd = bKnown && known->bMlsd;
        m_bSize = bKnown && known->bSize;
    }
    // A login greeted before this process remembered its machine: ask once more.
    if (!bKnown && !Greet())
        return false;
    m_bConnected = true;
    StayIn(url);
    return true;
}

QList<QByteArray> FtpSession::GreetingCommands() const
{
    // A leading "*" lets a server without FEAT (or without UTF-8) still be used. A machine set to
    // GBK or Shift-JIS keeps its own encoding even when it offers UTF-8.
    QList<QByteArray> greeting{QByteArrayLiteral("*FEAT")};
    if (IsUtf8())
        greeting.append(QByteArrayLiteral("*OPTS UTF8 ON"));
    return greeting;
}

bool FtpSession::Greet()
{
    // Same URL as the log-in step: no walk to another folder.
    SetStepQuote(GreetingCommands());
    if (!Perform(QCoreApplication::translate("FtpTask", "连接FTP服务器")))
        return false;
    LearnFeatures();
    return true;
}

void FtpSession::LearnFeatures()
{
    Features features;
    for (const QByteArray& reply : std::as_const(m_listReplies)) {
        // Feature lines are indented; MLST implies MLSD (some servers list only MLST).
        const QByteArray feature = reply.split(' ').value(0).toUpper();
        features.bMlsd = features.bMlsd || feature == "MLST" || feature == "MLSD";
        features.bSize = features.bSize || feature == "SIZE";
    }
    m_bMlsd = features.bMlsd;
    m_bSize = features.bSize;
    std::lock_guard<std::mutex> lock(FeaturesMutex());
    MachineFeatures().insert(MachineKey(), features);
}

void FtpSession::StayIn(const QByteArray& url)
{
    m_lastFolderUrl = url.left(url.lastIndexOf('/') + 1);
}

QString FtpSession::MachineKey() const
{
    return m_strHost + QLatin1Char(':') + QString::number(m_iPort);
}

bool FtpSession::ListDirectory(const QString& dirPath, QList<FtpFileInfo>* entries)
{
    return ListWith(dirPath, m_bMlsd ? QByteArrayLiteral("MLSD") : QByteArrayLiteral("LIST"), entries);
}

bool FtpSession::ListWith(const QString& dirPath, const QByteArray& request, QList<FtpFileInfo>* entries)
{
    if (HasControlCharacters(dirPath) || request.contains('\r') || request.contains('\n'))
        return Fail(QCoreApplication::translate("FtpTask", "路径含有非法字符：%1").arg(dirPath));
    QByteArray listing;
    Transfer transfer{&m_stopCheck};
    transfer.buffer = &listing;
    const QString path = dirPath.endsWith(QLatin1Char('/')) ? dirPath : dirPath + QLatin1Char('/');
    Reset(UrlFor(path), &transfer);
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_CUSTOMREQUEST, request.constData());
    if (!Perform(QCoreApplication::translate("FtpTask", "获取文件列表")))
        return false;
    QStringDecoder decoder(IsUtf8() ? "UTF-8" : m_settings.nameEncoding.constData());
    const QString text = decoder.isValid() ? QString(decoder(listing)) : QString::fromUtf8(listing);
    // Names that are not UTF-8 would show as garbage: the machine's encoding setting is wrong.
    if (decoder.hasError())
        return Fail(
            QCoreApplication::translate(
                "FtpTask", "机床返回的文件名不是%1编码，请在“新建连接”中为该机床选择文件名编码（如GBK或Shift-JIS）")
                .arg(QString::fromLatin1(m_settings.nameEncoding)));
    // UTF-8 names decode as some other encoding too, only garbled; non-ASCII bytes that are
    // well-formed UTF-8 are next to never text of another encoding.
    if (!IsUtf8() && LooksLikeUtf8(listing))
        return Fail(QCoreApplication::translate(
                        "FtpTask", "机床返回的文件名是UTF-8编码，与所选的%1不符，请在“新建连接”中为该机床选择UTF-8")
                        .arg(QString::fromLatin1(m_settings.nameEncoding)));
    *entries = FtpListingParser().Parse(text);
    return true;
}

bool FtpSession::Command(const QStringList& commands)
{
    if (RunCommands(commands))
        return true;
    if (!m_bOutcomeUnknown)
        return false;
    // The connection broke before a DELE or RNTO was answered: the folder tells whether it ran, and
    // one that did not run is safe to send again. Anything else stays unknown to the user.
    const QString unknown = m_strError;
    const QString verb = commands.value(0).section(QLatin1Char(' '), 0, 0).toUpper();
    const QString first = commands.value(0).section(QLatin1Char(' '), 1);
    bool bFirst = false;
    bool bSecond = false;
    if (commands.size() == 1 && verb == QLatin1String("DELE") && Exists(first, &bFirst))
        return bFirst ? RunCommands(commands) : true;
    if (commands.size() == 2 && verb == QLatin1String("RNFR") && Exists(first, &bFirst) &&
        Exists(commands.at(1).section(QLatin1Char(' '), 1), &bSecond)) {
        if (!bFirst && bSecond)
            return true;
        if (bFirst && !bSecond)
            return RunCommands(commands);
    }
    return Fail(unknown);
}

bool FtpSession::Exists(const QString& path, bool* exists)
{
    const int cut = path.lastIndexOf(QLatin1Char('/'));
    QList<FtpFileInfo> entries;
    if (!ListDirectory(cut <= 0 ? QStringLiteral("/") : path.left(cut), &entries))
        return false;
    const QString name = path.mid(cut + 1);
    *exists = std::any_of(entries.cbegin(), entries.cend(), [&name](const FtpFileInfo& e) { return e.name == name; });
    return true;
}

bool FtpSession::RunCommands(const QStringList& commands)
{
    m_bOutcomeUnknown = false;
    for (const QString& command : commands) {
        if (HasControlCharacters(command))
            return Fail(QCoreApplication::translate("FtpTask", "路径含有非法字符：%1").arg(command));
    }
    Transfer transfer{&m_stopCheck};
    // The commands name absolute paths: they run in the folder of the step before, without a CWD.
    const QByteArray folder = m_lastFolderUrl.isEmpty() ? UrlFor(QStringLiteral("/")) : m_lastFolderUrl;
    Reset(folder, &transfer);
    m_listStepQuote = WireCommands(commands);
    SetStepQuote(m_listStepQuote);
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_NOBODY, 1L);
    m_listStepCommands = commands;
    m_bStepRepeatable = !ChangesMachine(commands.value(0));
    const bool bOk = Perform(commands.value(0).section(QLatin1Char(' '), 0, 0));
    m_listStepCommands.clear();
    m_bStepRepeatable = true;
    return bOk;
}

bool FtpSession::Upload(QIODevice* source, qint64 size, const QString& remotePath, const ProgressFn& progress,
                        const QStringList& afterCommands)
{
    for (const QString& command : afterCommands) {
        if (HasControlCharacters(command))
            return Fail(QCoreApplication::translate("FtpTask", "路径含有非法字符：%1").arg(command));
    }
    Transfer transfer{&m_stopCheck, &progress, source};
    transfer.bUpload = true;
    const QByteArray url = UrlFor(remotePath);
    Reset(url, &transfer);
    QuoteList after(WireCommands(afterCommands));
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_POSTQUOTE, after.get());
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_UPLOAD, 1L);
    // Uploads from the account side go to a folder that a new machine does not have yet.
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_FTP_CREATE_MISSING_DIRS, long(CURLFTP_CREATE_DIR));
    curl_easy_setopt(static_cast<CURL*>(m_pCurl), CURLOPT_INFILESIZE_LARGE, curl_off_t(size));
    const bool bOk = Perform(QCoreApplication::translate("FtpTask", "上传文件"));
    if (!bOk && transfer.bDeviceFailed)
        return Fail(QCoreApplication::translate("FtpTask", "读取本地文件失败：%1").arg(source->errorString()));
    if (bOk)
        StayIn(url);
    return bOk;
}

bool FtpSession::Download(const QString& remotePath, QIODevice* sink, const ProgressFn& progress, qint64 listedSize)
{
    Transfer transfer{&m_stopCheck, &progress, sink};
    const QByteArray url = UrlFor(remotePath);
    Reset(url, &transfer);
    // libcurl asks SIZE before RETR so that a data connection closed early reads as a partial file.
    // With the listing's size that wait is saved and the count is checked here instead.
    CURL* curl = static_cast<CURL*>(m_pCurl);
    if (listedSize >= 0)
        curl_easy_setopt(curl, CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
    const bool bOk = Perform(QCoreApplication::translate("FtpTask", "下载文件"));
    if (!bOk && transfer.bDeviceFailed)
        return Fail(QCoreApplication::translate("FtpTask", "写入本地文件失败：%1").arg(sink->errorString()));
    if (!bOk)
        return false;
    StayIn(url);
    if (listedSize < 0)
        return true;
    curl_off_t received = 0;
    curl_easy_getinfo(curl, CURLINFO_SIZE_DOWNLOAD_T, &received);
    if (received == listedSize)
        return true;
    // The listing may be older than the file: only the machine's size now settles a difference.
    qint64 machineSize = -1;
    if (!RemoteSize(remotePath, &machineSize))
        return Fail(QCoreApplication::translate("FtpTask", "无法确认下载是否完整：%1").arg(ErrorMessage()));
    if (machineSize == qint64(received))
        return true;
    return Fail(QCoreApplication::translate("FtpTask", "只收到%1字节，机床上的文件为%2字节（虽然机床回复传输完成）")
                    .arg(qint64(received))
                    .arg(machineSize));
}

bool FtpSession::RemoteSize(const QString& filePath, qint64* size)
{
    // "*": a refusal is read from the replies instead of failing the step.
    if (m_bSize) {
        if (!Command({QStringLiteral("*SIZE ") + filePath}))
            return false;
        if (SizeReplied(size))
            return true;
    }
    if (m_bMlsd) {
        if (!Command({QStringLiteral("*MLST ") + filePath}))
            return false;
        if (SizeFact(m_listReplies, size))
            return true;
    }
    const int cut = filePath.lastIndexOf(QLatin1Char('/'));
    const QString folder = cut <= 0 ? QStringLiteral("/") : filePath.left(cut);
    const QString name = filePath.mid(cut + 1);
    const auto find = [&name, size](const QList<FtpFileInfo>& entries) {
        for (const FtpFileInfo& entry : entries) {
            // Some servers name a listed file by the path it was asked for.
            if (!entry.isDir() && (entry.name == name || entry.name.endsWith(QLatin1Char('/') + name))) {
                *size = entry.size;
                return true;
            }
        }
        return false;
    };
    // Named on its own, a file shows even where folder listings hide dot-files.
    QList<FtpFileInfo> entries;
    if (ListWith(folder, "LIST " + ToWire(name), &entries) && find(entries))
        return true;
    if (ListDirectory(folder, &entries) && find(entries))
        return true;
    return Fail(QCoreApplication::translate("FtpTask", "机床上找不到刚上传的文件：%1").arg(filePath));
}

bool FtpSession::RemoveTree(const QString& dirPath)
{
    QList<FtpFileInfo> entries;
    if (!ListDirectory(dirPath, &entries))
        return false;
    for (const FtpFileInfo& entry : std::as_const(entries)) {
        const QString path = JoinPath(dirPath, entry.name);
        const bool bOk = entry.isDir() ? RemoveTree(path) : Command({QStringLiteral("DELE ") + path});
        if (!bOk)
            return false;
    }
    return Command({QStringLiteral("RMD ") + dirPath});
}
