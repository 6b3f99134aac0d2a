#pragma once

#include "HistorySettings.h"
#include "HistoryVersion.h"
#include "MachineEndpoint.h"
#include "TaskOwner.h"

#include <QColor>
#include <QHash>
#include <QObject>
#include <functional>
#include <map>
#include <memory>

class HistoryStore;
class MachineFileService;
class MachineJob;

// The machines' program histories and the funnel's step that fills them: before a program is
// replaced, renamed over or deleted, its current copy is fetched from the machine (nothing is
// written there) and kept. A program that cannot be kept is not given up.
class ProgramHistory final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProgramHistory)

public:
    // Registers itself with the funnel, whose fetches and listings it uses.
    explicit ProgramHistory(MachineFileService* files, QObject* parent = nullptr);
    ~ProgramHistory() override;

    // Where the histories live: one folder per machine below it.
    void SetRootFolder(const QString& folder) { m_strRoot = folder; }
    QString RootFolder() const { return m_strRoot; }

    // Keeps the current copy of every lost path that exists on the machine. `done` gets, by
    // machine path, why a copy could not be kept; those paths must stay as they are.
    void Keep(const MachineEndpoint& endpoint, const QList<HistoryLoss>& losses,
              std::function<void(QHash<QString, QString>)> done);
    // The history of a machine, opened on first use; null, with the reason, when it cannot be read.
    HistoryStore* Store(const QString& sn, QString* error = nullptr);
    // Writes a kept version to `localPath` (a compare, or the source of a restore).
    bool Export(const QString& sn, const HistoryVersion& version, const QString& localPath) const;
    // Puts a kept version back in its place on the machine: an upload through the funnel, so the
    // copy it replaces is kept in its turn.
    MachineJob* Restore(const MachineEndpoint& endpoint, const HistoryVersion& version);

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    // A version of this machine was added.
    void SignalChanged(QString sn);

private:
    struct Pending;

    void KeepFolder(const MachineEndpoint& endpoint, const QString& folder, const QList<HistoryLoss>& losses,
                    const std::shared_ptr<Pending>& pending);
    // Keeps every program below a folder that is about to go.
    void KeepTree(const MachineEndpoint& endpoint, const QString& folder, const HistoryLoss& loss,
                  const std::shared_ptr<Pending>& pending);
    // False, with a log line, for a program too large to keep.
    bool WithinLimit(const QString& machinePath, qint64 size, const std::shared_ptr<Pending>& pending);
    void KeepFile(const MachineEndpoint& endpoint, const HistoryLoss& loss, const QString& machinePath, qint64 size,
                  const std::shared_ptr<Pending>& pending);
    // `key` is the path as the funnel asked for it.
    void Record(const QString& sn, HistoryVersion version, const QString& key, const std::shared_ptr<Pending>& pending);
    void Log(const QString& text, const QColor& color);

    MachineFileService* m_pFiles;
    QString m_strRoot;
    std::map<QString, std::unique_ptr<HistoryStore>> m_mapStores;
    TaskOwner m_tasks;
};
