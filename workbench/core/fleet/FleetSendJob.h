#pragma once

#include "CompositeJob.h"
#include "FileRequest.h"
#include "MachineEndpoint.h"

#include <QStringList>
#include <functional>

class MachineFileService;

// Sends local programs to several machines at once: one upload request per machine through the
// funnel, so that every check applies per machine. One overwrite question covers the whole send;
// a machine that fails or is refused ends with its reason and the others go on.
class FleetSendJob final : public CompositeJob
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FleetSendJob)

public:
    struct Target
    {
        int iRow = -1; // the caller's name for the machine, handed back in the signals
        MachineEndpoint endpoint;
    };
    struct Existing
    {
        MachineEndpoint endpoint;
        QList<OverwriteEntry> entries;
    };
    using Asker = std::function<void(const QList<Existing>& existing, std::function<void(bool)> answer)>;

    FleetSendJob(MachineFileService* files, const QList<Target>& targets, const QStringList& localFiles,
                 const QString& machineFolder, Asker asker, QObject* parent = nullptr);

    // Lists the target folders, asks once if files would be replaced, then sends.
    void Start();

Q_SIGNALS:
    void SignalMachineProgress(int row, qint64 done, qint64 total);
    // One line per machine: what was sent, or why not.
    void SignalMachineEnded(int row, bool ok, const QString& summary);

private:
    void OnListed(const Target& target, bool ok, const QList<OverwriteEntry>& entries);
    void SendAll();
    void Track(int row, MachineJob* job);

    MachineFileService* m_pFiles;
    QList<Target> m_listTargets;
    QList<TransferItem> m_listItems;
    Asker m_fnAsk;
    int m_iListing = 0;
    QList<Existing> m_listExisting;
    QList<int> m_listUnlisted;
};
