#include "FolderSyncJob.h"

#include "CDebugLog.h"
#include "FolderSyncComparer.h"
#include "FolderSyncScanner.h"
#include "LogColors.h"
#include "MachineFileService.h"
#include "MachineTask.h"
#include "MachineTaskFactory.h"

#include <QDebug>
#include <QDir>
#include <QPointer>

namespace {
// Button codes of the conflict question (the host message box's Yes, No and Ignore).
constexpr int AnswerKeepLocal = 0x0004;
constexpr int AnswerKeepMachine = 0x0008;
constexpr int AnswerSkip = 0x0800;
constexpr int NoticeInformation = 1;
} // namespace

FolderSyncJob::FolderSyncJob(MachineFileService* files, const MachineEndpoint& endpoint, const QString& localFolder,
                             const QString& machineFolder, const Options& options, QObject* parent)
    : CompositeJob(parent), m_pFiles(files), m_endpoint(endpoint),
      m_strLocalFolder(QDir::fromNativeSeparators(localFolder)), m_strMachineFolder(machineFolder), m_options(options),
      m_pScanner(new FolderSyncScanner(this)), m_pComparer(new FolderSyncComparer(files, this))
{
    connect(m_pScanner, &FolderSyncScanner::SignalScanned, this, &FolderSyncJob::OnScanned);
    connect(m_pComparer, &FolderSyncComparer::SignalCompared, this, &FolderSyncJob::OnCompared);
}

FolderSyncJob::~FolderSyncJob() = default;

void FolderSyncJob::SetPhase(Phase phase)
{
    m_ePhase = phase;
    qDebug() << "folder sync phase" << phase;
}

void FolderSyncJob::Log(const QString& text, const QColor& color)
{
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, color);
}

QString FolderSyncJob::LocalPath(const QString& rel) const
{
    return QDir::cleanPath(m_strLocalFolder + QLatin1Char('/') + rel);
}

QString FolderSyncJob::MachinePath(const QString& rel) const
{
    return QDir::cleanPath(m_strMachineFolder + QLatin1Char('/') + rel);
}

void FolderSyncJob::Start()
{
    qDebug() << "localPath:" << m_strLocalFolder << "machinePath:" << m_strMachineFolder;
    CDebugLog::AddLog(
        QStringLiteral("同步文件夹入口：localPath=%1, machinePath=%2").arg(m_strLocalFolder, m_strMachineFolder));
    SetPhase(Phase::Scanning);
    m_pScanner->Start(m_endpoint, m_strLocalFolder, m_strMachineFolder, m_options.bSubfolders);
}

void FolderSyncJob::OnScanned(bool ok, const QList<SyncEntry>& local, const QList<SyncEntry>& machine,
                              const QString& error)
{
    if (IsFinished())
        return;
    if (!ok) {
        Log(tr("同步失败：无法读取机床文件夹 %1（%2）").arg(m_strMachineFolder, error), LogColors::Failure);
        SetPhase(Phase::Ended);
        Finish(Result::Failed, error);
        return;
    }
    m_plan = FolderSyncPlan::Compute(local, machine);
    if (m_options.bCompareContent && !m_plan.listSameSize.isEmpty()) {
        SetPhase(Phase::Comparing);
        m_hold = m_pFiles->Activity()->Begin(m_endpoint.strIp);
        m_pComparer->Start(m_endpoint, m_strLocalFolder, m_strMachineFolder, m_plan.listSameSize);
        return;
    }
    OnCompared({});
}

void FolderSyncJob::OnCompared(const QList<SyncConflict>& differing)
{
    if (IsFinished())
        return;
    m_hold.reset();
    m_plan.listConflict += differing;
    CDebugLog::AddLog(QStringLiteral("同步差异计算完成: 上传 %1 个, 下载 %2 个, 冲突 %3 个")
                          .arg(m_plan.listUpload.size())
                          .arg(m_plan.listDownload.size())
                          .arg(m_plan.listConflict.size()));
    Decide();
}

void FolderSyncJob::Decide()
{
    SetPhase(Phase::Deciding);
    // An empty preview would say nothing; "nothing to do" says it.
    if (m_options.bPreview && m_fnReviewPlan && !m_plan.IsEmpty()) {
        const QPointer<FolderSyncJob> guard(this);
        m_fnReviewPlan(m_plan, [guard](bool bConfirmed, const FolderSyncPlan& plan) {
            if (!guard || guard->IsFinished())
                return;
            if (!bConfirmed) {
                guard->Log(tr("同步已取消"), LogColors::Warning);
                guard->StopWork();
                guard->Finish(Result::Cancelled);
                return;
            }
            // The reviewer decided the conflicts: they are in the two lists already.
            guard->m_plan = plan;
            guard->m_plan.listConflict.clear();
            guard->AfterDecisions();
        });
        return;
    }
    AskConflict(0);
}

