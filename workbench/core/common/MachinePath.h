#pragma once

#include <QString>

// Paths on the machine always use "/" and start at "/".
class MachinePath final
{
public:
    // "/nc/a.nc" -> "a.nc"
    static QString Name(const QString& path);
    // "/nc/a.nc" -> "/nc", "/a.nc" -> "/"
    static QString Folder(const QString& path);
};
