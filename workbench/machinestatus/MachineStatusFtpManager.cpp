#include "MachineStatusFtpManager.h"

#include "CDebugLog.h"
#include "CProgressWidget.h"
#include "DeleteFtpItems.h"
#include "KorvBaseGlobals.h"
#include "ListFtpDirectory.h"
#include "RenameFtpFile.h"

#include <QUrl>

namespace {
constexpr int FtpPort = 21;
}

MachineStatusFtpManager::MachineStatusFtpManager(QObject* parent) : QObject(parent) {}

MachineStatusFtpManager::~MachineStatusFtpManager()
{
    // Results have nobody to go to any more; stop the tasks and give each a bounded wait.
    for (const QPointer<FtpTaskThread>& task : std::as_const(m_listTasks)) {
        if (!task)
            continue;
        task->disconnect(this);
        task->SetTransControl(FtpTaskThread::TransControlStop);
        task->wait(2000);
    }
}

void MachineStatusFtpManager::Start(FtpTaskThread* task)
{
    m_listTasks.removeAll(nullptr);
    m_listTasks.append(task);
    connect(task, &QThread::finished, task, &QObject::deleteLater);
    task->start();
}

QString MachineStatusFtpManager::Url(const QString& path) const
{
    return QStringLiteral("ftp://%1:%2%3").arg(m_strIp, QString::number(FtpPort), path);
}

QString MachineStatusFtpManager::EncodedUrl(const QString& path) const
{
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(m_strIp);
    url.setPort(FtpPort);
    url.setPath(path);
    return url.toString(QUrl::FullyEncoded);
}

void MachineStatusFtpManager::RequestList(const QString& dirPath)
{
    if (m_strIp.isEmpty()) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestList 未设置机床IP，忽略请求"));
        return;
    }
    QString path = dirPath;
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    if (g_bTranslating) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestList FTP传输进行中，忽略列表请求 ") + path);
        return;
    }
    // The answer of the listing already on its way serves this request too.
    if (m_mapListings.contains(path))
        return;
    const QString taskPath = path == QLatin1String("/") ? path : path + QLatin1Char('/');
    auto* task = new ListFtpDirectory(Url(taskPath), EncodedUrl(taskPath), taskPath);
    m_mapListings.insert(path, task);
    connect(task, &ListFtpDirectory::SignalListFileFinished, this,
            [this, path](bool success, const QList<FtpFileInfo>& items) {
                m_mapListings.remove(path);
                Q_EMIT SignalListResult(path, success, items);
            });
    Start(task);
}

void MachineStatusFtpManager::RequestRename(const QString& oldPath, const QString& newPath)
{
    if (m_strIp.isEmpty()) {
        Q_EMIT SignalRenameResult(false, oldPath, newPath);
        return;
    }
    if (g_bTranslating) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestRename FTP传输进行中，忽略重命名 %1 -> %2")
                              .arg(oldPath, newPath));
        Q_EMIT SignalRenameResult(false, oldPath, newPath);
        return;
    }
    for (const QString& busy : std::as_const(m_setBusyPaths)) {
        // The new path is only tested one way: a new name inside a busy folder is allowed.
        if (busy.contains(oldPath) || oldPath.contains(busy) || busy.contains(newPath)) {
            CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestRename 路径正在被操作：") + busy);
            Q_EMIT SignalRenameResult(false, oldPath, newPath);
            return;
        }
    }
    auto* task = new RenameFtpFile(Url(oldPath), EncodedUrl(oldPath), oldPath);
    task->SetFilePath(oldPath, newPath);
    m_setBusyPaths.insert(oldPath);
    connect(task, &FtpTaskThread::SignalTaskFinished, this, [this, oldPath, newPath](bool success, const QString&) {
        m_setBusyPaths.remove(oldPath);
        Q_EMIT SignalRenameResult(success, oldPath, newPath);
    });
    Start(task);
}

void MachineStatusFtpManager::RequestDelete(const QStringList& filePaths, const QStringList& folderPaths)
{
    if (m_strIp.isEmpty() || m_bDeleting) {
        Q_EMIT SignalDeleteResult(false);
        return;
    }
    if (g_bTranslating) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestDelete FTP传输进行中，忽略删除"));
        Q_EMIT SignalDeleteResult(false);
        return;
    }
    if (filePaths.isEmpty() && folderPaths.isEmpty())
        return;
    const QString root = QStringLiteral("/");
    const QPointer<CProgressWidget> progress = CProgressWidget::CreateAutoWidget(tr("删除"), tr("正在删除，请稍候"));
    auto* task = new DeleteFtpItems(Url(root), EncodedUrl(root), filePaths, folderPaths, m_strIp);
    m_bDeleting = true;
    connect(task, &FtpTaskThread::SignalTaskFinished, this, [this, progress](bool success, const QString&) {
        m_bDeleting = false;
        Q_EMIT SignalDeleteResult(success);
        CProgressWidget::FreeAutoWidget(progress);
    });
    Start(task);
}
