#pragma once

#include "MachineJob.h"

#include <QList>
#include <QPointer>

// A job made of sub-jobs (a batch delete, a multi-file paste, a folder synchronisation). Its
// progress is the sum of theirs. Once sealed it ends when the last sub-job ended: failed if one
// failed, cancelled if one was cancelled, refused if all were refused, else succeeded.
class CompositeJob : public MachineJob
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CompositeJob)

public:
    explicit CompositeJob(QObject* parent = nullptr);

    void AddSubjob(MachineJob* job);
    // No more sub-jobs will come.
    void Seal();
    int RunningCount() const { return int(m_listRunning.size()); }
    // Sub-jobs that ended refused, and the reason of the first.
    int RefusedCount() const { return m_nRefused; }
    QString FirstRefusal() const { return m_strFirstRefusal; }

protected:
    void DoCancel() override;
    // Called for every sub-job that ended, before the composite decides whether it ended too.
    virtual void OnSubjobResult(MachineJob* job);
    void FinishIfDone();

private:
    void UpdateProgress();

    QList<QPointer<MachineJob>> m_listRunning;
    bool m_bSealed = false;
    bool m_bCancelled = false;
    int m_nFailed = 0;
    int m_nRefused = 0;
    int m_nEnded = 0;
    QString m_strFirstError;
    QString m_strFirstRefusal;
    qint64 m_nDoneEnded = 0;
    qint64 m_nTotalEnded = 0;
};
