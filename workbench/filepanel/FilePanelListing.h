#pragma once

#include "FileListing.h"
#include "FileRowData.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QStringList>

class FileListingSource;
class QHeaderView;
class QStandardItemModel;

// The rows of a panel and the folder they belong to. It asks the source for a folder, shows the
// loading row meanwhile, applies the answer, and puts the previous rows back when a machine
// listing fails. The local panel's rows start with the quick-access places. A big listing goes
// into an unsorted panel a slice per event-loop turn, so the window keeps drawing meanwhile.
class FilePanelListing final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FilePanelListing)

public:
    FilePanelListing(FileListingSource* source, QStandardItemModel* model, QHeaderView* header, QObject* parent);

    QString CurrentPath() const { return m_strPath; }
    bool IsComputerView() const { return m_bLocal && m_strPath.isEmpty(); }
    QStringList FolderNames() const { return m_listFolderNames; }
    QStringList FileNames() const { return m_listFileNames; }

    // Lists a folder of either side; false when the side must not be browsed now.
    bool List(const QString& path);
    // The local panel's top: the quick-access places and the drives.
    void ShowComputer();
    // No rows and nothing pending, at `start`.
    void Clear(const QString& start);
    // Once the next listing is in, asks for this entry to be selected (SignalSelect).
    void SelectAfterListing(const QString& name) { m_strPendingFolderName = name; }
    void LocateAfterListing(const QString& name) { m_strPendingLocateName = name; }

Q_SIGNALS:
    void SignalPathChanged(const QString& path);
    void SignalSelect(const QString& name);
    void SignalAppendLog(QString text, QColor color);
    // A listing ended: its rows are in place (ok) or the previous ones are back (failed).
    void SignalListingFinished(QString path, bool ok);

private:
    void Apply(const FileListing& listing);
    void SetPath(const QString& path);
    void ReplaceRows(const QList<FileRowData>& rows);
    void AppendRows(const QList<FileRowData>& rows);
    // Drops the slices of a listing still going in.
    void StopAppending();
    void AppendSlice(quint64 generation);
    QList<FileRowData> QuickAccessRows() const;
    // Hands a pending name on once the rows are drawn.
    void SelectLater(QString* pending, const QString& logFormat);

    FileListingSource* m_pSource = nullptr;
    QStandardItemModel* m_pModel = nullptr;
    QHeaderView* m_pHeader = nullptr;
    const bool m_bLocal;
    QString m_strPath;
    QStringList m_listFolderNames;
    QStringList m_listFileNames;
    bool m_bListing = false;
    // What to show again if a machine listing fails.
    QString m_strSavedPath;
    QList<FileRowData> m_listShownRows;
    QString m_strPendingLocateName;
    QString m_strPendingFolderName;
    // The listing going in a slice at a time, and which listing a queued slice belongs to.
    FileListing m_pendingListing;
    qsizetype m_iNextRow = 0;
    quint64 m_iGeneration = 0;
};
