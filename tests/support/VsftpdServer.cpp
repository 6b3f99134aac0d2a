#include "VsftpdServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <pwd.h>
#include <unistd.h>

VsftpdServer::VsftpdServer() : TestFtpServer(QStringLiteral("anonymous"), QStringLiteral("korv@")) {}

QString VsftpdServer::MissingReason() const
{
    if (!QFileInfo(Program()).isExecutable())
        return QStringLiteral("vsftpd not found at %1 (run scripts/bootstrap)").arg(Program());
    if (::getuid() != 0)
        return QStringLiteral("vsftpd needs root to chroot");
    return {};
}

int VsftpdServer::FileOwnerUid() const
{
    const passwd* account = ::getpwnam("daemon");
    return account ? int(account->pw_uid) : -1;
}

bool VsftpdServer::Prepare(QString* error)
{
    const QString emptyDir = StateDir() + QStringLiteral("/empty");
    QDir().mkpath(emptyDir);
    const QByteArray config = "listen=YES\n"
                              "listen_address=127.0.0.1\n"
                              "background=NO\n"
                              "seccomp_sandbox=NO\n"
                              "secure_chroot_dir=" +
                              QFile::encodeName(emptyDir) +
                              "\n"
                              "anonymous_enable=YES\n"
                              "no_anon_password=YES\n"
                              "anon_root=" +
                              QFile::encodeName(RootDir()) +
                              "\n"
                              "anon_upload_enable=YES\n"
                              "anon_mkdir_write_enable=YES\n"
                              "anon_other_write_enable=YES\n"
                              "anon_umask=022\n"
                              "write_enable=YES\n"
                              "local_enable=NO\n"
                              "ftp_username=daemon\n"
                              "xferlog_enable=NO\n"
                              "utf8_filesystem=YES\n";
    QFile file(StateDir() + QStringLiteral("/vsftpd.conf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(config) != config.size()) {
        *error = QStringLiteral("cannot write the vsftpd configuration");
        return false;
    }
    return true;
}

QString VsftpdServer::Program() const
{
    return SourceDir() + QStringLiteral("/.deps/vsftpd/usr/sbin/vsftpd");
}

QStringList VsftpdServer::Arguments(quint16 port) const
{
    return {StateDir() + QStringLiteral("/vsftpd.conf"), QStringLiteral("-olisten_port=%1").arg(port)};
}
