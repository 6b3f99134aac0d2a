#include "LocalVolumeLister.h"

#include "FileItemRoles.h"
#include "FileSizeText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStyle>

namespace {
bool IsNetworkFileSystem(const QByteArray& type)
{
    static const QList<QByteArray> types = {"nfs", "nfs4", "cifs",  "smb3",  "smbfs",       "sshfs",     "fuse.sshfs",
                                            "9p",  "afs",  "ncpfs", "davfs", "fuse.davfs2", "glusterfs", "ceph"};
    return types.contains(type);
}

// A block device is removable when the kernel says so for it or for the disk that
// holds the partition, or when it hangs off a USB bus (sticks often claim to be fixed).
bool IsRemovableDevice(const QByteArray& device)
{
    if (!device.startsWith("/dev/")) {
        return false;
    }
    const QString name = QFileInfo(QFile::decodeName(device)).canonicalFilePath().section(QLatin1Char('/'), -1);
    const QString sysPath = QFileInfo(QStringLiteral("/sys/class/block/") + name).canonicalFilePath();
    if (sysPath.isEmpty()) {
        return false;
    }
    if (sysPath.contains(QLatin1String("/usb"))) {
        return true;
    }
    for (const QString& candidate :
         {sysPath + QStringLiteral("/removable"), sysPath + QStringLiteral("/../removable")}) {
        QFile flag(candidate);
        if (flag.open(QIODevice::ReadOnly) && flag.readAll().trimmed() == "1") {
            return true;
        }
    }
    return false;
}
} // namespace

LocalVolumeLister::DriveType LocalVolumeLister::TypeOf(const QStorageInfo& volume)
{
    const QByteArray fileSystem = volume.fileSystemType();
    const QByteArray device = volume.device();
    if (IsNetworkFileSystem(fileSystem) || device.startsWith("//") || device.contains(":/")) {
        return DriveType::Network;
    }
    if (fileSystem == "iso9660" || fileSystem == "udf") {
        return DriveType::Optical;
    }
    return IsRemovableDevice(device) ? DriveType::Removable : DriveType::LocalDisk;
}

QString LocalVolumeLister::TypeText(DriveType type)
{
    switch (type) {
    case DriveType::Removable:
        return QCoreApplication::translate("FileSelectPanel", "可移动磁盘");
    case DriveType::Network:
        return QCoreApplication::translate("FileSelectPanel", "网络驱动器");
    case DriveType::Optical:
        return QCoreApplication::translate("FileSelectPanel", "光盘驱动器");
    case DriveType::LocalDisk:
        break;
    }
    return QCoreApplication::translate("FileSelectPanel", "本地磁盘");
}

QList<FileRowData> LocalVolumeLister::ListRows()
{
    QList<FileRowData> rows;
    // A device mounted again elsewhere (bind mounts) is one drive, shown at its first mount.
    QSet<QByteArray> listDevices;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        const DriveType type = TypeOf(volume);
        // Memory-backed and virtual mounts are not drives a user stores programs on.
        if (type != DriveType::Network && !volume.device().startsWith("/dev/")) {
            continue;
        }
        if (!volume.isValid() || !volume.isReady() || !QFileInfo(volume.rootPath()).isReadable() ||
            listDevices.contains(volume.device())) {
            continue;
        }
        listDevices.insert(volume.device());
        FileRowData row;
        row.iKind = FileItemKind::Folder;
        row.strType = TypeText(type);
        const QString label = volume.name().isEmpty() ? row.strType : volume.name();
        row.strName = QStringLiteral("%1 (%2)").arg(label, QDir::toNativeSeparators(volume.rootPath()));
        row.strFullPath = QDir::toNativeSeparators(volume.rootPath());
        row.nSize = volume.bytesTotal();
        row.strSizeText = FileSizeText::Format(row.nSize);
        switch (type) {
        case DriveType::Removable:
            row.iStandardIcon = QStyle::SP_DriveFDIcon;
            break;
        case DriveType::Network:
            row.iStandardIcon = QStyle::SP_DriveNetIcon;
            break;
        case DriveType::Optical:
            row.iStandardIcon = QStyle::SP_DriveCDIcon;
            break;
        case DriveType::LocalDisk:
            row.iStandardIcon = QStyle::SP_DriveHDIcon;
            break;
        }
        rows.append(row);
    }
    return rows;
}
