#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// A temporary folder removed at the end, with helpers to fill it.
class TestTempDir
{
public:
    TestTempDir();

    bool IsValid() const { return m_dir.isValid(); }
    QString Path() const { return m_dir.path(); }
    // Absolute path of a relative path inside the folder.
    QString FilePath(const QString& relative) const { return m_dir.filePath(relative); }
    // Creates the file (and its folders) with the given bytes; returns its absolute path.
    QString CreateFile(const QString& relative, const QByteArray& data) const;
    QString CreateDir(const QString& relative) const;

private:
    QTemporaryDir m_dir;
};
