#include "FolderSync.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "CheckConnect.h"
#include "FolderSyncComparer.h"
#include "FolderSyncScanner.h"
#include "KorvBaseGlobals.h"
#include "LogColors.h"
#include "MakeFtpDirection.h"
#include "TransferOrchestrator.h"

#include <QDebug>
#include <QDir>
#include <QTimer>
#include <QUrl>

FolderSync::FolderSync(TransferOrchestrator* transfers, QObject* parent)
    : QObject(parent), m_pTransfers(transfers), m_pScanner(new FolderSyncScanner(this)),
      m_pComparer(new FolderSyncComparer(this))
{
    connect(m_pComparer, &FolderSyncComparer::SignalCompared, this, &FolderSync::OnCompared);
    connect(m_pScanner, &FolderSyncScanner::SignalScanned, this, &FolderSync::OnScanned);
    connect(m_pTransfers, &TransferOrchestrator::SignalTransferFinished, this, &FolderSync::OnTransferFinished);
}

FolderSync::~FolderSync() = default;

void FolderSync::SetButtonState(int state)
{
    m_iButtonState = state;
    Q_EMIT SignalButtonStateChanged(state);
}

void FolderSync::Log(const QString& text, const QColor& color)
{
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, color);
}

QString FolderSync::LocalPath(const QString& rel) const
{
    return QDir::cleanPath(m_strLocalFolder + QLatin1Char('/') + rel);
}

QString FolderSync::MachinePath(const QString& rel) const
{
    return QDir::cleanPath(m_strMachineFolder + QLatin1Char('/') + rel);
}

void FolderSync::Start(const QString& localPath, const QString& machinePath)
{
    if (IsSyncing() || m_pTransfers->IsBusy() || g_bTranslating) {
        Q_EMIT SignalNotice(MsgIconInformation, tr("当前有其他传输任务进行中，请稍后再试"));
        return;
    }
    qDebug() << "localPath:" << localPath << "machinePath:" << machinePath;
    CDebugLog::AddLog(QStringLiteral("同步文件夹入口：localPath=%1, machinePath=%2").arg(localPath, machinePath));
    if (localPath.isEmpty() || machinePath.isEmpty()) {
        Q_EMIT SignalNotice(MsgIconInformation, tr("请先选择有效的同步目录"));
        return;
    }
    if (QDir(localPath).isRoot()) {
        Q_EMIT SignalNotice(MsgIconFailure, tr("本地电脑当前处于根目录，不进行同步操作"));
        return;
    }
    ResetRun();
    m_strLocalFolder = QDir::fromNativeSeparators(localPath);
    m_strMachineFolder = machinePath;
    m_bPreparing = true;
    SetButtonState(ButtonRunning);
    m_pScanner->Start(m_pTransfers->MachineIp(), m_strLocalFolder, m_strMachineFolder, m_bSubfolders);
}

void FolderSync::OnScanned(bool ok, const QList<SyncEntry>& local, const QList<SyncEntry>& machine,
                           const QString& error)
{
    if (!ok) {
        m_bPreparing = false;
        Log(tr("同步失败：无法读取机床文件夹 %1（%2）").arg(m_strMachineFolder, error), LogColors::Failure);
        SetButtonState(ButtonIdle);
        return;
    }
    const FolderSyncPlan plan = FolderSyncPlan::Compute(local, machine);
    m_listSyncUpload = plan.listUpload;
    m_listSyncDownload = plan.listDownload;
    m_listSyncConflict = plan.listConflict;
    m_listMachineDirs = plan.listMachineDirs;
    m_listLocalDirs = plan.listLocalDirs;
    if (m_bCompareContent && !plan.listSameSize.isEmpty()) {
        m_pComparer->Start(m_pTransfers->MachineIp(), m_strLocalFolder, m_strMachineFolder, plan.listSameSize);
        return;
    }
    OnCompared({});
}

