#include "FleetSendJob.h"

#include "MachineFileService.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

FleetSendJob::FleetSendJob(MachineFileService* files, const QList<Target>& targets, const QStringList& localFiles,
                           const QString& machineFolder, Asker asker, QObject* parent)
    : CompositeJob(parent), m_pFiles(files), m_listTargets(targets), m_fnAsk(std::move(asker))
{
    const QString folder = machineFolder.endsWith(QLatin1Char('/')) ? machineFolder : machineFolder + QLatin1Char('/');
    for (const QString& local : localFiles)
        m_listItems.append({true, local, folder + QFileInfo(local).fileName(), OperationCopy});
}

void FleetSendJob::Start()
{
    m_iListing = int(m_listTargets.size());
    if (m_iListing == 0) {
        Seal();
        return;
    }
    for (const Target& target : std::as_const(m_listTargets)) {
        m_pFiles->FindExisting(
            target.endpoint, m_listItems, this,
            [this, target](bool ok, QList<OverwriteEntry> entries) { OnListed(target, ok, entries); });
    }
}

void FleetSendJob::OnListed(const Target& target, bool ok, const QList<OverwriteEntry>& entries)
{
    if (!ok)
        m_listUnlisted.append(target.iRow);
    else if (!entries.isEmpty())
        m_listExisting.append({target.endpoint, entries});
    if (--m_iListing > 0 || IsFinished())
        return;
    if (m_listExisting.isEmpty() || !m_fnAsk) {
        SendAll();
        return;
    }
    const QPointer<FleetSendJob> guard(this);
    m_fnAsk(m_listExisting, [guard](bool bReplace) {
        if (!guard || guard->IsFinished())
            return;
        if (bReplace) {
            guard->SendAll();
            return;
        }
        for (const Target& each : std::as_const(guard->m_listTargets))
            Q_EMIT guard->SignalMachineEnded(each.iRow, false, tr("未发送：未同意覆盖"));
        guard->Cancel();
    });
}

void FleetSendJob::SendAll()
{
    for (const Target& target : std::as_const(m_listTargets)) {
        if (m_listUnlisted.contains(target.iRow))
            Track(target.iRow, MachineJob::MakeRefused(tr("无法读取机床文件夹，未发送"), this));
        else
            Track(target.iRow, m_pFiles->Transfer(target.endpoint, m_listItems, RequestOrigin::Fleet, true));
    }
    Seal();
}

void FleetSendJob::Track(int row, MachineJob* job)
{
    connect(job, &MachineJob::SignalProgress, this,
            [this, row](qint64 done, qint64 total) { Q_EMIT SignalMachineProgress(row, done, total); });
    connect(job, &MachineJob::SignalResult, this, [this, row](MachineJob* ended) {
        const auto* batch = qobject_cast<const CompositeJob*>(ended);
        const int refused = batch ? batch->RefusedCount() : 0;
        switch (ended->GetResult()) {
        case Result::Succeeded:
            if (refused == 0)
                Q_EMIT SignalMachineEnded(row, true, tr("已发送 %1 个程序").arg(m_listItems.size()));
            else
                Q_EMIT SignalMachineEnded(row, false,
                                          tr("已发送 %1 个程序，%2 个被拒绝：%3")
                                              .arg(m_listItems.size() - refused)
                                              .arg(refused)
                                              .arg(batch->FirstRefusal()));
            break;
        case Result::Cancelled:
            Q_EMIT SignalMachineEnded(row, false, tr("已取消"));
            break;
        default:
            Q_EMIT SignalMachineEnded(row, false, tr("失败：%1").arg(ended->ErrorText()));
            break;
        }
    });
    AddSubjob(job);
}
