#include "FakeMachineTasks.h"

#include <QTimer>

void FakeMachineTask::Stop()
{
    ++s_nStops;
    QTimer::singleShot(0, this, [this]() { End(false, QStringLiteral("stopped")); });
}

void FakeMachineTask::End(bool ok, const QString& message)
{
    if (!m_bStarted)
        return;
    m_bStarted = false;
    Q_EMIT SignalFinished(ok, message);
}

FakeMachineTask* FakeTaskFactory::Make(const QString& kind, const QString& path, QList<FtpFileInfo> entries) const
{
    auto* task = new FakeMachineTask(kind, path, std::move(entries));
    m_listTasks.append(task);
    ++m_hashCreated[kind];
    return task;
}

MachineTask* FakeTaskFactory::Upload(const MachineEndpoint&, const QString&, const QString& machinePath) const
{
    return Make(QStringLiteral("upload"), machinePath);
}

MachineTask* FakeTaskFactory::Download(const MachineEndpoint&, const QString& machinePath, const QString&, qint64) const
{
    return Make(QStringLiteral("download"), machinePath);
}

MachineTask* FakeTaskFactory::DeleteFile(const MachineEndpoint&, const QString& path) const
{
    return Make(QStringLiteral("delete"), path);
}

MachineTask* FakeTaskFactory::DeleteFolder(const MachineEndpoint&, const QString& path) const
{
    return Make(QStringLiteral("delete"), path);
}

MachineTask* FakeTaskFactory::DeleteItems(const MachineEndpoint&, const QStringList& files,
                                          const QStringList& folders) const
{
    return Make(QStringLiteral("delete"), (files + folders).join(QLatin1Char(',')));
}

MachineTask* FakeTaskFactory::Rename(const MachineEndpoint&, const QString& oldPath, const QString&) const
{
    return Make(QStringLiteral("rename"), oldPath);
}

MachineTask* FakeTaskFactory::MakeDir(const MachineEndpoint&, const QString& path) const
{
    return Make(QStringLiteral("mkdir"), path);
}

MachineTask* FakeTaskFactory::List(const MachineEndpoint&, const QString& folder) const
{
    FakeMachineTask* task = Make(QStringLiteral("list"), folder, m_hashFolders.value(folder));
    QTimer::singleShot(0, task, [task]() { task->End(true); });
    return task;
}

MachineTask* FakeTaskFactory::Check(const MachineEndpoint&) const
{
    return Make(QStringLiteral("check"), QStringLiteral("/"));
}

QList<FakeMachineTask*> FakeTaskFactory::Running(const QString& kind) const
{
    QList<FakeMachineTask*> running;
    for (const QPointer<FakeMachineTask>& task : m_listTasks) {
        if (task && task->m_strKind == kind && task->m_bStarted)
            running.append(task);
    }
    return running;
}

int FakeTaskFactory::Created(const QString& kind) const
{
    return m_hashCreated.value(kind);
}
