#pragma once

#include "FileRequest.h"

#include <QString>

// The text of the one overwrite question a batch asks: which files would be replaced, with
// size and time of the new and the old copy of each, so the user can see what they would lose.
class OverwriteQuestion final
{
public:
    static QString Text(const QList<OverwriteEntry>& entries);
};
