#pragma once

#include <QString>
#include <functional>

// Free names for pasted files and new folders: "part(1).nc", "part(2).nc", "NewForder(1)".
class FileNaming final
{
public:
    FileNaming() = delete;

    // `name` itself when it is free, else the first free "%1(%2).%3" (or "%1(%2)" for folders and
    // names without a suffix).
    static QString FreeName(const QString& name, bool bFolder, const std::function<bool(const QString&)>& taken);
};
