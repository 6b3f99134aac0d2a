#include "UploadToFtp.h"

#include "FtpSession.h"
#include "FtpTemporaryName.h"

#include <QCoreApplication>
#include <QFile>

UploadToFtp::UploadToFtp(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent)
    : FtpTaskThread(url, encodedUrl, localPath, parent), m_strMarker(FtpTemporaryName::InstallationMarker())
{}

QString UploadToFtp::TemporaryPathFor(const QString& remotePath, const QStringList& taken) const
{
    const int cut = remotePath.lastIndexOf(QLatin1Char('/'));
    return remotePath.left(cut + 1) +
           FtpTemporaryName::Make(remotePath.mid(cut + 1), Settings().nameRules, m_strMarker, taken);
}

bool UploadToFtp::Execute(FtpSession& session, QString* message)
{
    QFile file(GetCurFilePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        *message = QCoreApplication::translate("FtpTask", "无法打开本地文件：%1（%2）")
                       .arg(GetCurFilePath(), file.errorString());
        return false;
    }
    const qint64 size = file.size();
    QList<FtpFileInfo> folder;
    if (!CheckNewName(session, RemotePathFromUrl(), message, &folder))
        return false;
    QStringList taken;
    for (const FtpFileInfo& entry : std::as_const(folder))
        taken << entry.name;
    // The file is written under a temporary name and renamed when complete, so that a cut
    // connection never leaves a truncated program under the name the machine would run.
    const QString target = RemotePathFromUrl();
    const QString part = TemporaryPathFor(target, taken);
    // A "226" is not proof: some controllers keep a short file and still report success. Its size
    // is asked on the same step; where SIZE is refused, MLST or a listing of the name tells it.
    const bool bOk = session.Upload(&file, size, part,
                                    [this, size](qint64 done, qint64) {
                                        ReportProgress(done, size);
                                        return true;
                                    },
                                    {QStringLiteral("*SIZE ") + part});
    qint64 remoteSize = -1;
    if (bOk && (session.SizeReplied(&remoteSize) || session.RemoteSize(part, &remoteSize)) && remoteSize != size) {
        *message = QCoreApplication::translate(
                       "FtpTask", "机床上的文件只有%1字节，本地文件为%2字节（虽然机床回复传输完成），原文件未改动")
                       .arg(remoteSize)
                       .arg(size);
        session.FinishDespiteStop();
        session.Command({QStringLiteral("DELE ") + part});
        return false;
    }
    if (!bOk || remoteSize < 0 || !ReplaceTarget(session, part, target, taken, message)) {
        if (message->isEmpty())
            *message = session.ErrorMessage();
        session.FinishDespiteStop();
        session.Command({QStringLiteral("DELE ") + part});
        return false;
    }
    ReportProgress(size, size, true);
    return true;
}

bool UploadToFtp::ReplaceTarget(FtpSession& session, const QString& part, const QString& target, QStringList taken,
                                QString* message) const
{
    if (session.Command({QStringLiteral("RNFR ") + part, QStringLiteral("RNTO ") + target}))
        return true;
    // Some controllers will not rename onto an existing name (550 or 450). The old program is
    // moved aside, not deleted, so that a refusal of the second rename still leaves it in place.
    taken << part.mid(part.lastIndexOf(QLatin1Char('/')) + 1);
    const QString aside = TemporaryPathFor(target, taken);
    if (!session.Command({QStringLiteral("RNFR ") + target, QStringLiteral("RNTO ") + aside}))
        return false;
    if (!session.Command({QStringLiteral("RNFR ") + part, QStringLiteral("RNTO ") + target})) {
        *message = session.ErrorMessage();
        session.Command({QStringLiteral("RNFR ") + aside, QStringLiteral("RNTO ") + target});
        return false;
    }
    session.Command({QStringLiteral("DELE ") + aside});
    return true;
}
