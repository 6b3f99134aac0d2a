#include "UploadToFtp.h"

#include "FtpSession.h"
#include "KorvBaseGlobals.h"

#include <QFile>
#include <QRandomGenerator>

UploadToFtp::UploadToFtp(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent)
    : FtpTaskThread(url, encodedUrl, localPath, parent)
{}

QString UploadToFtp::TemporaryPathFor(const QString& remotePath)
{
    const int cut = remotePath.lastIndexOf(QLatin1Char('/'));
    const QString folder = remotePath.left(cut + 1);
    const QString token = QString::number(QRandomGenerator::global()->generate(), 16);
    return folder + QLatin1Char('.') + remotePath.mid(cut + 1) + QLatin1Char('.') + token + QStringLiteral(".part");
}

bool UploadToFtp::Execute(FtpSession& session, QString* message)
{
    QFile file(GetCurFilePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        *message = QStringLiteral("无法打开本地文件：%1（%2）").arg(GetCurFilePath(), file.errorString());
        return false;
    }
    const qint64 size = file.size();
    g_bTranslating = true;
    // The file is written under a temporary name and renamed when complete, so that a cut
    // connection never leaves a truncated program under the name the machine would run.
    const QString target = RemotePathFromUrl();
    const QString part = TemporaryPathFor(target);
    const QStringList rename = {QStringLiteral("RNFR ") + part, QStringLiteral("RNTO ") + target};
    const bool bOk = session.Upload(
        &file, size, part,
        [this, size](qint64 done, qint64) {
            ReportProgress(done, size);
            return true;
        },
        rename);
    if (!bOk && !session.AfterCommandsFailed()) {
        *message = session.ErrorMessage();
        session.Command({QStringLiteral("DELE ") + part});
        return false;
    }
    // Some servers refuse to rename onto an existing name: the old file goes first then.
    if (!bOk && !(session.Command({QStringLiteral("DELE ") + target}) && session.Command(rename))) {
        *message = session.ErrorMessage();
        session.Command({QStringLiteral("DELE ") + part});
        return false;
    }
    ReportProgress(size, size, true);
    return true;
}
