#include "CDebugLog.h"

#include "KorvPaths.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
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
    // Kept open while KORV_CONFIG_DIR stays and the file is there, and unbuffered: each line
    // reaches the system at once, so the log survives a crash without an open and close per line.
    // Never destroyed: a task thread may log while the program exits.
    static auto* file = new QFile;
    const QString path = LogFilePath();
    if (file->fileName() != path || !file->isOpen() || !QFileInfo::exists(path)) {
        file->close();
        file->setFileName(path);
        if (!file->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
            return;
    }
    file->write(line);
}

QString CDebugLog::LogFilePath()
{
    return KorvPaths::DebugLogFile();
}
