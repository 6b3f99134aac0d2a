#include "TestFtpServer.h"

#include "CncSimServer.h"
#include "FreeLoopbackPort.h"
#include "PureFtpdServer.h"
#include "PyftpdlibServer.h"
#include "VsftpdServer.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QTcpSocket>
#include <QThread>
#include <unistd.h>

std::unique_ptr<TestFtpServer> TestFtpServer::Create(FtpServerKind kind)
{
    switch (kind) {
    case FtpServerKind::PureFtpd:
        return std::make_unique<PureFtpdServer>();
    case FtpServerKind::Vsftpd:
        return std::make_unique<VsftpdServer>();
    case FtpServerKind::Pyftpdlib:
        return std::make_unique<PyftpdlibServer>();
    case FtpServerKind::CncSim:
        return std::make_unique<CncSimServer>();
    }
    return nullptr;
}

QList<FtpServerKind> TestFtpServer::AllKinds()
{
    return {FtpServerKind::PureFtpd, FtpServerKind::Vsftpd, FtpServerKind::Pyftpdlib, FtpServerKind::CncSim};
}

QString TestFtpServer::KindName(FtpServerKind kind)
{
    switch (kind) {
    case FtpServerKind::PureFtpd:
        return QStringLiteral("pure-ftpd");
    case FtpServerKind::Vsftpd:
        return QStringLiteral("vsftpd");
    case FtpServerKind::Pyftpdlib:
        return QStringLiteral("pyftpdlib");
    case FtpServerKind::CncSim:
        return QStringLiteral("cnc-sim");
    }
    return {};
}

TestFtpServer::TestFtpServer(const QString& user, const QString& password)
    : m_dir(QDir::tempPath() + QStringLiteral("/korv-ftp-XXXXXX")), m_strUser(user), m_strPassword(password)
{
    // Servers drop to other accounts, which must reach the root below this folder.
    QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ReadOther | QFile::ExeOther |
                                            QFile::ReadGroup | QFile::ExeGroup);
    QDir(m_dir.path()).mkdir(QStringLiteral("root"));
    QFile::setPermissions(RootDir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup |
                                         QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
}

TestFtpServer::~TestFtpServer()
{
    Stop();
}

QString TestFtpServer::SourceDir()
{
    return qEnvironmentVariable("KORV_SOURCE_DIR", QStringLiteral(KORV_TEST_SOURCE_DIR));
}

QString TestFtpServer::RootDir() const
{
    return m_dir.path() + QStringLiteral("/root");
}

QString TestFtpServer::LocalPath(const QString& remotePath) const
{
    return RootDir() + (remotePath.startsWith(QLatin1Char('/')) ? remotePath : QLatin1Char('/') + remotePath);
}

bool TestFtpServer::ChownToServer(const QString& path) const
{
    const int uid = FileOwnerUid();
    return uid < 0 || ::chown(QFile::encodeName(path).constData(), uid_t(uid), gid_t(-1)) == 0;
}

bool TestFtpServer::WriteFile(const QString& remotePath, const QByteArray& data) const
{
    QFile file(LocalPath(remotePath));
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        return false;
    file.close();
    return ChownToServer(file.fileName());
}

bool TestFtpServer::MakeDir(const QString& remotePath) const
{
    const QString path = LocalPath(remotePath);
    return QDir().mkpath(path) && ChownToServer(path);
}

bool TestFtpServer::Start()
{
    m_strError = MissingReason();
    if (!m_strError.isEmpty())
        return false;
    if (!m_bPrepared) {
        if (!m_dir.isValid() || !Prepare(&m_strError))
            return false;
        m_bPrepared = true;
    }
    // A port found free may be taken by a parallel test before the server binds it.
    for (int attempt = 0; attempt < 4; ++attempt) {
        const quint16 port = FreeLoopbackPort();
        if (port != 0 && Launch(port)) {
            m_iPort = port;
            return true;
        }
    }
    return false;
}

bool TestFtpServer::Launch(quint16 port)
{
    Stop();
    m_process.setStandardOutputFile(LogFile(), QIODevice::Append);
    m_process.setStandardErrorFile(LogFile(), QIODevice::Append);
    m_process.start(Program(), Arguments(port));
    if (!m_process.waitForStarted(5000)) {
        m_strError = QStringLiteral("%1 did not start: %2").arg(Program(), m_process.errorString());
        return false;
    }
    if (WaitForGreeting(port))
        return true;
    QFile log(LogFile());
    log.open(QIODevice::ReadOnly);
    m_strError = QStringLiteral("%1 did not greet on port %2: %3")
                     .arg(KindName(Kind()))
                     .arg(port)
                     .arg(QString::fromUtf8(log.readAll().right(400)));
    Stop();
    return false;
}

bool TestFtpServer::WaitForGreeting(quint16 port) const
{
    const QDeadlineTimer deadline(8000);
    while (!deadline.hasExpired() && m_process.state() == QProcess::Running) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        if (socket.waitForConnected(500)) {
            QByteArray greeting;
            while (!greeting.contains('\n') && socket.waitForReadyRead(int(qMax<qint64>(1, deadline.remainingTime()))))
                greeting += socket.readAll();
            return greeting.startsWith("220");
        }
        QThread::msleep(20);
    }
    return false;
}

void TestFtpServer::Stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(3000)) {
        m_process.kill();
        m_process.waitForFinished(3000);
    }
}

bool TestFtpServer::IsRunning() const
{
    return m_process.state() == QProcess::Running;
}
