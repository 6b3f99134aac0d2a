#pragma once

#include "FileRequest.h"

#include <QString>

// The text of the one overwrite question a batch asks: which files would be replaced, with
// size and time of the new and the old copy of each, so the user can see what they would lose.
class OverwriteQuestion final
{
public:
    static QString Text(const QList<OverwriteEntry>& entries);
    // "12.3 KiB, 2026-01-02 10:20" ("?" for what the machine did not say).
    static QString Describe(qint64 size, const QDateTime& time);
};