void FolderSync::OnCompared(const QList<SyncConflict>& differing)
{
    m_listSyncConflict += differing;
    CDebugLog::AddLog(QStringLiteral("同步差异计算完成: 上传 %1 个, 下载 %2 个, 冲突 %3 个")
                          .arg(m_listSyncUpload.size())
                          .arg(m_listSyncDownload.size())
                          .arg(m_listSyncConflict.size()));
    // The boxes that follow run their own event loop: never inside the listing's signal.
    const quint64 generation = m_nGeneration;
    QTimer::singleShot(0, this, [this, generation]() { ResolveConflicts(generation); });
}

void FolderSync::ResolveConflicts(quint64 generation)
{
    if (generation != m_nGeneration)
        return;
    if (m_bPreview && m_fnReviewPlan) {
        FolderSyncPlan plan;
        plan.listUpload = m_listSyncUpload;
        plan.listDownload = m_listSyncDownload;
        plan.listConflict = m_listSyncConflict;
        plan.listMachineDirs = m_listMachineDirs;
        plan.listLocalDirs = m_listLocalDirs;
        const bool bConfirmed = m_fnReviewPlan(&plan);
        if (generation != m_nGeneration)
            return;
        if (!bConfirmed) {
            ResetRun();
            Log(tr("同步已取消"), LogColors::Warning);
            SetButtonState(ButtonIdle);
            return;
        }
        // The reviewer decided the conflicts: they are moved into the two lists already.
        m_listSyncUpload = plan.listUpload;
        m_listSyncDownload = plan.listDownload;
        m_listMachineDirs = plan.listMachineDirs;
        m_listLocalDirs = plan.listLocalDirs;
    } else {
        for (const SyncConflict& conflict : std::as_const(m_listSyncConflict)) {
            const int answer = m_fnAskConflict ? m_fnAskConflict(conflict) : int(MsgResultClosed);
            if (generation != m_nGeneration)
                return;
            CDebugLog::AddLog(QStringLiteral("同步文件夹冲突处理: file=%1, ret=%2(Yes=%3/No=%4/Ignore=%5)")
                                  .arg(conflict.local.strRelPath)
                                  .arg(answer)
                                  .arg(int(MsgButtonYes))
                                  .arg(int(MsgButtonNo))
                                  .arg(int(MsgButtonIgnore)));
            if (answer == MsgButtonYes)
                m_listSyncUpload.append(conflict.local);
            else if (answer == MsgButtonNo)
                m_listSyncDownload.append(conflict.machine);
            else
                ++m_nSyncSkipped;
        }
    }
    if (m_listSyncUpload.isEmpty() && m_listSyncDownload.isEmpty() && m_listSyncConflict.isEmpty() &&
        m_listMachineDirs.isEmpty() && m_listLocalDirs.isEmpty()) {
        m_bPreparing = false;
        Q_EMIT SignalNotice(MsgIconInformation, tr("当前目录已同步，无需操作"));
        Log(tr("当前目录已同步，无需操作"), LogColors::Success);
        SetButtonState(ButtonFinished);
        return;
    }
    Q_EMIT SignalPanelsBusy(true);
    for (const QString& rel : std::as_const(m_listLocalDirs)) {
        if (!QDir().mkpath(LocalPath(rel))) {
            ++m_nSyncFailCount;
            m_listFailures.append(tr("%1（无法创建本地文件夹）").arg(rel));
        }
    }
    CreateMachineFolders(generation);
}

void FolderSync::CreateMachineFolders(quint64 generation)
{
    if (generation != m_nGeneration)
        return;
    if (m_listMachineDirs.isEmpty()) {
        ExecuteSyncTransmission(m_strLocalFolder, m_strMachineFolder);
        return;
    }
    // One after the other: a parent must exist before its child is made.
    const QString rel = m_listMachineDirs.takeFirst();
    const QString path = MachinePath(rel);
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(m_pTransfers->MachineIp());
    url.setPort(21);
    url.setPath(path);
    auto* task = new MakeFtpDirection(QStringLiteral("ftp://%1:21%2").arg(m_pTransfers->MachineIp(), path),
                                      url.toString(QUrl::FullyEncoded), path, nullptr);
    connect(task, &FtpTaskThread::SignalTaskFinished, this, [this, generation, rel](bool ok, const QString& message) {
        if (generation != m_nGeneration)
            return;
        if (!ok) {
            ++m_nSyncFailCount;
            m_listFailures.append(tr("%1（无法创建机床文件夹：%2）").arg(rel, message));
        }
        CreateMachineFolders(generation);
    });
    m_tasks.Start(task);
}

