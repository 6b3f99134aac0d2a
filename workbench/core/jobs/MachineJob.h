#pragma once

#include <QObject>
#include <QString>

// What a request to the machine returns: an id, progress, one result, and a way to cancel.
// A refused request is a job that ends at once with the reason. The result always arrives on
// a later turn of the event loop, so a caller may connect after the request returned; the job
// deletes itself after reporting it.
class MachineJob : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineJob)

public:
    enum class Result
    {
        Running,
        Succeeded,
        Failed,
        Refused,
        Cancelled,
    };
    Q_ENUM(Result)

    explicit MachineJob(QObject* parent = nullptr);

    static MachineJob* MakeRefused(const QString& reason, QObject* parent);

    quint64 Id() const { return m_nId; }
    Result GetResult() const { return m_eResult; }
    bool IsFinished() const { return m_eResult != Result::Running; }
    QString ErrorText() const { return m_strError; }
    qint64 DoneBytes() const { return m_nDone; }
    qint64 TotalBytes() const { return m_nTotal; }

    // Ends the job as soon as its work can stop; nothing once it has finished.
    void Cancel();

Q_SIGNALS:
    void SignalProgress(qint64 done, qint64 total);
    void SignalResult(MachineJob* job);

protected:
    void SetProgress(qint64 done, qint64 total);
    // The first call decides the result; later ones are ignored.
    void Finish(Result result, const QString& text = QString());
    virtual void DoCancel() { Finish(Result::Cancelled); }

private:
    quint64 m_nId;
    Result m_eResult = Result::Running;
    QString m_strError;
    qint64 m_nDone = 0;
    qint64 m_nTotal = 0;
};
