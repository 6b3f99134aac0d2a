#include "FolderSync.h"

#include "MachineFileService.h"

#include <QDir>

namespace {
// Icons of the notices (the host message box's information and failure icons).
constexpr int NoticeInformation = 1;
constexpr int NoticeFailure = 3;
} // namespace

FolderSync::FolderSync(MachineFileService* files, QObject* parent) : QObject(parent), m_pFiles(files) {}

void FolderSync::SetButtonState(int state)
{
    m_iButtonState = state;
    Q_EMIT SignalButtonStateChanged(state);
}

FolderSyncJob* FolderSync::Start(const QString& localPath, const QString& machinePath)
{
    if (IsSyncing() || m_pFiles->IsBusy()) {
        Q_EMIT SignalNotice(NoticeInformation, tr("当前有其他传输任务进行中，请稍后再试"));
        return nullptr;
    }
    if (localPath.isEmpty() || machinePath.isEmpty()) {
        Q_EMIT SignalNotice(NoticeInformation, tr("请先选择有效的同步目录"));
        return nullptr;
    }
    if (QDir(localPath).isRoot()) {
        Q_EMIT SignalNotice(NoticeFailure, tr("本地电脑当前处于根目录，不进行同步操作"));
        return nullptr;
    }
    auto* job = new FolderSyncJob(m_pFiles, m_pFiles->Endpoint(), localPath, machinePath, m_options, this);
    job->SetConflictAsker(m_fnAskConflict);
    job->SetPlanReviewer(m_fnReviewPlan);
    connect(job, &FolderSyncJob::SignalAppendLog, this, &FolderSync::SignalAppendLog);
    connect(job, &FolderSyncJob::SignalNotice, this, &FolderSync::SignalNotice);
    connect(job, &MachineJob::SignalResult, this, [this](MachineJob* ended) {
        SetButtonState(ended->GetResult() == MachineJob::Result::Succeeded ? ButtonFinished : ButtonIdle);
    });
    m_pJob = job;
    SetButtonState(ButtonRunning);
    job->Start();
    return job;
}

void FolderSync::StopSyncAndRestoreState()
{
    if (m_pJob && !m_pJob->IsFinished())
        m_pJob->Interrupt();
    m_pJob = nullptr;
    SetButtonState(ButtonIdle);
}
