#pragma once

#include "KorvBaseExport.h"

#include <QString>

// Compares dotted versions of any length part by part as numbers ("1.10" > "1.9"); missing
// parts count as 0 ("1.4" == "1.4.0"); a leading "v" and a non-numeric tail of a part
// ("7-rc1") are ignored. Negative when a is older than b, 0 when equal, positive when newer.
KORVBASE_EXPORT int CompareTwoVersion(const QString& a, const QString& b);
