#include "FileNaming.h"

#include <QFileInfo>

QString FileNaming::FreeName(const QString& name, bool bFolder, const std::function<bool(const QString&)>& taken)
{
    if (!taken(name))
        return name;
    const QFileInfo info(name);
    // A leading dot starts a hidden name, not a suffix (".profile").
    const bool bSuffix = !bFolder && !info.suffix().isEmpty() && !info.completeBaseName().isEmpty();
    const QString base = bSuffix ? info.completeBaseName() : name;
    for (int counter = 1;; ++counter) {
        const QString candidate = bSuffix ? QStringLiteral("%1(%2).%3").arg(base).arg(counter).arg(info.suffix())
                                          : QStringLiteral("%1(%2)").arg(base).arg(counter);
        if (!taken(candidate))
            return candidate;
    }
}
