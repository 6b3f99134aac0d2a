#include "CDebugLog.h"

#include "KorvPaths.h"
#include "LocalClock.h"

#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <sys/stat.h>

namespace {
QMutex& logMutex()
{
    static QMutex mutex;
    return mutex;
}

// A log removed while open (a user clearing the folder) is written again under its name. The open
// descriptor tells it without looking the path up.
bool Unlinked(const QFile& file)
{
    struct stat status
    {
    };
    return fstat(file.handle(), &status) != 0 || status.st_nlink == 0;
}
} // namespace

void CDebugLog::AddLog(const QString& text)
{
    const QByteArray line =
        LocalClock::Now().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz ")).toUtf8() + text.toUtf8() + '\n';
    QMutexLocker locker(&logMutex());
    // Kept open while KORV_CONFIG_DIR stays and the file is there, and unbuffered: each line
    // reaches the system at once, so the log survives a crash without an open and close per line.
    // Never destroyed: a task thread may log while the program exits.
    static auto* file = new QFile;
    const QString path = LogFilePath();
    if (file->fileName() != path || !file->isOpen() || Unlinked(*file)) {
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
