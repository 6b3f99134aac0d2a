#include "LocalPasteJob.h"

#include "FileNaming.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QFutureWatcher>
#include <memory>

namespace {
bool CopyEntry(const QString& source, const QString& target)
{
    if (!QFileInfo(source).isDir())
        return QFile::copy(source, target);
    if (!QDir().mkpath(target))
        return false;
    const QDir from(source);
    for (const QString& name : from.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        if (!CopyEntry(from.filePath(name), QDir(target).filePath(name)))
            return false;
    }
    return true;
}

bool RemoveEntry(const QString& path)
{
    return QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
}
} // namespace

void LocalPasteJob::Start(const QStringList& sources, const QString& targetFolder, bool bMove)
{
    m_bRunning = true;
    auto result = std::make_shared<Result>();
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, result] {
        watcher->deleteLater();
        m_bRunning = false;
        Q_EMIT SignalFinished(*result);
    });
    watcher->setFuture(m_tasks.Run([=](const TaskOwner::StopCheck& stop) {
        *result = Run(sources, targetFolder, bMove, stop);
        return result->iFailed == 0;
    }));
}

LocalPasteJob::Result LocalPasteJob::Run(const QStringList& sources, const QString& targetFolder, bool bMove,
                                         const TaskOwner::StopCheck& stop)
{
    Result result;
    const QDir target(targetFolder);
    for (const QString& source : sources) {
        if (stop()) {
            ++result.iFailed;
            continue;
        }
        const QFileInfo info(source);
        const QString failure =
            (bMove ? QStringLiteral("错误无法移动文件: %1") : QStringLiteral("错误无法复制文件: %1")).arg(source);
        const QString canonicalTarget = target.canonicalPath();
        const QString canonicalSource = info.canonicalFilePath();
        // A folder pasted into itself would copy forever.
        if (!info.exists() || canonicalTarget.isEmpty() ||
            (info.isDir() && (canonicalTarget + QLatin1Char('/')).startsWith(canonicalSource + QLatin1Char('/')))) {
            ++result.iFailed;
            result.listLog.append(failure);
            continue;
        }
        if (bMove && info.absolutePath() == target.absolutePath())
            continue; // moved onto itself: nothing to do
        const QString destination =
            target.filePath(FileNaming::FreeName(info.fileName(), info.isDir(), [&](const QString& name) {
                return QFileInfo::exists(target.filePath(name)) || QFileInfo(target.filePath(name)).isSymLink();
            }));
        if (bMove && QFile::rename(source, destination)) {
            result.listLog.append(QStringLiteral("文件直接移动成功"));
            continue;
        }
        if (!CopyEntry(source, destination)) {
            RemoveEntry(destination); // a half copy is no copy
            ++result.iFailed;
            result.listLog.append(failure);
            continue;
        }
        if (bMove) {
            if (!RemoveEntry(source)) {
                ++result.iFailed;
                result.listLog.append(failure);
                continue;
            }
            result.listLog.append(QStringLiteral("文件复制后删除成功！"));
        }
    }
    return result;
}
