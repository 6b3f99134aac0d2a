#include "DownloadToLocal.h"

#include "FtpSession.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryFile>
#include <cstdio>

DownloadToLocal::DownloadToLocal(const QString& url, const QString& encodedUrl, const QString& localPath,
                                 QObject* parent)
    : DownloadToLocal(url, encodedUrl, localPath, -1, parent)
{}

DownloadToLocal::DownloadToLocal(const QString& url, const QString& encodedUrl, const QString& localPath,
                                 qint64 listedSize, QObject* parent)
    : FtpTaskThread(url, encodedUrl, localPath, parent), m_iListedSize(listedSize)
{}

bool DownloadToLocal::Execute(FtpSession& session, QString* message)
{
    const QFileInfo target(GetCurFilePath());
    QTemporaryFile part(target.absolutePath() + QStringLiteral("/.") + target.fileName() +
                        QStringLiteral(".XXXXXX.part"));
    if (!part.open()) {
        *message = QCoreApplication::translate("FtpTask", "无法在%1创建文件：%2")
                       .arg(target.absolutePath(), part.errorString());
        return false;
    }
    qint64 total = 0;
    const bool bOk = session.Download(
        RemotePathFromUrl(), &part,
        [this, &total](qint64 done, qint64 size) {
            // Not asked for its size, the machine names none: the listing's tells the progress.
            total = size > 0 ? size : qMax<qint64>(0, m_iListedSize);
            ReportProgress(done, total);
            return true;
        },
        m_iListedSize);
    if (!bOk || !part.flush()) {
        *message = bOk ? QCoreApplication::translate("FtpTask", "写入本地文件失败：%1").arg(part.errorString())
                       : session.ErrorMessage();
        return false;
    }
    const qint64 size = part.size();
    // Temporary files are private; the result gets the usual permissions of a new file.
    part.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    // rename(2) replaces the target in one step, so readers see the old or the new file.
    if (std::rename(QFile::encodeName(part.fileName()).constData(),
                    QFile::encodeName(target.absoluteFilePath()).constData()) != 0) {
        *message = QCoreApplication::translate("FtpTask", "无法保存文件：%1").arg(target.absoluteFilePath());
        return false;
    }
    part.setAutoRemove(false);
    ReportProgress(size, qMax(total, size), true);
    return true;
}
