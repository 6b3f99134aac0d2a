#pragma once

#include <QString>

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

    const QString& Root() const { return m_strRoot; }

private:
    QString m_strRoot;
    QString m_strCanonicalRoot;
};
