#pragma once

#include <QWidget>

class QToolButton;

// The buttons of one row of the machine file list.
class MachineStatusFileActionWidget : public QWidget
{
    Q_OBJECT

public:
    // Folders cannot be run and have no kept versions, so only file rows offer "设为加工程序" and
    // "历史版本…".
    explicit MachineStatusFileActionWidget(bool bFile, QWidget* parent = nullptr);

    QToolButton* RenameButton() const { return m_pBtnRename; }
    QToolButton* DeleteButton() const { return m_pBtnDelete; }
    QToolButton* LoadButton() const { return m_pBtnLoad; }
    QToolButton* HistoryButton() const { return m_pBtnHistory; }

Q_SIGNALS:
    void SignalRename();
    void SignalDelete();
    void SignalLoadProgram();
    void SignalShowHistory();

private:
    QToolButton* m_pBtnRename;
    QToolButton* m_pBtnDelete;
    QToolButton* m_pBtnLoad = nullptr;
    QToolButton* m_pBtnHistory = nullptr;
};
