#include "CompositeJob.h"

CompositeJob::CompositeJob(QObject* parent) : MachineJob(parent) {}

void CompositeJob::AddSubjob(MachineJob* job)
{
    m_listRunning.append(job);
    connect(job, &MachineJob::SignalProgress, this, &CompositeJob::UpdateProgress);
    connect(job, &MachineJob::SignalResult, this, [this](MachineJob* ended) {
        m_listRunning.removeAll(ended);
        ++m_nEnded;
        m_nDoneEnded += ended->DoneBytes();
        m_nTotalEnded += ended->TotalBytes();
        switch (ended->GetResult()) {
        case Result::Succeeded:
            break;
        case Result::Refused:
            if (m_nRefused++ == 0)
                m_strFirstRefusal = ended->ErrorText();
            break;
        case Result::Cancelled:
            m_bCancelled = true;
            break;
        default:
            ++m_nFailed;
            if (m_strFirstError.isEmpty())
                m_strFirstError = ended->ErrorText();
            break;
        }
        OnSubjobResult(ended);
        UpdateProgress();
        FinishIfDone();
    });
    if (m_bCancelled)
        job->Cancel();
}

void CompositeJob::Seal()
{
    m_bSealed = true;
    FinishIfDone();
}

void CompositeJob::DoCancel()
{
    m_bCancelled = true;
    const QList<QPointer<MachineJob>> running = m_listRunning;
    for (const QPointer<MachineJob>& job : running) {
        if (job)
            job->Cancel();
    }
    Seal();
}

void CompositeJob::OnSubjobResult(MachineJob*) {}

void CompositeJob::FinishIfDone()
{
    if (!m_bSealed || !m_listRunning.isEmpty() || IsFinished())
        return;
    if (m_nFailed > 0)
        Finish(Result::Failed, m_strFirstError);
    else if (m_bCancelled)
        Finish(Result::Cancelled);
    else if (m_nEnded > 0 && m_nRefused == m_nEnded)
        Finish(Result::Refused);
    else
        Finish(Result::Succeeded);
}

void CompositeJob::UpdateProgress()
{
    qint64 done = m_nDoneEnded;
    qint64 total = m_nTotalEnded;
    for (const QPointer<MachineJob>& job : std::as_const(m_listRunning)) {
        if (job) {
            done += job->DoneBytes();
            total += job->TotalBytes();
        }
    }
    SetProgress(done, total);
}
