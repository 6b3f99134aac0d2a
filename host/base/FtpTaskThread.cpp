#include "FtpTaskThread.h"

#include "FtpSession.h"
#include "FtpSessionBudget.h"
#include "MachineRecords.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QUrl>

namespace {
// At most one report a second: the transfer list works a speed out of two reports and counts
// whole seconds between them. A little over a second keeps the arrival gap on the owner's thread
// from dropping below one second when delivery jitters, which would read as no speed at all.
constexpr qint64 kProgressIntervalMs = 1050;
constexpr int kLoginAttempts = 8;
constexpr int kFirstBackOffMs = 100;
constexpr int kMaxBackOffMs = 2000;

QUrl taskUrl(const QString& plain, const QString& encoded)
{
    // The encoded form survives names with "#", "?" or "%"; the plain one is the fallback.
    QUrl url = QUrl::fromEncoded(encoded.toUtf8(), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        url = QUrl(plain);
    return url;
}
} // namespace

FtpTaskThread::FtpTaskThread(const QString& url, const QString& encodedUrl, const QString& curFilePath, QObject* parent)
    : QThread(parent), m_strUrl(url), m_strEncodedUrl(encodedUrl), m_strCurFilePath(curFilePath),
      m_settings(FtpSettings::Load(taskUrl(url, encodedUrl).host()))
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
    const QString path = taskUrl(m_strUrl, m_strEncodedUrl).path(QUrl::FullyDecoded);
    return path.isEmpty() ? QStringLiteral("/") : path;
}

bool FtpTaskThread::CheckNewName(FtpSession& session, const QString& remotePath, QString* message,
                                 QList<FtpFileInfo>* folder) const
{
    const FtpNameRules& rules = m_settings.nameRules;
    const int cut = remotePath.lastIndexOf(QLatin1Char('/'));
    const QString name = remotePath.mid(cut + 1);
    *message = rules.Violation(name);
    if (message->isEmpty() && (rules.bCaseInsensitive || (folder && rules.Restricts()))) {
        QList<FtpFileInfo> entries;
        if (!session.ListDirectory(cut <= 0 ? QStringLiteral("/") : remotePath.left(cut), &entries)) {
            *message = session.ErrorMessage();
            return false;
        }
        *message = rules.Collision(name, entries);
        if (folder)
            *folder = entries;
    }
    return message->isEmpty();
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
    const QUrl url = taskUrl(m_strUrl, m_strEncodedUrl);
    QString message;
    bool bOk = false;
    if (url.host().isEmpty()) {
        Finish(false, QCoreApplication::translate("FtpTask", "无效的FTP地址：%1").arg(m_strUrl));
        return;
    }
    FtpSessionBudget& budget = FtpSessionBudget::Instance();
    const auto stop = [this] { return IsStopRequested(); };
    for (int attempt = 0;; ++attempt) {
        if (!budget.Acquire(url.host(), stop)) {
            message = QCoreApplication::translate("FtpTask", "操作已停止");
            break;
        }
        bool bRetry = false;
        {
            FtpSession session(url.host(), m_settings.MapPort(url.port()), m_settings, stop);
            const QString path = RemotePathFromUrl();
            const bool bConnected = session.Connect(path.left(path.lastIndexOf(QLatin1Char('/')) + 1));
            if (bConnected)
                bOk = Execute(session, &message);
            else
                message = session.ErrorMessage();
            // A machine with all its logins taken answers 421: learn its limit, wait and try again.
            bRetry = !bConnected && session.LoginRefusedAsBusy() && attempt < kLoginAttempts && !stop();
        }
        if (bRetry)
            budget.LearnRefusal(url.host());
        budget.Release(url.host());
        if (!bRetry)
            break;
        QDeadlineTimer backOff(qMin(kMaxBackOffMs, kFirstBackOffMs << attempt));
        while (!backOff.hasExpired() && !stop())
            msleep(qMin<qint64>(50, qMax<qint64>(1, backOff.remainingTime())));
    }
    Finish(bOk, message);
}

void FtpTaskThread::Finish(bool ok, const QString& message)
{
    emit SignalTaskFinished(ok, message);
}
