#pragma once

#include "FileRowData.h"

#include <QList>
#include <QStringList>

// What one listing of a folder found, on either side.
struct FileListing
{
    QString strPath;
    bool bOk = false;
    QList<FileRowData> listRows;
    QStringList listFolderNames; // every folder, filtered or not
    QStringList listFileNames;   // every file, filtered or not
};
