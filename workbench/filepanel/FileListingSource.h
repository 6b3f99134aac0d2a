#pragma once

#include "FileListing.h"

#include <QColor>
#include <QObject>

// Where a panel's rows come from: the local disk or the machine over FTP. The panel keeps
// the rows, the history and the look; the source lists, spells the paths of its side and
// says when its side must not be browsed.
class FileListingSource : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileListingSource)

public:
    using QObject::QObject;

    virtual bool IsLocal() const = 0;
    // Starts listing a folder; the answer is SignalListed. A newer call or Cancel() supersedes it.
    virtual void List(const QString& path) = 0;
    virtual void Cancel() = 0;
    // The folder holding `path`, or an empty text when `path` is the top of this side.
    virtual QString ParentPath(const QString& path) const = 0;
    // The side's spelling of a folder the user typed; empty when the text cannot be one.
    virtual QString FolderFromText(const QString& text) const = 0;
    // True (and logged) when the side must not be browsed or edited now.
    virtual bool RefuseBrowsing() = 0;
    // Joins a folder of this side and a name.
    static QString JoinPath(const QString& folder, const QString& name) { return FileRowData::JoinPath(folder, name); }

Q_SIGNALS:
    void SignalListed(const FileListing& listing);
    void SignalAppendLog(QString text, QColor color);
};
