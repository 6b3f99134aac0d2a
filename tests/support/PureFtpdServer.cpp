#include "PureFtpdServer.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <pwd.h>
#include <unistd.h>

namespace {
QString FindSystemProgram(const QString& name)
{
    return QStandardPaths::findExecutable(name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin")});
}

QByteArray RunForOutput(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(10000) || process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput().trimmed();
}
} // namespace

PureFtpdServer::PureFtpdServer() : TestFtpServer(QStringLiteral("korv"), QStringLiteral("korv-secret")) {}

QString PureFtpdServer::MissingReason() const
{
    for (const char* tool : {"pure-ftpd", "pure-pw", "openssl"}) {
        if (FindSystemProgram(QString::fromLatin1(tool)).isEmpty())
            return QStringLiteral("%1 is not installed (run scripts/bootstrap)").arg(QLatin1String(tool));
    }
    if (::getuid() != 0)
        return QStringLiteral("pure-ftpd needs root to chroot its users");
    return {};
}

int PureFtpdServer::FileOwnerUid() const
{
    const passwd* account = ::getpwnam("nobody");
    return account ? int(account->pw_uid) : -1;
}

bool PureFtpdServer::Prepare(QString* error)
{
    if (::chown(QFile::encodeName(RootDir()).constData(), uid_t(FileOwnerUid()), gid_t(-1)) != 0) {
        *error = QStringLiteral("cannot hand %1 to nobody").arg(RootDir());
        return false;
    }
    // A SHA-512 crypt hash: pure-pw's own argon2 hash makes every log-in take seconds.
    const QByteArray hash =
        RunForOutput(QStringLiteral("openssl"), {QStringLiteral("passwd"), QStringLiteral("-6"), Password()});
    const QString passwdFile = StateDir() + QStringLiteral("/passwd");
    QFile file(passwdFile);
    const QByteArray line = User().toUtf8() + ':' + hash + ':' + QByteArray::number(FileOwnerUid()) + ':' +
                            QByteArray::number(FileOwnerUid()) + "::" + QFile::encodeName(RootDir()) +
                            "/./::::::::::::\n";
    if (hash.isEmpty() || !file.open(QIODevice::WriteOnly) || file.write(line) != line.size()) {
        *error = QStringLiteral("cannot write the pure-ftpd user file");
        return false;
    }
    file.close();
    QProcess mkdb;
    mkdb.start(FindSystemProgram(QStringLiteral("pure-pw")),
               {QStringLiteral("mkdb"), passwdFile + QStringLiteral(".pdb"), QStringLiteral("-f"), passwdFile});
    if (!mkdb.waitForFinished(10000) || mkdb.exitCode() != 0) {
        *error = QStringLiteral("pure-pw mkdb failed: %1").arg(QString::fromUtf8(mkdb.readAllStandardError()));
        return false;
    }
    return true;
}

QString PureFtpdServer::Program() const
{
    return FindSystemProgram(QStringLiteral("pure-ftpd"));
}

QStringList PureFtpdServer::Arguments(quint16 port) const
{
    // -L lifts the 10,000-entry listing cut; -E refuses anonymous, -A chroots everyone.
    return {QStringLiteral("-S"), QStringLiteral("127.0.0.1,%1").arg(port),
            QStringLiteral("-l"), QStringLiteral("puredb:%1/passwd.pdb").arg(StateDir()),
            QStringLiteral("-E"), QStringLiteral("-A"),
            QStringLiteral("-H"), QStringLiteral("-j"),
            QStringLiteral("-L"), QStringLiteral("100000:8")};
}
