#include "SimFtpSession.h"

#include "SimFtpDataChannel.h"
#include "SimFtpListing.h"
#include "SimFtpServer.h"
#include "SimOptions.h"

#include <QBuffer>
#include <QByteArrayList>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTcpSocket>
#include <memory>
#include <sys/socket.h>

namespace {
constexpr int kMaxLine = 4096;
constexpr int kCloseGraceMs = 5000;

enum ListingKind
{
    ListLong,
    ListNames,
    ListFacts
};

QString quoted(const QString& path)
{
    QString text = path;
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}
} // namespace

const QHash<QByteArray, SimFtpSession::Handler>& SimFtpSession::Handlers()
{
    static const QHash<QByteArray, Handler> handlers = {
        {"USER", &SimFtpSession::CmdUser}, {"PASS", &SimFtpSession::CmdPass}, {"PWD", &SimFtpSession::CmdPwd},
        {"XPWD", &SimFtpSession::CmdPwd},  {"CWD", &SimFtpSession::CmdCwd},   {"XCWD", &SimFtpSession::CmdCwd},
        {"CDUP", &SimFtpSession::CmdCdup}, {"XCUP", &SimFtpSession::CmdCdup}, {"TYPE", &SimFtpSession::CmdType},
        {"MODE", &SimFtpSession::CmdMode}, {"STRU", &SimFtpSession::CmdStru}, {"PASV", &SimFtpSession::CmdPasv},
        {"EPSV", &SimFtpSession::CmdEpsv}, {"PORT", &SimFtpSession::CmdPort}, {"EPRT", &SimFtpSession::CmdPort},
        {"LIST", &SimFtpSession::CmdList}, {"NLST", &SimFtpSession::CmdNlst}, {"MLSD", &SimFtpSession::CmdMlsd},
        {"MLST", &SimFtpSession::CmdMlst}, {"RETR", &SimFtpSession::CmdRetr}, {"STOR", &SimFtpSession::CmdStor},
        {"APPE", &SimFtpSession::CmdAppe}, {"REST", &SimFtpSession::CmdRest}, {"SIZE", &SimFtpSession::CmdSize},
        {"MDTM", &SimFtpSession::CmdMdtm}, {"DELE", &SimFtpSession::CmdDele}, {"MKD", &SimFtpSession::CmdMkd},
        {"XMKD", &SimFtpSession::CmdMkd},  {"RMD", &SimFtpSession::CmdRmd},   {"XRMD", &SimFtpSession::CmdRmd},
        {"RNFR", &SimFtpSession::CmdRnfr}, {"RNTO", &SimFtpSession::CmdRnto}, {"FEAT", &SimFtpSession::CmdFeat},
        {"OPTS", &SimFtpSession::CmdOpts}, {"SYST", &SimFtpSession::CmdSyst}, {"NOOP", &SimFtpSession::CmdNoop},
        {"ALLO", &SimFtpSession::CmdAllo}, {"QUIT", &SimFtpSession::CmdQuit}, {"ABOR", &SimFtpSession::CmdAbor},
        {"AUTH", &SimFtpSession::CmdAuth},
    };
    return handlers;
}

SimFtpSession::SimFtpSession(QTcpSocket* socket, const SimOptions& options, QObject* parent)
    : QObject(parent), m_pSocket(socket), m_options(options), m_jail(options.rootDir)
{
    socket->setParent(this);
    // Without it a reply written while the previous one is unacknowledged (150 then 226) waits for
    // the client's delayed ACK, about 40 ms on every transfer.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &SimFtpSession::SlotReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &SimFtpSession::Close);
    m_idleTimer.setSingleShot(true);
    m_idleTimer.setInterval(int(options.idleTimeoutSeconds * 1000));
    connect(&m_idleTimer, &QTimer::timeout, this, &SimFtpSession::SlotIdle);
    m_idleTimer.start();
    m_forgetTimer.setSingleShot(true);
    if (options.resetIdleSeconds > 0) {
        m_forgetTimer.setInterval(int(options.resetIdleSeconds * 1000));
        connect(&m_forgetTimer, &QTimer::timeout, this, [this] { m_bForgotten = true; });
        m_forgetTimer.start();
    }
    m_latencyTimer.setSingleShot(true);
    connect(&m_latencyTimer, &QTimer::timeout, this, &SimFtpSession::ProcessLines);
    if (options.greetingDelayMs > 0)
        QTimer::singleShot(options.greetingDelayMs, this, [this] { Reply(220, QStringLiteral("cnc-sim FTP ready.")); });
    else
        Reply(220, QStringLiteral("cnc-sim FTP ready."));
}

