#include "MachineJob.h"

#include <atomic>

namespace {
std::atomic<quint64> g_nNextJobId{1};
} // namespace

MachineJob::MachineJob(QObject* parent) : QObject(parent), m_nId(g_nNextJobId++) {}

MachineJob* MachineJob::MakeRefused(const QString& reason, QObject* parent)
{
    auto* job = new MachineJob(parent);
    job->Finish(Result::Refused, reason);
    return job;
}

void MachineJob::Cancel()
{
    if (!IsFinished())
        DoCancel();
}

void MachineJob::SetProgress(qint64 done, qint64 total)
{
    m_nDone = done;
    m_nTotal = total;
    Q_EMIT SignalProgress(done, total);
}

void MachineJob::Finish(Result result, const QString& text)
{
    if (IsFinished() || result == Result::Running)
        return;
    m_eResult = result;
    m_strError = text;
    QMetaObject::invokeMethod(
        this,
        [this]() {
            Q_EMIT SignalResult(this);
            deleteLater();
        },
        Qt::QueuedConnection);
}
