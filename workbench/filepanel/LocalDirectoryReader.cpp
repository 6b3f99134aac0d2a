#include "LocalDirectoryReader.h"

#include "CommonDefine.h"

#include <QDir>

bool LocalDirectoryReader::IsMachineFileName(const QString& name)
{
    return MachineFileSuffixList.contains(QFileInfo(name).suffix().toLower());
}

FileListing LocalDirectoryReader::Read(const QString& path, bool bFilter)
{
    FileListing listing;
    listing.strPath = path;
    const QDir dir(path);
    listing.bOk = dir.exists();
    if (!listing.bOk) {
        return listing;
    }
    // Without QDir::System, sockets, FIFOs, device files and broken links stay out,
    // like the system entries that a desktop shell hides.
    const QFileInfoList entries =
        dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::DirsFirst | QDir::Name);
    listing.listRows.reserve(entries.size());
    // Name keys for sorting are built here, off the GUI thread, once per listing.
    const QCollator collator = FileNameSortKey::CreateCollator();
    for (const QFileInfo& info : entries) {
        if (!info.isReadable()) {
            continue;
        }
        const QString name = info.fileName();
        if (info.isDir()) {
            listing.listFolderNames.append(name);
        } else {
            listing.listFileNames.append(name);
            if (bFilter && !IsMachineFileName(name)) {
                continue;
            }
        }
        if (!name.isEmpty()) {
            listing.listRows.append(FileRowData::FromLocal(info, FileRowData::JoinPath(path, name)));
            listing.listRows.last().nameKey = collator.sortKey(name);
        }
    }
    return listing;
}
