#include "UploadToFtp.h"

#include "FtpSession.h"
#include "KorvBaseGlobals.h"

#include <QFile>

UploadToFtp::UploadToFtp(const QString& url, const QString& encodedUrl, const QString& localPath, QObject* parent)
    : FtpTaskThread(url, encodedUrl, localPath, parent)
{}

bool UploadToFtp::Execute(FtpSession& session, QString* message)
{
    QFile file(GetCurFilePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        *message = QStringLiteral("无法打开本地文件：%1（%2）").arg(GetCurFilePath(), file.errorString());
        return false;
    }
    const qint64 size = file.size();
    g_bTranslating = true;
    const bool bOk = session.Upload(&file, size, RemotePathFromUrl(), [this, size](qint64 done, qint64) {
        ReportProgress(done, size);
        return true;
    });
    if (!bOk) {
        *message = session.ErrorMessage();
        return false;
    }
    ReportProgress(size, size, true);
    return true;
}
