#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

class FileListingSource;
class FileTreeView;
class QWidget;

// What the file operations, the menu and the keys need from a panel. The panel implements it,
// so that those helpers never depend on the panel's widget class.
class FilePanelContext
{
public:
    // A selected row that operations can act on.
    struct Entry
    {
        QString strPath;
        QString strName;
        int iKind = 0;
    };

    FilePanelContext() = default;
    virtual ~FilePanelContext() = default;
    Q_DISABLE_COPY_MOVE(FilePanelContext)

    // Parent of the boxes and menus, and context of deferred calls.
    virtual QWidget* PanelWidget() = 0;
    virtual bool IsLocal() const = 0;
    virtual bool IsComputerView() const = 0;
    virtual bool IsPanelBusy() const = 0;
    virtual bool HasMachine() const = 0;
    // The folder shown; empty in the computer view.
    virtual QString CurrentPath() const = 0;
    virtual QStringList FolderNames() const = 0;
    virtual QStringList FileNames() const = 0;
    // The selected rows that are real entries (no shortcut, no placeholder).
    virtual QList<Entry> SelectedEntries() const = 0;
    virtual FileListingSource* Source() const = 0;
    virtual FileTreeView* TreeView() const = 0;
    virtual void RefreshPanel() = 0;
    // Selects and flashes an entry of this name once the next listing is in.
    virtual void SelectAfterListing(const QString& name) = 0;
};
