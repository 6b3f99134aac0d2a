#pragma once

#include "FileNameSortKey.h"
#include "MachineRecords.h"

#include <QFileInfo>
#include <QString>

class QStandardItem;

// The values of one file row, built off the GUI thread where the entries are read
// and turned into an item on it.
struct FileRowData
{
    int iKind = 0;
    QString strName;
    QString strType;
    QString strSizeText;
    qint64 nSize = 0;
    QString strTime;
    QString strFullPath;
    bool bQuickAccess = false;
    int iStandardIcon = -1; // a QStyle::StandardPixmap drawn instead of the kind's icon
    std::optional<QCollatorSortKey> nameKey;

    static FileRowData FromLocal(const QFileInfo& info, const QString& fullPath);
    static FileRowData FromFtp(const FtpFileInfo& info, const QString& directory);
    static FileRowData QuickAccess(int kind, const QString& name, const QString& path);
    static FileRowData Placeholder();

    // Joins a directory and a name without doubling the separator after a root.
    static QString JoinPath(const QString& directory, const QString& name);
    static QString TimeText(const QDateTime& time);

    QStandardItem* CreateItem() const;
};
