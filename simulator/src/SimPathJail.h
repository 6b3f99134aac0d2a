#pragma once

#include <QString>
#include <memory>

class QFileInfo;

// Maps FTP paths (absolute from the served root, or relative to a working folder) to
// local paths, and refuses every path that would leave the root: ".." above it, and
// links whose target lies outside.
class SimPathJail
{
public:
    explicit SimPathJail(const QString& rootDir);

    // Normalises `path` against `cwd` into an absolute FTP path ("/a/b"). False when
    // ".." climbs above the root or the text holds characters no name may hold.
    bool Resolve(const QString& cwd, const QString& path, QString* virtualPath) const;

    QString LocalPath(const QString& virtualPath) const;

    // True when the local file (or, if it does not exist yet, its folder) lies inside
    // the root once links are followed.
    bool IsInside(const QString& localPath) const;
    // The same for an entry listed from a folder already found inside: only a link needs a look.
    bool IsEntryInside(const QFileInfo& entry) const;

    const QString& Root() const { return m_strRoot; }

private:
    enum class Beneath
    {
        Inside,
        Missing,
        Unknown, // an absolute link, or a kernel without the call: the slow check decides
    };
    Beneath ResolveBeneath(const QString& relative, bool bFollowLast) const;
    bool IsInsideByCanonicalPath(const QString& localPath) const;

    QString m_strRoot;
    QString m_strCanonicalRoot;
    // The root, opened once, below which the kernel resolves a whole path in one call.
    std::shared_ptr<const int> m_pRootFd;
};