void FolderSyncJob::AskConflict(int index)
{
    if (index >= m_plan.listConflict.size() || !m_fnAskConflict) {
        m_nSkipped += int(m_plan.listConflict.size()) - index;
        AfterDecisions();
        return;
    }
    const SyncConflict conflict = m_plan.listConflict.at(index);
    const QPointer<FolderSyncJob> guard(this);
    m_fnAskConflict(conflict, [guard, conflict, index](int answer) {
        if (!guard || guard->IsFinished())
            return;
        CDebugLog::AddLog(QStringLiteral("同步文件夹冲突处理: file=%1, ret=%2(Yes=%3/No=%4/Ignore=%5)")
                              .arg(conflict.local.strRelPath)
                              .arg(answer)
                              .arg(AnswerKeepLocal)
                              .arg(AnswerKeepMachine)
                              .arg(AnswerSkip));
        if (answer == AnswerKeepLocal)
            guard->m_plan.listUpload.append(conflict.local);
        else if (answer == AnswerKeepMachine)
            guard->m_plan.listDownload.append(conflict.machine);
        else
            ++guard->m_nSkipped;
        guard->AskConflict(index + 1);
    });
}

void FolderSyncJob::AfterDecisions()
{
    if (m_plan.listUpload.isEmpty() && m_plan.listDownload.isEmpty() && m_plan.listMachineDirs.isEmpty() &&
        m_plan.listLocalDirs.isEmpty()) {
        if (m_nSkipped == 0) {
            Q_EMIT SignalNotice(NoticeInformation, tr("当前目录已同步，无需操作"));
            Log(tr("当前目录已同步，无需操作"), LogColors::Success);
            LogLeftOut();
            SetPhase(Phase::Ended);
            Finish(Result::Succeeded);
            return;
        }
        CDebugLog::AddLog(QStringLiteral("同步文件夹 ExecuteSyncTransmission：无可传输文件，直接清理"));
        End();
        return;
    }
    for (const QString& rel : std::as_const(m_plan.listLocalDirs)) {
        if (!QDir().mkpath(LocalPath(rel))) {
            ++m_nFailCount;
            m_listFailures.append(tr("%1（无法创建本地文件夹）").arg(rel));
        }
    }
    SetPhase(Phase::MakingFolders);
    m_hold = m_pFiles->Activity()->Begin(m_endpoint.strIp);
    CreateMachineFolders();
}

void FolderSyncJob::CreateMachineFolders()
{
    if (IsFinished())
        return;
    if (m_plan.listMachineDirs.isEmpty()) {
        StartTransfers();
        return;
    }
    // One after the other: a parent must exist before its child is made.
    const QString rel = m_plan.listMachineDirs.takeFirst();
    MachineJob* job = m_pFiles->MakeDir(m_endpoint, MachinePath(rel), RequestOrigin::Sync);
    connect(job, &MachineJob::SignalResult, this, [this, rel](MachineJob* ended) {
        if (IsFinished())
            return;
        if (ended->GetResult() != Result::Succeeded) {
            ++m_nFailCount;
            m_listFailures.append(tr("%1（无法创建机床文件夹：%2）").arg(rel, ended->ErrorText()));
        }
        CreateMachineFolders();
    });
}

void FolderSyncJob::StartTransfers()
{
    SetPhase(Phase::Transferring);
    for (const bool bUpload : {true, false}) {
        for (const SyncEntry& entry : bUpload ? m_plan.listUpload : m_plan.listDownload)
            m_queue.enqueue(Item{bUpload, entry.strRelPath, bUpload ? -1 : entry.iSize});
    }
    const int planned = int(m_queue.size());
    CDebugLog::AddLog(QStringLiteral("同步执行: 计划上传 %1 个, 计划下载 %2 个, 总任务 %3")
                          .arg(m_plan.listUpload.size())
                          .arg(m_plan.listDownload.size())
                          .arg(planned));
    Q_EMIT SignalAppendLog(tr("同步开始：计划上传 %1 个, 计划下载 %2 个, 总任务 %3个")
                               .arg(m_plan.listUpload.size())
                               .arg(m_plan.listDownload.size())
                               .arg(planned),
                           LogColors::Success);
    TopUp();
}

void FolderSyncJob::TopUp()
{
    // Refilled in bursts once a transfer slot is free: the files of a burst share the history
    // step's one listing of their folder, which takes that slot's login.
    const bool bRefill = !m_waitingHold && RunningCount() < m_pFiles->MaxTransfers();
    while (bRefill && RunningCount() < MaxSyncQueued && !m_queue.isEmpty()) {
        const Item item = m_queue.dequeue();
        const TransferItem transfer{
            item.bUpload, LocalPath(item.strRelPath), MachinePath(item.strRelPath), OperationCopy,
            false,        item.iMachineSize};
        // The conflict question was this run's overwrite question: it is not asked again.
        MachineJob* job = m_pFiles->Transfer(m_endpoint, {transfer}, RequestOrigin::Sync, true);
        m_hashPathOfJob.insert(job, transfer.strMachinePath);
        AddSubjob(job);
    }
    if (RunningCount() == 0 && m_queue.isEmpty())
        End();
}

