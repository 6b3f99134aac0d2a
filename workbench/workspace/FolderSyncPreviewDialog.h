#pragma once

#include "FolderSyncPlan.h"

#include <QDialog>

class QTreeWidget;
class QTreeWidgetItem;

// The whole plan of a synchronisation before anything moves: every upload, download,
// folder to create and conflict with sizes and times, each with a tick box; conflicts are
// decided here instead of one box each.
class FolderSyncPreviewDialog final : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderSyncPreviewDialog)

public:
    enum Column
    {
        ColumnPath,
        ColumnAction,
        ColumnLocal,
        ColumnMachine,
        ColumnCount,
    };
    // Choices of a conflict row, in the order of its combo box.
    enum Choice
    {
        ChoiceLocal,
        ChoiceMachine,
        ChoiceSkip,
    };

    explicit FolderSyncPreviewDialog(const FolderSyncPlan& plan, QWidget* parent = nullptr);

    QTreeWidget* Tree() const { return m_pTree; }
    void SetConflictChoice(int row, Choice choice);
    // The plan as the user left it: unticked rows dropped, decided conflicts moved to their side.
    FolderSyncPlan Result() const;

private:
    enum Kind
    {
        KindUpload,
        KindDownload,
        KindMachineDir,
        KindLocalDir,
        KindConflict,
    };
    QTreeWidgetItem* AddRow(Kind kind, const QString& path, const QString& action, const SyncEntry* local,
                            const SyncEntry* machine);

    FolderSyncPlan m_plan;
    QTreeWidget* m_pTree;
};
