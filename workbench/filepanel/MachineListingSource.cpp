#include "MachineListingSource.h"

#include "CDebugLog.h"
#include "KorvBaseGlobals.h"
#include "LogColors.h"
#include "MachineTask.h"
#include "MachineTaskFactory.h"
#include "WorkbenchLog.h"

#include <QDir>

QString MachineListingSource::NormalizedPath(const QString& path)
{
    const QString normalized = QDir::cleanPath(path);
    return normalized.isEmpty() ? QStringLiteral("/") : normalized;
}

bool MachineListingSource::RefuseBrowsing()
{
    if (!g_bTranslating)
        return false;
    const QString text = tr("当前FTP正在进行文件传输，无法访问机器文件！");
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, LogColors::Warning);
    return true;
}

void MachineListingSource::List(const QString& path)
{
    CDebugLog::AddLog(QStringLiteral("startListFtp Start"));
    const QString folder = NormalizedPath(path);
    MachineTask* task = MachineTaskFactory::Default()->List(MachineEndpoint::For(m_strMachineIp, QString()), path);
    connect(task, &MachineTask::SignalFinished, this, [this, task, folder](bool ok, const QString& message) {
        if (task != m_pListTask)
            return; // superseded by a newer listing or cancelled
        m_pListTask = nullptr;
        FileListing listing;
        listing.strPath = folder;
        listing.bOk = ok;
        const QList<FtpFileInfo> entries = task->Entries();
        for (const bool bFolders : {true, false}) {
            for (const FtpFileInfo& entry : entries) {
                if (entry.isDir() != bFolders || (!bFolders && entry.type != QLatin1String("file")))
                    continue;
                listing.listRows.append(FileRowData::FromFtp(entry, folder));
                (bFolders ? listing.listFolderNames : listing.listFileNames).append(entry.name);
            }
        }
        Q_EMIT SignalListed(listing);
        if (ok && !task->Leftovers().isEmpty())
            Q_EMIT SignalLeftoversListed(folder, task->Leftovers());
        // The reason of a failed listing (a wrong name encoding is told apart from a lost machine),
        // after the panel's line that the listing failed.
        if (!ok && !message.isEmpty()) {
            CDebugLog::AddLog(message);
            Q_EMIT SignalAppendLog(message, LogColors::Failure);
        }
    });
    m_pListTask = task;
    m_tasks.Start(task);
}

QString MachineListingSource::ParentPath(const QString& path) const
{
    if (path == QLatin1String("/"))
        return QString();
    const int cut = path.lastIndexOf(QLatin1Char('/'));
    return cut < 1 ? QStringLiteral("/") : path.left(cut);
}

QString MachineListingSource::FolderFromText(const QString& text) const
{
    return text.startsWith(QLatin1Char('/')) ? NormalizedPath(text) : QString();
}