void FolderSyncJob::OnSubjobResult(MachineJob* job)
{
    if (IsFinished())
        return;
    const QString path = m_hashPathOfJob.take(job);
    switch (job->GetResult()) {
    case Result::Succeeded:
        ++m_nDone;
        break;
    case Result::Refused:
        // The funnel logged why (the running program, a name the machine refuses...).
        ++m_nSkipped;
        break;
    default:
        ++m_nFailCount;
        m_listFailures.append(job->ErrorText().isEmpty() ? path : tr("%1（%2）").arg(path, job->ErrorText()));
        // A failure may mean the machine is gone: nothing more starts until it answers.
        if (!m_waitingHold)
            m_waitingHold = m_pFiles->HoldWaiting(m_endpoint.strIp);
        break;
    }
    ProbeWhenSlotFree();
    TopUp();
}

void FolderSyncJob::ProbeWhenSlotFree()
{
    // The probe is a login of its own: it waits for a slot, so the machine never sees more logins
    // than transfers allowed at once.
    if (!m_waitingHold || m_bProbing ||
        (RunningCount() > 0 && m_pFiles->RunningCount(m_endpoint.strIp) >= m_pFiles->MaxTransfers()))
        return;
    ProbeMachine();
}

void FolderSyncJob::ProbeMachine()
{
    m_bProbing = true;
    MachineTask* task = MachineTaskFactory::Default()->Check(m_endpoint);
    connect(task, &MachineTask::SignalFinished, this, [this](bool ok) {
        m_bProbing = false;
        if (IsFinished())
            return;
        if (!ok) {
            Interrupt();
            return;
        }
        m_waitingHold.reset();
        TopUp();
    });
    m_tasks.Start(task);
}

void FolderSyncJob::LogLeftOut()
{
    if (m_plan.iLeftOutType + m_plan.iLeftOutHidden == 0)
        return;
    Log(tr("未参与同步 %1 个文件：%2 个不是机床程序类型，%3 个为隐藏文件")
            .arg(m_plan.iLeftOutType + m_plan.iLeftOutHidden)
            .arg(m_plan.iLeftOutType)
            .arg(m_plan.iLeftOutHidden),
        LogColors::Plain);
}

void FolderSyncJob::End()
{
    if (IsFinished())
        return;
    CDebugLog::AddLog(QStringLiteral("同步文件夹 SlotSyncStatusClear enter: failCount=%1, pending=%2")
                          .arg(m_nFailCount)
                          .arg(m_queue.size()));
    SetPhase(Phase::Ended);
    m_hold.reset();
    m_waitingHold.reset();
    Log(tr("同步结果：成功 %1 个，失败 %2 个，跳过 %3 个").arg(m_nDone).arg(m_nFailCount).arg(m_nSkipped),
        LogColors::Plain);
    LogLeftOut();
    if (m_nFailCount < 1) {
        Q_EMIT SignalAppendLog(tr("同步完成"), LogColors::Success);
        CDebugLog::AddLog(QStringLiteral("同步批次全部完成"));
        Finish(Result::Succeeded);
        return;
    }
    for (const QString& failure : std::as_const(m_listFailures))
        Log(tr("同步失败文件：%1").arg(failure), LogColors::Failure);
    Q_EMIT SignalAppendLog(tr("同步失败：%1 个文件传输失败").arg(m_nFailCount), LogColors::Failure);
    CDebugLog::AddLog(QStringLiteral("同步批次结束，%1 个文件传输失败").arg(m_nFailCount));
    Finish(Result::Failed, tr("%1 个文件传输失败").arg(m_nFailCount));
}

void FolderSyncJob::Interrupt()
{
    if (IsFinished())
        return;
    const int notSent = int(m_queue.size()) + RunningCount();
    CDebugLog::AddLog(QStringLiteral("StopSyncAndRestoreState: phase=%1, queue=%2, active=%3")
                          .arg(int(m_ePhase))
                          .arg(m_queue.size())
                          .arg(RunningCount()));
    Log(tr("同步已中断：与机床断开连接"), LogColors::Failure);
    if (m_ePhase == Phase::Transferring && notSent > 0)
        Log(tr("%1 个文件未同步，机床恢复连接后再次同步只会传输缺少的文件").arg(notSent), LogColors::Warning);
    Cancel();
}

void FolderSyncJob::StopWork()
{
    SetPhase(Phase::Ended);
    m_queue.clear();
    m_hold.reset();
    m_waitingHold.reset();
    m_pScanner->Cancel();
    m_pComparer->Cancel();
    m_tasks.RequestStopAll();
}

void FolderSyncJob::DoCancel()
{
    StopWork();
    // The run ends now; transfers already under way end as their own rows say.
    CompositeJob::DoCancel();
    Finish(Result::Cancelled);
}
