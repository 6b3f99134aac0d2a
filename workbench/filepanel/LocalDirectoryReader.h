#pragma once

#include "FileListing.h"

// Reads a local directory into row values. Touches only the file system, so it
// runs on a pool thread and big folders never stall the window.
class LocalDirectoryReader final
{
public:
    LocalDirectoryReader() = delete;

    // With bFilter set, files whose suffix is not a machine file type get no row.
    static FileListing Read(const QString& path, bool bFilter);
    static bool IsMachineFileName(const QString& name);
};
