#pragma once

#include <QWidget>

class QToolButton;

// The buttons of one row of the machine file list.
class MachineStatusFileActionWidget : public QWidget
{
    Q_OBJECT

public:
    // Folders cannot be run, so only file rows offer "设为加工程序".
    explicit MachineStatusFileActionWidget(bool bFile, QWidget* parent = nullptr);

    QToolButton* RenameButton() const { return m_pBtnRename; }
    QToolButton* DeleteButton() const { return m_pBtnDelete; }
    QToolButton* LoadButton() const { return m_pBtnLoad; }

Q_SIGNALS:
    void SignalRename();
    void SignalDelete();
    void SignalLoadProgram();

private:
    QToolButton* m_pBtnRename;
    QToolButton* m_pBtnDelete;
    QToolButton* m_pBtnLoad = nullptr;
};