void SimFtpSession::SlotIdle()
{
    Reply(421, QStringLiteral("Control connection timed out."));
    if (m_options.staleIdle421)
        m_bStale = true;
    else
        Close();
}

void SimFtpSession::SlotReadyRead()
{
    if (m_bForgotten) {
        Reset();
        return;
    }
    if (m_bStale) {
        m_pSocket->readAll();
        Close();
        return;
    }
    m_buffer += m_pSocket->readAll();
    ProcessLines();
}

void SimFtpSession::Reset()
{
    const linger hard{1, 0};
    setsockopt(int(m_pSocket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard, sizeof(hard));
    m_pSocket->abort();
    Close();
}

void SimFtpSession::ProcessLines()
{
    int end;
    while ((end = m_buffer.indexOf('\n')) >= 0) {
        QByteArray line = m_buffer.left(end);
        m_buffer.remove(0, end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        m_listPending.append({line, QDeadlineTimer(m_options.ftpLatencyMs)});
    }
    if (m_buffer.size() > kMaxLine) {
        Reply(500, QStringLiteral("Line too long."));
        Close();
        return;
    }
    // Commands wait while a transfer runs, except ABOR which must reach it.
    while (!m_listPending.isEmpty() && !m_bClosing) {
        const PendingLine& next = m_listPending.first();
        if (m_bBusy && !next.line.toUpper().startsWith("ABOR"))
            return;
        if (!next.due.hasExpired()) {
            m_latencyTimer.start(int(next.due.remainingTime()));
            return;
        }
        Dispatch(m_listPending.takeFirst().line);
    }
}

bool SimFtpSession::IsRefused(const QString& verb, const QString& argument) const
{
    for (const QString& rule : m_options.ftpRefused) {
        const int colon = rule.indexOf(QLatin1Char(':'));
        if (colon < 0 ? rule == verb : (rule.left(colon) == verb && argument.contains(rule.mid(colon + 1))))
            return true;
    }
    return false;
}

void SimFtpSession::Dispatch(const QByteArray& line)
{
    m_idleTimer.start();
    if (m_forgetTimer.interval() > 0)
        m_forgetTimer.start();
    const int space = line.indexOf(' ');
    const QByteArray verb = (space < 0 ? line : line.left(space)).toUpper();
    const QString argument = space < 0 ? QString() : FromWire(line.mid(space + 1));
    if (verb.isEmpty())
        return;
    const auto handler = Handlers().constFind(verb);
    // Unknown verbs are pooled so that a client cannot grow the table without bound.
    if (auto* server = qobject_cast<SimFtpServer*>(parent()))
        server->CountCommand(handler == Handlers().constEnd() ? QByteArrayLiteral("OTHER") : verb);
    if (IsRefused(QString::fromLatin1(verb), argument)) {
        Reply(550, QStringLiteral("Command refused."));
        return;
    }
    if (handler == Handlers().constEnd()) {
        Reply(502, QStringLiteral("Command not implemented."));
        return;
    }
    static const QByteArrayList beforeLogin = {"USER", "PASS", "QUIT", "FEAT", "SYST", "NOOP", "OPTS", "AUTH"};
    if (!m_bLoggedIn && !beforeLogin.contains(verb)) {
        Reply(530, QStringLiteral("Please login with USER and PASS."));
        return;
    }
    if (verb != "RNTO" && verb != "RNFR")
        m_strRenameFrom.clear();
    (this->*handler.value())(argument);
    if (verb != "REST" && verb != "RETR" && verb != "STOR" && verb != "APPE")
        m_nRestOffset = 0;
}

void SimFtpSession::Reply(int code, const QString& text)
{
    ReplyRaw(QByteArray::number(code) + ' ' + ToWire(text) + "\r\n");
}

void SimFtpSession::ReplyRaw(const QByteArray& text)
{
    if (m_pSocket && m_pSocket->state() == QAbstractSocket::ConnectedState) {
        m_pSocket->write(text);
        m_pSocket->flush(); // on the wire before whatever the caller does next to the data link
    }
}

void SimFtpSession::Close()
{
    if (m_bClosing)
        return;
    m_bClosing = true;
    m_idleTimer.stop();
    m_latencyTimer.stop();
    if (m_pRunning)
        m_pRunning->Abort();
    emit SignalClosed();
    // The last reply ("221") must reach the client before the socket goes: delete only once the
    // queued bytes are out, or after a grace period when the client stops reading.
    if (m_pSocket && m_pSocket->state() != QAbstractSocket::UnconnectedState) {
        connect(m_pSocket.data(), &QTcpSocket::disconnected, this, &QObject::deleteLater);
        QTimer::singleShot(kCloseGraceMs, this, &QObject::deleteLater);
        m_pSocket->disconnectFromHost();
        return;
    }
    deleteLater();
}

bool SimFtpSession::LocalFor(const QString& argument, QString* localPath, QString* virtualPath)
{
    QString path;
    if (!m_jail.Resolve(m_strCwd, argument.isEmpty() ? QStringLiteral(".") : argument, &path)) {
        Reply(550, QStringLiteral("Permission denied."));
        return false;
    }
    const QString local = m_jail.LocalPath(path);
    if (!m_jail.IsInside(local)) {
        Reply(550, QStringLiteral("Permission denied."));
        return false;
    }
    *localPath = local;
    if (virtualPath)
        *virtualPath = path;
    return true;
}

void SimFtpSession::CmdUser(const QString& argument)
{
    m_strUser = argument;
    m_bLoggedIn = false;
    Reply(331, QStringLiteral("Password required for %1.").arg(argument));
}

void SimFtpSession::CmdPass(const QString& argument)
{
    if (m_strUser.isEmpty()) {
        Reply(503, QStringLiteral("Login with USER first."));
        return;
    }
    // A shop-floor machine without configured credentials lets anyone in.
    if (!m_options.ftpUser.isEmpty() && (m_strUser != m_options.ftpUser || argument != m_options.ftpPassword)) {
        Reply(530, QStringLiteral("Login incorrect."));
        return;
    }
    auto* server = qobject_cast<SimFtpServer*>(parent());
    if (m_options.loginLimitReply != QLatin1String("greeting") && server && !server->LoginAllowed(this)) {
        if (m_options.loginLimitReply == QLatin1String("530")) {
            Reply(530, QStringLiteral("Sorry, the maximum number of clients (%1) from your host are already connected.")
                           .arg(m_options.maxSessions));
            return;
        }
        Reply(421, QStringLiteral("Too many users - please try again later."));
        Close();
        return;
    }
    m_bLoggedIn = true;
    Reply(230, QStringLiteral("User %1 logged in.").arg(m_strUser));
}

void SimFtpSession::CmdPwd(const QString&)
{
    Reply(257, quoted(m_strCwd) + QStringLiteral(" is the current directory."));
}

void SimFtpSession::CmdCwd(const QString& argument)
{
    QString local;
    QString path;
    if (!LocalFor(argument, &local, &path))
        return;
    if (!QFileInfo(local).isDir()) {
        Reply(550, QStringLiteral("No such directory."));
        return;
    }
    m_strCwd = path;
    Reply(250, QStringLiteral("Directory changed to %1.").arg(path));
}

void SimFtpSession::CmdCdup(const QString&)
{
    if (m_strCwd != QLatin1String("/"))
        CmdCwd(QStringLiteral(".."));
    else
        Reply(250, QStringLiteral("Directory changed to /."));
}

void SimFtpSession::CmdType(const QString& argument)
{
    const QString type = argument.trimmed().toUpper();
    if (type == QLatin1String("I") || type == QLatin1String("A") || type == QLatin1String("L 8") ||
        type == QLatin1String("A N"))
        Reply(200, QStringLiteral("Type set to %1.").arg(type));
    else
        Reply(504, QStringLiteral("Type not supported."));
}

void SimFtpSession::CmdMode(const QString& argument)
{
    if (argument.trimmed().toUpper() == QLatin1String("S"))
        Reply(200, QStringLiteral("Mode set to S."));
    else
        Reply(504, QStringLiteral("Mode not supported."));
}

void SimFtpSession::CmdStru(const QString& argument)
{
    if (argument.trimmed().toUpper() == QLatin1String("F"))
        Reply(200, QStringLiteral("Structure set to F."));
    else
        Reply(504, QStringLiteral("Structure not supported."));
}

void SimFtpSession::OpenPassive(bool extended)
{
    if (m_pData)
        m_pData->deleteLater();
    const QHostAddress local = m_pSocket->localAddress();
    const QHostAddress peer = m_pSocket->peerAddress();
    auto* channel = new SimFtpDataChannel(m_options.ftpRate, m_options.ftpDropAfter, m_options.ftpSpaceLeft, this);
    channel->SetTruncateAt(m_options.truncateAt);
    channel->SetSendShortAt(m_options.sendShortAt);
    const quint16 port = channel->Listen(local, peer, int(m_options.pasvTimeoutSeconds * 1000));
    if (port == 0) {
        channel->deleteLater();
        Reply(425, QStringLiteral("Can't open passive connection."));
        return;
    }
    m_pData = channel;
    if (extended) {
        Reply(229, QStringLiteral("Entering Extended Passive Mode (|||%1|)").arg(port));
        return;
    }
    const quint32 ip = local.toIPv4Address();
    Reply(227, QStringLiteral("Entering Passive Mode (%1,%2,%3,%4,%5,%6)")
                   .arg(ip >> 24)
                   .arg((ip >> 16) & 0xff)
                   .arg((ip >> 8) & 0xff)
                   .arg(ip & 0xff)
                   .arg(port >> 8)
                   .arg(port & 0xff));
}

void SimFtpSession::CmdPasv(const QString&)
{
    if (m_options.noPassive)
        Reply(502, QStringLiteral("Passive mode not supported."));
    else
        OpenPassive(false);
}

void SimFtpSession::CmdEpsv(const QString& argument)
{
    if (argument.trimmed().toUpper() == QLatin1String("ALL")) {
        Reply(200, QStringLiteral("EPSV ALL ok."));
        return;
    }
    if (m_options.noPassive)
        Reply(502, QStringLiteral("Passive mode not supported."));
    else
        OpenPassive(true);
}

void SimFtpSession::CmdPort(const QString& argument)
{
    // "PORT h1,h2,h3,h4,p1,p2" or "EPRT |1|127.0.0.1|port|".
    QHostAddress address;
    int port = -1;
    const QString text = argument.trimmed();
    if (text.startsWith(QLatin1Char('|'))) {
        const QStringList parts = text.split(QLatin1Char('|'));
        if (parts.size() >= 4 && address.setAddress(parts.at(2)))
            port = parts.at(3).toInt();
    } else {
        const QStringList parts = text.split(QLatin1Char(','));
        if (parts.size() == 6 && address.setAddress(QStringList(parts.mid(0, 4)).join(QLatin1Char('.'))))
            port = parts.at(4).toInt() * 256 + parts.at(5).toInt();
    }
    // Data goes only back to the client that asked, never to a third address.
    if (port <= 0 || port > 65535 || address.toIPv4Address() != m_pSocket->peerAddress().toIPv4Address()) {
        Reply(500, QStringLiteral("Illegal PORT command."));
        return;
    }
    if (m_pData)
        m_pData->deleteLater();
    auto* channel = new SimFtpDataChannel(m_options.ftpRate, m_options.ftpDropAfter, m_options.ftpSpaceLeft, this);
    channel->SetTruncateAt(m_options.truncateAt);
    channel->SetSendShortAt(m_options.sendShortAt);
    channel->ConnectTo(address, quint16(port));
    m_pData = channel;
    Reply(200, QStringLiteral("PORT command successful."));
}

bool SimFtpSession::TakeDataChannel(SimFtpDataChannel** channel)
{
    if (!m_pData) {
        Reply(425, QStringLiteral("Use PASV or EPSV first."));
        return false;
    }
    *channel = m_pData;
    m_pData = nullptr;
    return true;
}

void SimFtpSession::RunTransfer(SimFtpDataChannel* channel, QIODevice* device, bool send, const QString& opening)
{
    device->setParent(channel);
    m_pRunning = channel;
    m_bBusy = true;
    connect(channel, &SimFtpDataChannel::SignalFinished, this,
            [this, channel, device](int code, const QString& reason) {
                device->close(); // flushed before the client hears 226 and looks at the file
                channel->deleteLater();
                m_bBusy = false;
                m_pRunning = nullptr;
                Reply(code, code == 226 ? QStringLiteral("Transfer complete.") : reason);
                ProcessLines();
            });
    Reply(150, opening);
    if (send)
        channel->StartSend(device);
    else
        channel->StartReceive(device);
}

void SimFtpSession::SendListing(const QString& argument, int kind)
{
    // Options such as "-la" that clients put before the path are ignored.
    QString target = argument.trimmed();
    while (target.startsWith(QLatin1Char('-'))) {
        const int space = target.indexOf(QLatin1Char(' '));
        target = space < 0 ? QString() : target.mid(space + 1).trimmed();
    }
    QString local;
    if (!LocalFor(target, &local))
        return;
    const QFileInfo info(local);
    if (!info.exists() || (kind == ListFacts && !info.isDir())) {
        Reply(550, QStringLiteral("No such directory."));
        return;
    }
    SimFtpDataChannel* channel = nullptr;
    if (!TakeDataChannel(&channel))
        return;
    QFileInfoList entries;
    if (info.isDir())
        entries = QDir(local).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                            QDir::Name | QDir::DirsFirst);
    else
        entries << info;
    QByteArray text;
    const QDateTime now = QDateTime::currentDateTime();
    for (const QFileInfo& entry : entries) {
        if (!m_jail.IsEntryInside(entry))
            continue; // links out of the root are not there for the client
        if (m_options.hideDotfiles && info.isDir() && entry.fileName().startsWith(QLatin1Char('.')))
            continue;
        const QByteArray name = ToWire(entry.fileName());
        if (kind == ListLong)
            text += SimFtpListing::LongLine(entry, now, m_options.listStyle) + name;
        else if (kind == ListFacts)
            text += SimFtpListing::Facts(entry) + ' ' + name;
        else
            text += name;
        text += "\r\n";
    }
    auto* buffer = new QBuffer;
    buffer->setData(text);
    buffer->open(QIODevice::ReadOnly);
    RunTransfer(channel, buffer, true, QStringLiteral("Here comes the directory listing."));
}

void SimFtpSession::CmdList(const QString& argument)
{
    SendListing(argument, ListLong);
}

void SimFtpSession::CmdNlst(const QString& argument)
{
    SendListing(argument, ListNames);
}

void SimFtpSession::CmdMlsd(const QString& argument)
{
    if (m_options.noMlsd) {
        Reply(502, QStringLiteral("Command not implemented."));
        return;
    }
    SendListing(argument, ListFacts);
}

void SimFtpSession::CmdMlst(const QString& argument)
{
    if (m_options.noMlsd) {
        Reply(502, QStringLiteral("Command not implemented."));
        return;
    }
    QString local;
    QString path;
    if (!LocalFor(argument, &local, &path))
        return;
    const QFileInfo info(local);
    if (!info.exists()) {
        Reply(550, QStringLiteral("No such file or directory."));
        return;
    }
    ReplyRaw("250-Listing " + ToWire(path) + "\r\n " + SimFtpListing::Facts(info) + ' ' + ToWire(path) +
             "\r\n250 End.\r\n");
}

void SimFtpSession::CmdRetr(const QString& argument)
{
    QString local;
    if (!LocalFor(argument, &local))
        return;
    auto file = std::make_unique<QFile>(local);
    if (!QFileInfo(local).isFile() || !file->open(QIODevice::ReadOnly)) {
        Reply(550, QStringLiteral("No such file."));
        return;
    }
    if (m_nRestOffset > 0 && !file->seek(m_nRestOffset)) {
        Reply(554, QStringLiteral("Invalid restart position."));
        return;
    }
    SimFtpDataChannel* channel = nullptr;
    if (!TakeDataChannel(&channel))
        return;
    const qint64 size = file->size();
    RunTransfer(channel, file.release(), true,
                QStringLiteral("Opening BINARY mode data connection for %1 (%2 bytes).")
                    .arg(QFileInfo(local).fileName())
                    .arg(size));
}

void SimFtpSession::StoreFile(const QString& argument, bool append)
{
    QString local;
    if (!LocalFor(argument, &local))
        return;
    if (QFileInfo(local).isDir() || argument.isEmpty()) {
        Reply(553, QStringLiteral("Not a file name."));
        return;
    }
    if (RefuseBusy(local) || RefuseName(local))
        return;
    auto file = std::make_unique<QFile>(local);
    bool opened;
    if (append)
        opened = file->open(QIODevice::WriteOnly | QIODevice::Append);
    else if (m_nRestOffset > 0)
        opened = file->open(QIODevice::ReadWrite) && file->resize(m_nRestOffset) && file->seek(m_nRestOffset);
    else
        opened = file->open(QIODevice::WriteOnly | QIODevice::Truncate);
    if (!opened) {
        Reply(553, QStringLiteral("Cannot write the file."));
        return;
    }
    SimFtpDataChannel* channel = nullptr;
    if (!TakeDataChannel(&channel))
        return;
    if (m_options.diskQuota >= 0)
        channel->LimitSpace(m_options.diskQuota - UsedBytes(QDir(m_options.rootDir)));
    RunTransfer(channel, file.release(), false, QStringLiteral("Ok to send data."));
}

void SimFtpSession::CmdStor(const QString& argument)
{
    StoreFile(argument, false);
}

void SimFtpSession::CmdAppe(const QString& argument)
{
    StoreFile(argument, true);
}

void SimFtpSession::CmdRest(const QString& argument)
{
    bool ok = false;
    const qint64 offset = argument.trimmed().toLongLong(&ok);
    if (!ok || offset < 0) {
        Reply(501, QStringLiteral("Bad restart position."));
        return;
    }
    m_nRestOffset = offset;
    Reply(350, QStringLiteral("Restarting at %1. Send STORE or RETRIEVE.").arg(offset));
}

void SimFtpSession::CmdSize(const QString& argument)
{
    if (m_options.noSize) {
        Reply(502, QStringLiteral("Command not implemented."));
        return;
    }
    QString local;
    if (!LocalFor(argument, &local))
        return;
    const QFileInfo info(local);
    if (!info.isFile())
        Reply(550, QStringLiteral("Could not get file size."));
    else
        Reply(213, QString::number(info.size()));
}

void SimFtpSession::CmdMdtm(const QString& argument)
{
    QString local;
    if (!LocalFor(argument, &local))
        return;
    const QFileInfo info(local);
    if (!info.exists())
        Reply(550, QStringLiteral("No such file or directory."));
    else
        Reply(213, QString::fromLatin1(SimFtpListing::TimeStamp(info.lastModified())));
}

void SimFtpSession::CmdDele(const QString& argument)
{
    QString local;
    if (!LocalFor(argument, &local))
        return;
    const QFileInfo info(local);
    if (RefuseBusy(local))
        return;
    if (info.isDir() || !QFile::remove(local))
        Reply(550, QStringLiteral("Could not delete %1.").arg(argument));
    else
        Reply(250, QStringLiteral("File deleted."));
}

void SimFtpSession::CmdMkd(const QString& argument)
{
    QString local;
    QString path;
    if (!LocalFor(argument, &local, &path) || RefuseName(local))
        return;
    if (QFileInfo::exists(local) || !QDir().mkdir(local))
        Reply(550, QStringLiteral("Could not create %1.").arg(argument));
    else
        Reply(257, quoted(path) + QStringLiteral(" created."));
}

void SimFtpSession::CmdRmd(const QString& argument)
{
    QString local;
    QString path;
    if (!LocalFor(argument, &local, &path))
        return;
    if (path == QLatin1String("/") || !QFileInfo(local).isDir() || QFileInfo(local).isSymLink() || !QDir().rmdir(local))
        Reply(550, QStringLiteral("Could not remove %1.").arg(argument));
    else
        Reply(250, QStringLiteral("Directory removed."));
}

void SimFtpSession::CmdRnfr(const QString& argument)
{
    QString local;
    QString path;
    if (!LocalFor(argument, &local, &path))
        return;
    if (path == QLatin1String("/") || !QFileInfo::exists(local)) {
        Reply(550, QStringLiteral("No such file or directory."));
        return;
    }
    if (RefuseBusy(local))
        return;
    m_strRenameFrom = local;
    Reply(350, QStringLiteral("Ready for RNTO."));
}

void SimFtpSession::CmdRnto(const QString& argument)
{
    const QString from = m_strRenameFrom;
    m_strRenameFrom.clear();
    if (from.isEmpty()) {
        Reply(503, QStringLiteral("RNFR required first."));
        return;
    }
    QString local;
    if (!LocalFor(argument, &local) || RefuseBusy(local) || RefuseName(local))
        return;
    const bool bExists = QFileInfo::exists(local);
    if (bExists && m_options.rntoOverwrite != QLatin1String("replace")) {
        // Controllers that will not overwrite say so with either code.
        Reply(m_options.rntoOverwrite == QLatin1String("refuse450") ? 450 : 550,
              QStringLiteral("Cannot rename: %1 already exists.").arg(argument));
        return;
    }
    // A file is replaced as rename(2) would; a folder is never overwritten.
    if (bExists && (QFileInfo(local).isDir() || QFileInfo(from).isDir() || !QFile::remove(local)))
        Reply(553, QStringLiteral("Rename failed."));
    else if (!QDir().rename(from, local))
        Reply(553, QStringLiteral("Rename failed."));
    else
        Reply(250, QStringLiteral("Rename successful."));
}

void SimFtpSession::CmdFeat(const QString&)
{
    QByteArray features = "211-Features:\r\n EPSV\r\n PASV\r\n MDTM\r\n REST STREAM\r\n";
    if (!m_options.noSize)
        features += " SIZE\r\n";
    if (!m_options.noMlsd)
        features += " MLST type*;size*;modify*;perm*;\r\n";
    if (m_options.nameEncoding == QLatin1String("utf8"))
        features += " UTF8\r\n";
    ReplyRaw(features + "211 End\r\n");
}

void SimFtpSession::CmdOpts(const QString& argument)
{
    const QString option = argument.trimmed().toUpper();
    if ((option == QLatin1String("UTF8 ON") || option == QLatin1String("UTF8")) &&
        m_options.nameEncoding != QLatin1String("utf8"))
        Reply(501, QStringLiteral("UTF8 not supported."));
    else if (option == QLatin1String("UTF8 ON") || option == QLatin1String("UTF8"))
        Reply(200, QStringLiteral("UTF8 set to on."));
    else if (option.startsWith(QLatin1String("MLST")))
        Reply(200, QStringLiteral("MLST OPTS type;size;modify;perm;"));
    else
        Reply(501, QStringLiteral("Option not understood."));
}

void SimFtpSession::CmdSyst(const QString&)
{
    Reply(215, QStringLiteral("UNIX Type: L8"));
}

void SimFtpSession::CmdNoop(const QString&)
{
    Reply(200, QStringLiteral("NOOP ok."));
}

void SimFtpSession::CmdAllo(const QString&)
{
    Reply(202, QStringLiteral("No storage allocation necessary."));
}

void SimFtpSession::CmdQuit(const QString&)
{
    Reply(221, QStringLiteral("Goodbye."));
    Close();
}

void SimFtpSession::CmdAbor(const QString&)
{
    if (m_pRunning) {
        m_pRunning->Abort(); // answers 426 through the transfer's own ending
        Reply(226, QStringLiteral("Abort successful."));
    } else {
        Reply(225, QStringLiteral("No transfer to abort."));
    }
}

void SimFtpSession::CmdAuth(const QString&)
{
    Reply(502, QStringLiteral("TLS not available."));
}

QByteArray SimFtpSession::ToWire(const QString& text) const
{
    if (m_options.nameEncoding == QLatin1String("utf8"))
        return text.toUtf8();
    QStringEncoder encoder(WireEncodingName());
    return encoder(text);
}

QString SimFtpSession::FromWire(const QByteArray& bytes) const
{
    if (m_options.nameEncoding == QLatin1String("utf8"))
        return QString::fromUtf8(bytes);
    QStringDecoder decoder(WireEncodingName());
    return decoder(bytes);
}

const char* SimFtpSession::WireEncodingName() const
{
    return m_options.nameEncoding == QLatin1String("gbk") ? "GBK" : "Shift_JIS";
}

bool SimFtpSession::RefuseBusy(const QString& local)
{
    if (!m_options.busyWhileRunning)
        return false;
    const auto* server = qobject_cast<SimFtpServer*>(parent());
    const QString running = server ? server->RunningProgramFile() : QString();
    if (running.isEmpty() || QFileInfo(local).absoluteFilePath() != running)
        return false;
    Reply(452, QStringLiteral("Program %1 is running; file is locked.").arg(QFileInfo(local).fileName()));
    return true;
}

bool SimFtpSession::RefuseName(const QString& local)
{
    if (m_options.nameRule != QLatin1String("8.3"))
        return false;
    static const QRegularExpression shortName(QStringLiteral("^[A-Z0-9_$~!#%&-]{1,8}(\\.[A-Z0-9_$~!#%&-]{1,3})?$"));
    const QString name = QFileInfo(local).fileName();
    if (shortName.match(name).hasMatch())
        return false;
    Reply(553, QStringLiteral("File name not allowed: %1.").arg(name));
    return true;
}

qint64 SimFtpSession::UsedBytes(const QDir& dir)
{
    qint64 used = 0;
    for (const QFileInfo& entry : dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        if (entry.isSymLink())
            continue;
        used += entry.isDir() ? UsedBytes(QDir(entry.absoluteFilePath())) : entry.size();
    }
    return used;
}
