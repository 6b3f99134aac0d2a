#pragma once

#include "FileRowData.h"

#include <QList>
#include <QStringList>

// What one read of a local directory found.
struct LocalListing
{
    QString strPath;
    bool bExists = false;
    QList<FileRowData> listRows;
    QStringList listFolderNames; // every folder, filtered or not
    QStringList listFileNames;   // every file, filtered or not
};

// Reads a local directory into row values. Touches only the file system, so it
// runs on a pool thread and big folders never stall the window.
class LocalDirectoryReader final
{
public:
    LocalDirectoryReader() = delete;

    // With bFilter set, files whose suffix is not a machine file type get no row.
    static LocalListing Read(const QString& path, bool bFilter);
    static bool IsMachineFileName(const QString& name);
};
