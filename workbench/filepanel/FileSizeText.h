#pragma once

#include <QString>

// Human-readable byte counts: "512 B", "1.50 KB", "20.0 KB".
class FileSizeText final
{
public:
    FileSizeText() = delete;

    static QString Format(qint64 bytes);
};
