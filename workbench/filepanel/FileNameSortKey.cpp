#include "FileNameSortKey.h"

QCollator FileNameSortKey::CreateCollator()
{
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true);
    return collator;
}
