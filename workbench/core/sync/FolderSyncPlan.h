#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

// One file or folder of either side, named by its path below the synchronised folder
// ("a.nc", or "sub/a.nc" when sub-folders take part), always with "/" separators.
struct SyncEntry
{
    QString strRelPath;
    qint64 iSize = 0;
    QDateTime time;
    bool bDir = false;

    QString Name() const { return strRelPath.mid(strRelPath.lastIndexOf(QLatin1Char('/')) + 1); }
};

// A name present on both sides whose contents differ.
struct SyncConflict
{
    SyncEntry local;
    SyncEntry machine;
};

// The difference of a local and a machine folder: what to upload, what to download, which
// folders to create on either side, and which files differ. Pure: no disk, no network.
class FolderSyncPlan
{
public:
    // Files the transfer path would refuse (a suffix a machine does not take, a hidden
    // name such as the temporary name of an unfinished upload) take no part.
    static bool IsSyncable(const SyncEntry& entry);
    // Names are matched exactly; equal sizes count as the same file, times are only carried.
    static FolderSyncPlan Compute(const QList<SyncEntry>& local, const QList<SyncEntry>& machine);

    bool IsEmpty() const;
    int TransferCount() const { return int(listUpload.size() + listDownload.size()); }

    QList<SyncEntry> listUpload;
    QList<SyncEntry> listDownload;
    QList<SyncConflict> listConflict;
    // Files of equal size on both sides: the same file unless their contents are compared.
    QList<SyncConflict> listSameSize;
    // Files of either side that take no part, by reason (each path counted once).
    int iLeftOutType = 0;
    int iLeftOutHidden = 0;
    // Parents before children, so that they can be created in order.
    QStringList listMachineDirs;
    QStringList listLocalDirs;
};
