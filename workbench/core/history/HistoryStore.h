#pragma once

#include "HistoryVersion.h"

#include <QList>
#include <QString>

// The kept program copies of one machine: an SQLite index and the contents as files named by
// their hash, so that a program saved unchanged many times takes its space once. One workbench
// holds a store at a time. A store that cannot be read is reported and left as it is: emptying
// it would throw away the very copies it exists to keep.
class HistoryStore final
{
    Q_DISABLE_COPY_MOVE(HistoryStore)

public:
    explicit HistoryStore(QString folder);
    ~HistoryStore();

    // False when the index is damaged or held by another workbench; ErrorText() says which.
    bool Open();
    bool IsOpen() const { return m_bOpen; }
    QString ErrorText() const { return m_strError; }
    QString Folder() const { return m_strFolder; }
    // Where fetched copies are written before they are added.
    QString IncomingFolder() const;

    // Moves `file` into the content folder under its hash and returns the hash; empty on failure.
    // Touches files only, so it may run on any thread.
    static QString StoreContent(const QString& folder, const QString& file);
    // Records a version whose content StoreContent kept; fills in its id.
    bool Add(HistoryVersion& version);
    // The versions of one program, newest first.
    QList<HistoryVersion> Versions(const QString& machinePath) const;
    // The newest version of every program that has any.
    QList<HistoryVersion> Programs() const;
    QString ContentPath(const QString& hash) const;
    // Drops versions beyond the newest `keepPerProgram` of each program, then the oldest until
    // the kept contents take at most `totalBytes`.
    bool Prune(int keepPerProgram, qint64 totalBytes);

private:
    bool Fail(const QString& text);
    bool RemoveVersion(qint64 id, const QString& hash);
    qint64 TotalBytes() const;

    QString m_strFolder;
    QString m_strConnection;
    bool m_bOpen = false;
    QString m_strError;
};
