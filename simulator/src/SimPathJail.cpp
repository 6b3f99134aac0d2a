#include "SimPathJail.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

SimPathJail::SimPathJail(const QString& rootDir)
    : m_strRoot(QDir(rootDir).absolutePath()), m_strCanonicalRoot(QFileInfo(rootDir).canonicalFilePath())
{}

bool SimPathJail::Resolve(const QString& cwd, const QString& path, QString* virtualPath) const
{
    if (path.contains(QChar(0)) || path.contains(QLatin1Char('\r')) || path.contains(QLatin1Char('\n')))
        return false;
    const QString joined = path.startsWith(QLatin1Char('/')) ? path : cwd + QLatin1Char('/') + path;
    QStringList parts;
    for (const QString& part : joined.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String("."))
            continue;
        if (part == QLatin1String("..")) {
            if (parts.isEmpty())
                return false;
            parts.removeLast();
            continue;
        }
        if (part.contains(QLatin1Char('\\')))
            return false;
        parts << part;
    }
    *virtualPath = QLatin1Char('/') + parts.join(QLatin1Char('/'));
    return true;
}

QString SimPathJail::LocalPath(const QString& virtualPath) const
{
    return virtualPath == QLatin1String("/") ? m_strRoot : m_strRoot + virtualPath;
}

bool SimPathJail::IsInside(const QString& localPath) const
{
    QFileInfo info(localPath);
    // A name that does not exist yet is judged by its folder, which must exist.
    const QString canonical =
        info.exists() ? info.canonicalFilePath() : QFileInfo(info.absolutePath()).canonicalFilePath();
    if (canonical.isEmpty() || m_strCanonicalRoot.isEmpty())
        return false;
    // A dangling link has no canonical path but must not be created through either.
    if (!info.exists() && info.isSymLink())
        return false;
    return canonical == m_strCanonicalRoot || canonical.startsWith(m_strCanonicalRoot + QLatin1Char('/'));
}
