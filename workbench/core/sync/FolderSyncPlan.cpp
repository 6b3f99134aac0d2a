#include "FolderSyncPlan.h"

#include "CommonDefine.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <algorithm>

bool FolderSyncPlan::IsSyncable(const SyncEntry& entry)
{
    const QString name = entry.Name();
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')))
        return false;
    return entry.bDir || MachineFileSuffixList.contains(QFileInfo(name).suffix().toLower());
}

FolderSyncPlan FolderSyncPlan::Compute(const QList<SyncEntry>& local, const QList<SyncEntry>& machine)
{
    FolderSyncPlan plan;
    QSet<QString> hidden;
    QSet<QString> unsupported;
    const auto index = [&](const QList<SyncEntry>& entries) {
        QHash<QString, const SyncEntry*> map;
        for (const SyncEntry& entry : entries) {
            // Inside a hidden folder nothing takes part either.
            if ((QLatin1Char('/') + entry.strRelPath).contains(QLatin1String("/."))) {
                if (!entry.bDir)
                    hidden.insert(entry.strRelPath);
            } else if (IsSyncable(entry)) {
                map.insert(entry.strRelPath, &entry);
            } else if (!entry.bDir) {
                unsupported.insert(entry.strRelPath);
            }
        }
        return map;
    };
    const QHash<QString, const SyncEntry*> localMap = index(local);
    const QHash<QString, const SyncEntry*> machineMap = index(machine);
    plan.iLeftOutHidden = int(hidden.size());
    plan.iLeftOutType = int(unsupported.size());
    for (const SyncEntry& entry : local) {
        const SyncEntry* other = machineMap.value(entry.strRelPath);
        if (localMap.value(entry.strRelPath) != &entry)
            continue;
        if (!other) {
            if (entry.bDir)
                plan.listMachineDirs.append(entry.strRelPath);
            else
                plan.listUpload.append(entry);
        } else if (!entry.bDir && !other->bDir) {
            (entry.iSize != other->iSize ? plan.listConflict : plan.listSameSize).append({entry, *other});
        }
    }
    for (const SyncEntry& entry : machine) {
        if (machineMap.value(entry.strRelPath) != &entry || localMap.contains(entry.strRelPath))
            continue;
        if (entry.bDir)
            plan.listLocalDirs.append(entry.strRelPath);
        else
            plan.listDownload.append(entry);
    }
    plan.listMachineDirs.sort();
    plan.listLocalDirs.sort();
    // Listings come in the server's order; people read paths in order.
    const auto byPath = [](const SyncEntry& a, const SyncEntry& b) { return a.strRelPath < b.strRelPath; };
    const auto byLocalPath = [&](const SyncConflict& a, const SyncConflict& b) { return byPath(a.local, b.local); };
    std::sort(plan.listUpload.begin(), plan.listUpload.end(), byPath);
    std::sort(plan.listDownload.begin(), plan.listDownload.end(), byPath);
    std::sort(plan.listConflict.begin(), plan.listConflict.end(), byLocalPath);
    std::sort(plan.listSameSize.begin(), plan.listSameSize.end(), byLocalPath);
    return plan;
}

bool FolderSyncPlan::IsEmpty() const
{
    return listUpload.isEmpty() && listDownload.isEmpty() && listConflict.isEmpty() && listMachineDirs.isEmpty() &&
           listLocalDirs.isEmpty();
}
