#pragma once

#include "HistoryVersion.h"
#include "MachineEndpoint.h"

#include <QDialog>
#include <QList>

class MachineFileService;
class ProgramHistory;
class QLabel;
class QPushButton;
class QTreeWidget;

// The kept versions of a machine's programs, deleted ones included: compare two of them or one
// with the machine's current copy, and put one back.
class ProgramHistoryDialog final : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProgramHistoryDialog)

public:
    enum VersionColumn
    {
        ColumnNumber,
        ColumnTime,
        ColumnSize,
        ColumnCause,
        ColumnCount,
    };

    // Opens on `machinePath` when it has versions, else on the first program.
    ProgramHistoryDialog(ProgramHistory* history, MachineFileService* files, const MachineEndpoint& endpoint,
                         const QString& machinePath, QWidget* parent = nullptr);

    QTreeWidget* ProgramTree() const { return m_pPrograms; }
    QTreeWidget* VersionTree() const { return m_pVersions; }
    QPushButton* CompareButton() const { return m_pCompare; }
    QPushButton* CompareMachineButton() const { return m_pCompareMachine; }
    QPushButton* RestoreButton() const { return m_pRestore; }

private:
    void ListPrograms(const QString& current);
    void ListVersions();
    QList<HistoryVersion> SelectedVersions() const;
    // 1 for the oldest kept version.
    int Number(const HistoryVersion& version) const;
    void UpdateButtons();
    void CompareSelected();
    void CompareWithMachine();
    void RestoreSelected();

    ProgramHistory* m_pHistory;
    MachineFileService* m_pFiles;
    MachineEndpoint m_endpoint;
    QList<HistoryVersion> m_listVersions;
    QLabel* m_pError;
    QTreeWidget* m_pPrograms;
    QTreeWidget* m_pVersions;
    QPushButton* m_pCompare;
    QPushButton* m_pCompareMachine;
    QPushButton* m_pRestore;
};
