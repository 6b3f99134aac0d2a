#pragma once

#include "MachineTask.h"
#include "MachineTaskFactory.h"

#include <QHash>
#include <QList>
#include <QPointer>

// A task that does nothing until the test ends it; Stop ends it failed, as a stopped host task does.
class FakeMachineTask final : public MachineTask
{
    Q_OBJECT

public:
    FakeMachineTask(QString kind, QString path, QList<FtpFileInfo> entries = {})
        : m_strKind(std::move(kind)), m_strPath(std::move(path)), m_listEntries(std::move(entries))
    {}

    void Start() override { m_bStarted = true; }
    void Stop() override;
    bool Wait(QDeadlineTimer) override { return true; }
    QList<FtpFileInfo> Entries() const override { return m_listEntries; }
    void End(bool ok, const QString& message = QString());

    QString m_strKind;
    QString m_strPath;
    QList<FtpFileInfo> m_listEntries;
    bool m_bStarted = false;
    // Stop requests of all fake tasks: a stopped task is deleted once it reported its end.
    static inline int s_nStops = 0;
};

// Hands out fake tasks and keeps them for the test; listings answer at once with the entries
// given for their folder.
class FakeTaskFactory final : public MachineTaskFactory
{
public:
    MachineTask* Upload(const MachineEndpoint&, const QString& localPath, const QString& machinePath) const override;
    MachineTask* Download(const MachineEndpoint&, const QString& machinePath, const QString& localPath,
                          qint64 listedSize) const override;
    MachineTask* DeleteFile(const MachineEndpoint&, const QString& path) const override;
    MachineTask* DeleteFolder(const MachineEndpoint&, const QString& path) const override;
    MachineTask* DeleteItems(const MachineEndpoint&, const QStringList& files,
                             const QStringList& folders) const override;
    MachineTask* Rename(const MachineEndpoint&, const QString& oldPath, const QString& newPath) const override;
    MachineTask* MakeDir(const MachineEndpoint&, const QString& path) const override;
    MachineTask* List(const MachineEndpoint&, const QString& folder) const override;
    MachineTask* Check(const MachineEndpoint&) const override;

    // The started tasks of a kind ("upload", "download", "delete", "rename", "mkdir", "list") not yet ended.
    QList<FakeMachineTask*> Running(const QString& kind) const;
    int Created(const QString& kind) const;

    QHash<QString, QList<FtpFileInfo>> m_hashFolders;
    mutable QList<QPointer<FakeMachineTask>> m_listTasks;
    mutable QHash<QString, int> m_hashCreated;

private:
    FakeMachineTask* Make(const QString& kind, const QString& path, QList<FtpFileInfo> entries = {}) const;
};
