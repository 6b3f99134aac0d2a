#pragma once

#include "CommonDefine.h"

#include <QPersistentModelIndex>
#include <QWidget>

class MachineStatusFileDelegate;
class MachineStatusFtpManager;
class QButtonGroup;
class QStandardItem;
class QStandardItemModel;
namespace Ui {
class MachineStatusProgramPanel;
}

// The lower panel of the status page: the program the machine runs, and the
// machine's files with rename, delete and "设为加工程序".
class MachineStatusProgramPanel : public QWidget
{
    Q_OBJECT

public:
    // Item-data roles of the file tree's name cells.
    enum Role
    {
        RoleIsDir = Qt::UserRole + 1,
        RolePath,
    };
    enum Column
    {
        ColumnName = 0,
        ColumnTime,
        ColumnAction,
        ColumnCount
    };

    explicit MachineStatusProgramPanel(QWidget* parent = nullptr);
    ~MachineStatusProgramPanel() override;

    void SetProgramInfo(const StructProgramInfo& program);
    void SetCurrentLines(const StructCurrentLines& currentLines, int curLine);
    // Gives the broker the machine and lists its root; an empty IP is the disconnected look.
    void SetMachineIp(const QString& ip);
    // Lists the machine's files again (they changed through another view).
    void RefreshFiles();

    MachineStatusFtpManager* FtpManager() const { return m_pFtpManager; }
    QStandardItemModel* FileModel() const { return m_pFileModel; }
    QStandardItemModel* ProgramModel() const { return m_pProgramModel; }
    MachineStatusFileDelegate* FileDelegate() const { return m_pDelegate; }
    int HighlightedRow() const { return m_iHighlightedRow; }
    // The tree row of a folder path, the root for "/"; null when it is not in the tree.
    QStandardItem* FolderItem(const QString& dirPath) const;
    static QString TimeText(int seconds);
    // Whether the machine can run a file of this name.
    static bool IsRunnableProgram(const QString& name);

Q_SIGNALS:
    void SignalLoadProgramRequested(const QString& machinePath);
    void SignalShowHistoryRequested(const QString& machinePath);

public Q_SLOTS:
    void SlotOnListResult(QString dirPath, bool success, QList<FtpFileInfo> items);
    void SlotTreeExpanded(QModelIndex index);
    void SlotTreeCollapsed(QModelIndex index);
    void SlotActionRename(QPersistentModelIndex index);
    void SlotRenameCommit(QPersistentModelIndex index, QString oldName, QString newName);
    void SlotRenameResult(bool success, QString oldPath, QString newPath);
    void SlotActionDelete(QPersistentModelIndex index);
    void SlotDeleteResult(bool success);
    void SlotActionLoadProgram(QPersistentModelIndex index);

private:
    void ResetFileTree();
    void RemoveChildNodes(QStandardItem* item);
    void AppendPlaceholder(QStandardItem* parent, const QString& text);
    void AppendEntry(QStandardItem* parent, const QString& parentPath, const FtpFileInfo& entry);
    QString PathOf(const QStandardItem* item) const;
    void ShowNotice(const QString& text);

    Ui::MachineStatusProgramPanel* m_pUi;
    QButtonGroup* m_pTabGroup;
    MachineStatusFtpManager* m_pFtpManager;
    QStandardItemModel* m_pProgramModel;
    QStandardItemModel* m_pFileModel;
    MachineStatusFileDelegate* m_pDelegate;
    int m_iCurLine = 0;
    int m_iHighlightedRow = -1;
    QString m_strDeleteParent;
};