void FolderSync::ExecuteSyncTransmission(const QString& localPath, const QString& machinePath)
{
    qDebug() << "executeSyncTransmission start";
    m_bPreparing = false;
    m_strLocalFolder = localPath;
    m_strMachineFolder = machinePath;
    if (m_listSyncUpload.isEmpty() && m_listSyncDownload.isEmpty()) {
        CDebugLog::AddLog(QStringLiteral("同步文件夹 ExecuteSyncTransmission：无可传输文件，直接清理"));
        SetButtonState(ButtonIdle);
        SlotSyncStatusClear();
        return;
    }
    const QString base = QStringLiteral("ftp://%1:21").arg(m_pTransfers->MachineIp());
    for (const bool bUpload : {true, false}) {
        for (const SyncEntry& entry : bUpload ? m_listSyncUpload : m_listSyncDownload) {
            const Item item{bUpload, LocalPath(entry.strRelPath), MachinePath(entry.strRelPath),
                            base + MachinePath(entry.strRelPath)};
            m_queueSync.enqueue(item);
            m_setSyncUrls.insert(item.strUrl);
        }
    }
    m_bSyncing = true;
    m_nSyncActive = 0;
    m_nSyncPending = int(m_queueSync.size());
    CDebugLog::AddLog(QStringLiteral("同步文件夹装配完成: queueSize=%1, batchUrls=%2, pending=%3")
                          .arg(m_queueSync.size())
                          .arg(m_setSyncUrls.size())
                          .arg(m_nSyncPending));
    CDebugLog::AddLog(QStringLiteral("同步执行: 计划上传 %1 个, 计划下载 %2 个, 总任务 %3")
                          .arg(m_listSyncUpload.size())
                          .arg(m_listSyncDownload.size())
                          .arg(m_nSyncPending));
    Q_EMIT SignalAppendLog(tr("同步开始：计划上传 %1 个, 计划下载 %2 个, 总任务 %3个")
                               .arg(m_listSyncUpload.size())
                               .arg(m_listSyncDownload.size())
                               .arg(m_nSyncPending),
                           LogColors::Success);
    TopUp();
}

void FolderSync::TopUp()
{
    while (!m_bHeld && m_nSyncActive < MaxSyncTransfers && !m_queueSync.isEmpty()) {
        const Item item = m_queueSync.dequeue();
        if (item.bUpload && m_pTransfers->HitsRunningProgram(item.strMachinePath, false)) {
            // The machine is running it: the one file a synchronisation must never replace.
            Log(tr("同步跳过机床正在运行的程序：%1").arg(item.strMachinePath), LogColors::Warning);
            ++m_nSyncSkipped;
            --m_nSyncPending;
            continue;
        }
        if (item.bUpload)
            m_pTransfers->Upload(item.strLocalPath, item.strMachinePath, OperationCopy);
        else
            m_pTransfers->Download(item.strLocalPath, item.strMachinePath);
        if (m_pTransfers->IsQueued(item.strUrl)) {
            ++m_nSyncActive;
        } else {
            qDebug() << "sync item refused:" << item.strUrl;
            ++m_nSyncSkipped;
            --m_nSyncPending;
        }
    }
    if (m_nSyncActive == 0 && m_queueSync.isEmpty())
        ScheduleEnd();
}

void FolderSync::ScheduleEnd()
{
    if (m_bEndScheduled)
        return;
    m_bEndScheduled = true;
    const quint64 generation = m_nGeneration;
    QTimer::singleShot(0, this, [this, generation]() {
        if (generation == m_nGeneration && m_bSyncing)
            SlotSyncStatusClear();
    });
}

