#pragma once

#include "KorvBaseExport.h"

#include <QString>

// The language of the interface. Texts are written in Chinese; English comes from the
// translation built into this library. Until the host applies a choice the interface is
// Chinese, which is also what tests see.
class KORVBASE_EXPORT KorvLanguage
{
public:
    // "zh" when the first language the user's system asks for is Chinese, else "en".
    static QString SystemLanguage();
    static bool IsSupported(const QString& language);
    // Installs the translation of `language` ("zh" or "en") into the running application,
    // replacing an earlier one. Returns false for an unknown language or a missing translation.
    static bool Apply(const QString& language);
    static QString Current();
};
