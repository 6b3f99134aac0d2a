#pragma once

#include "FileRowData.h"

#include <QList>
#include <QStorageInfo>

// The mounted volumes that the computer view shows, one row each, typed by
// what the system reports about the device behind them.
class LocalVolumeLister final
{
public:
    enum class DriveType
    {
        LocalDisk,
        Removable,
        Network,
        Optical,
    };

    LocalVolumeLister() = delete;

    static QList<FileRowData> ListRows();
    static DriveType TypeOf(const QStorageInfo& volume);
    static QString TypeText(DriveType type);
};