void FolderSync::OnTransferFinished(const QString& url, bool ok, const QString& message)
{
    if (!m_bSyncing || !m_setSyncUrls.contains(url))
        return;
    --m_nSyncActive;
    --m_nSyncPending;
    if (ok) {
        ++m_nSyncDone;
    } else {
        ++m_nSyncFailCount;
        const QString path = url.mid(url.indexOf(QLatin1Char('/'), 6));
        m_listFailures.append(message.isEmpty() ? path : tr("%1（%2）").arg(path, message));
        // A failure may mean the machine is gone: nothing more starts until it answers.
        if (!m_bHeld)
            ProbeMachine();
    }
    TopUp();
}

void FolderSync::ProbeMachine()
{
    m_bHeld = true;
    const quint64 generation = m_nGeneration;
    auto* task = new CheckConnect(QStringLiteral("ftp://%1:21/").arg(m_pTransfers->MachineIp()), nullptr);
    connect(task, &FtpTaskThread::SignalTaskFinished, this, [this, generation](bool ok, const QString&) {
        if (generation != m_nGeneration)
            return;
        if (!ok) {
            StopSyncAndRestoreState();
            return;
        }
        m_bHeld = false;
        TopUp();
    });
    m_tasks.Start(task);
}

void FolderSync::SlotSyncStatusClear()
{
    CDebugLog::AddLog(QStringLiteral("同步文件夹 SlotSyncStatusClear enter: failCount=%1, bSyncing=%2, pending=%3")
                          .arg(m_nSyncFailCount)
                          .arg(m_bSyncing)
                          .arg(m_nSyncPending));
    const int failed = m_nSyncFailCount;
    const QStringList failures = m_listFailures;
    const QString summary =
        tr("同步结果：成功 %1 个，失败 %2 个，跳过 %3 个").arg(m_nSyncDone).arg(failed).arg(m_nSyncSkipped);
    ResetRun();
    Q_EMIT SignalPanelsBusy(false);
    Log(summary, LogColors::Plain);
    if (failed < 1) {
        SetButtonState(ButtonFinished);
        Q_EMIT SignalAppendLog(tr("同步完成"), LogColors::Success);
        CDebugLog::AddLog(QStringLiteral("同步批次全部完成"));
        return;
    }
    for (const QString& failure : failures)
        Log(tr("同步失败文件：%1").arg(failure), LogColors::Failure);
    SetButtonState(ButtonIdle);
    Q_EMIT SignalAppendLog(tr("同步失败：%1 个文件传输失败").arg(failed), LogColors::Failure);
    CDebugLog::AddLog(QStringLiteral("同步批次结束，%1 个文件传输失败").arg(failed));
}

void FolderSync::StopSyncAndRestoreState()
{
    CDebugLog::AddLog(QStringLiteral("StopSyncAndRestoreState: bSyncing=%1, Taskqueue=%2, SyncUrls =%3, active=%4, "
                                     "pending=%5")
                          .arg(m_bSyncing)
                          .arg(m_queueSync.size())
                          .arg(m_setSyncUrls.size())
                          .arg(m_nSyncActive)
                          .arg(m_nSyncPending));
    const bool bWasRunning = IsSyncing();
    const int notSent = m_nSyncPending;
    ResetRun();
    if (bWasRunning) {
        Log(tr("同步已中断：与机床断开连接"), LogColors::Failure);
        if (notSent > 0)
            Log(tr("%1 个文件未同步，机床恢复连接后再次同步只会传输缺少的文件").arg(notSent), LogColors::Warning);
    }
    SetButtonState(ButtonIdle);
    if (bWasRunning)
        Q_EMIT SignalPanelsBusy(false);
}

void FolderSync::ResetRun()
{
    ++m_nGeneration;
    m_pScanner->Cancel();
    m_pComparer->Cancel();
    m_tasks.RequestStopAll();
    m_queueSync.clear();
    m_setSyncUrls.clear();
    m_listSyncUpload.clear();
    m_listSyncDownload.clear();
    m_listSyncConflict.clear();
    m_listMachineDirs.clear();
    m_listLocalDirs.clear();
    m_listFailures.clear();
    m_bSyncing = m_bPreparing = m_bHeld = m_bEndScheduled = false;
    m_nSyncFailCount = m_nSyncPending = m_nSyncActive = m_nSyncDone = m_nSyncSkipped = 0;
}
