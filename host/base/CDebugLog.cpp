#include "CDebugLog.h"

#include "KorvPaths.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

namespace {
QMutex& logMutex()
{
    static QMutex mutex;
    return mutex;
}
} // namespace

void CDebugLog::AddLog(const QString& text)
{
    const QByteArray line = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz ")).toUtf8() +
                            text.toUtf8() + '\n';
    QMutexLocker locker(&logMutex());
    // Opened per line: the log must survive a crash and a changed KORV_CONFIG_DIR.
    QFile file(LogFilePath());
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(line);
}

QString CDebugLog::LogFilePath()
{
    return KorvPaths::DebugLogFile();
}
