#include "FolderSyncPlan.h"

#include "CommonDefine.h"

#include <QFileInfo>
#include <QHash>

bool FolderSyncPlan::IsSyncable(const SyncEntry& entry)
{
    const QString name = entry.Name();
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')))
        return false;
    return entry.bDir || MachineFileSuffixList.contains(QFileInfo(name).suffix().toLower());
}

FolderSyncPlan FolderSyncPlan::Compute(const QList<SyncEntry>& local, const QList<SyncEntry>& machine)
{
    const auto index = [](const QList<SyncEntry>& entries) {
        QHash<QString, const SyncEntry*> map;
        for (const SyncEntry& entry : entries) {
            // Inside a hidden folder nothing takes part either.
            if (!(QLatin1Char('/') + entry.strRelPath).contains(QLatin1String("/.")) && IsSyncable(entry))
                map.insert(entry.strRelPath, &entry);
        }
        return map;
    };
    const QHash<QString, const SyncEntry*> localMap = index(local);
    const QHash<QString, const SyncEntry*> machineMap = index(machine);
    FolderSyncPlan plan;
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
    return plan;
}

bool FolderSyncPlan::IsEmpty() const
{
    return listUpload.isEmpty() && listDownload.isEmpty() && listConflict.isEmpty() && listMachineDirs.isEmpty() &&
           listLocalDirs.isEmpty();
}
