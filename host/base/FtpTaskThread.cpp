#include "FtpTaskThread.h"

#include "FtpSession.h"
#include "MachineRecords.h"

#include <QDateTime>
#include <QUrl>

namespace {
constexpr qint64 kProgressIntervalMs = 100;
}

FtpTaskThread::FtpTaskThread(const QString& url, const QString& encodedUrl, const QString& curFilePath, QObject* parent)
    : QThread(parent), m_strUrl(url), m_strEncodedUrl(encodedUrl), m_strCurFilePath(curFilePath),
      m_settings(FtpSettings::Load())
{
    RegisterMachineRecordMetaTypes();
}

FtpTaskThread::~FtpTaskThread() = default;

void FtpTaskThread::SetTransControl(const int& control)
{
    m_iTransControl.store(control);
}

QString FtpTaskThread::RemotePathFromUrl() const
{
    // The encoded form survives names with "#", "?" or "%"; the plain one is the fallback.
    QUrl url = QUrl::fromEncoded(m_strEncodedUrl.toUtf8(), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        url = QUrl(m_strUrl);
    const QString path = url.path(QUrl::FullyDecoded);
    return path.isEmpty() ? QStringLiteral("/") : path;
}

void FtpTaskThread::ReportProgress(qint64 done, qint64 total, bool bFinal)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    // The first bytes are reported at once so that the owner sees the transfer start.
    if (!bFinal && m_iLastProgressMs >= 0 && now - m_iLastProgressMs < kProgressIntervalMs)
        return;
    if (!bFinal && done <= 0)
        return;
    m_iLastProgressMs = now;
    emit SignalTaskProgress(done, total, m_strUrl);
}

void FtpTaskThread::run()
{
    QUrl url = QUrl::fromEncoded(m_strEncodedUrl.toUtf8(), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        url = QUrl(m_strUrl);
    QString message;
    bool bOk = false;
    if (url.host().isEmpty()) {
        message = QStringLiteral("无效的FTP地址：%1").arg(m_strUrl);
    } else {
        FtpSession session(url.host(), m_settings.MapPort(url.port()), m_settings,
                           [this] { return IsStopRequested(); });
        const QString path = RemotePathFromUrl();
        if (!session.Connect(path.left(path.lastIndexOf(QLatin1Char('/')) + 1)))
            message = session.ErrorMessage();
        else
            bOk = Execute(session, &message);
    }
    Finish(bOk, message);
}

void FtpTaskThread::Finish(bool ok, const QString& message)
{
    emit SignalTaskFinished(ok, message);
}
