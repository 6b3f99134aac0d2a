#pragma once

#include "TaskOwner.h"

#include <QObject>
#include <QStringList>

// The copy or move of local files into a local folder, on the global thread pool. A name
// already taken in the folder gets a free one instead; nothing is ever overwritten, and a
// file that fails stays where it was while the rest go on.
class LocalPasteJob final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LocalPasteJob)

public:
    struct Result
    {
        int iFailed = 0;
        QStringList listLog; // the lines the user should read, in order
    };

    using QObject::QObject;

    bool IsRunning() const { return m_bRunning; }
    void Start(const QStringList& sources, const QString& targetFolder, bool bMove);
    // The work itself; touches only the file system.
    static Result Run(const QStringList& sources, const QString& targetFolder, bool bMove,
                      const TaskOwner::StopCheck& stop);

Q_SIGNALS:
    void SignalFinished(const LocalPasteJob::Result& result);

private:
    bool m_bRunning = false;
    TaskOwner m_tasks; // declared last: its destructor waits for the work before the rest goes
};
