#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

// The FTP servers that tests run against: three from Debian and the machine simulator.
// A new kind is one more enumerator, one more subclass and one more line in
// TestFtpServer::Create.
enum class FtpServerKind
{
    PureFtpd,
    Vsftpd,
    Pyftpdlib,
    CncSim,
};

// One FTP server run as a child process on a free loopback port over a temporary root.
// Files that tests place on the server belong to the account the server writes as.
class TestFtpServer
{
public:
    static std::unique_ptr<TestFtpServer> Create(FtpServerKind kind);
    static QList<FtpServerKind> AllKinds();
    static QString KindName(FtpServerKind kind);

    virtual ~TestFtpServer();
    Q_DISABLE_COPY_MOVE(TestFtpServer)

    virtual FtpServerKind Kind() const = 0;
    // Whether listings come as MLSD (else LIST).
    virtual bool OffersMlsd() const = 0;
    // Empty when the server can run here; else why not (binary missing, not root).
    virtual QString MissingReason() const = 0;

    // Starts the server and waits for its greeting; false with ErrorString() on failure.
    bool Start();
    void Stop();
    bool IsRunning() const;
    QString ErrorString() const { return m_strError; }

    quint16 Port() const { return m_iPort; }
    QString User() const { return m_strUser; }
    QString Password() const { return m_strPassword; }
    // Folder on disk that the server shows as "/".
    QString RootDir() const;
    QString LocalPath(const QString& remotePath) const;
    // Fixtures, created on disk and handed to the server's account.
    bool WriteFile(const QString& remotePath, const QByteArray& data) const;
    bool MakeDir(const QString& remotePath) const;

protected:
    TestFtpServer(const QString& user, const QString& password);

    // Called once before the first launch (configuration files, root ownership).
    virtual bool Prepare(QString* error) = 0;
    virtual QString Program() const = 0;
    virtual QStringList Arguments(quint16 port) const = 0;
    // Owner given to fixtures; -1 keeps the test's own.
    virtual int FileOwnerUid() const { return -1; }
    // Files beside the root (configs, logs), never visible through FTP.
    QString StateDir() const { return m_dir.path(); }
    // The server's standard output and error, appended over every launch.
    QString LogFile() const { return StateDir() + QStringLiteral("/server.log"); }
    qint64 ProcessId() const { return m_process.processId(); }
    static QString SourceDir();

private:
    bool Launch(quint16 port);
    bool WaitForGreeting(quint16 port) const;
    bool ChownToServer(const QString& path) const;

    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_iPort = 0;
    QString m_strUser;
    QString m_strPassword;
    QString m_strError;
    bool m_bPrepared = false;
};
