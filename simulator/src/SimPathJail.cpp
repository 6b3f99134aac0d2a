#include "SimPathJail.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <cerrno>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

SimPathJail::SimPathJail(const QString& rootDir)
    : m_strRoot(QDir(rootDir).absolutePath()), m_strCanonicalRoot(QFileInfo(rootDir).canonicalFilePath())
{
    const int fd = ::open(QFile::encodeName(m_strRoot).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    m_pRootFd = std::shared_ptr<const int>(new int(fd), [](const int* rootFd) {
        if (*rootFd >= 0)
            ::close(*rootFd);
        delete rootFd;
    });
}

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
    if (localPath == m_strRoot)
        return !m_strCanonicalRoot.isEmpty();
    if (!localPath.startsWith(m_strRoot + QLatin1Char('/')))
        return IsInsideByCanonicalPath(localPath);
    const QString relative = localPath.mid(m_strRoot.size() + 1);
    Beneath found = ResolveBeneath(relative, true);
    if (found == Beneath::Missing) {
        // A name that does not exist yet is judged by its folder; a dangling link must not be created through.
        if (ResolveBeneath(relative, false) != Beneath::Missing)
            return false;
        const int cut = relative.lastIndexOf(QLatin1Char('/'));
        if (cut < 0)
            return !m_strCanonicalRoot.isEmpty();
        found = ResolveBeneath(relative.left(cut), true);
    }
    return found == Beneath::Unknown ? IsInsideByCanonicalPath(localPath) : found == Beneath::Inside;
}

bool SimPathJail::IsEntryInside(const QFileInfo& entry) const
{
    return !entry.isSymLink() || IsInside(entry.absoluteFilePath());
}

SimPathJail::Beneath SimPathJail::ResolveBeneath(const QString& relative, bool bFollowLast) const
{
    // One system call resolves the whole path and refuses any step, "..", or link, that leaves the
    // root, instead of a look at every component on the way from "/".
    if (*m_pRootFd < 0)
        return Beneath::Unknown;
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC | (bFollowLast ? 0 : O_NOFOLLOW);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    const QByteArray path = QFile::encodeName(relative);
    const auto fd = int(syscall(SYS_openat2, *m_pRootFd, path.constData(), &how, sizeof how));
    if (fd >= 0) {
        ::close(fd);
        return Beneath::Inside;
    }
    return errno == ENOENT || errno == ENOTDIR ? Beneath::Missing : Beneath::Unknown;
}

bool SimPathJail::IsInsideByCanonicalPath(const QString& localPath) const
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
