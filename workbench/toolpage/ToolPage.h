#pragma once

#include "CTabToolWidget.h"

#include <QHash>

class CToolButton;
class QAbstractButton;
class QMainWindow;

// The workbench's ribbon: a "功能" tab whose page carries the tool blocks above the
// one content widget. Buttons are addressed by action id.
class ToolPage : public CTabToolWidget
{
    Q_OBJECT

public:
    enum Action
    {
        ActionNewConnection = 1,
        ActionDisconnect = 2,
        ActionBindDevice = 3,
        ActionUnbindDevice = 4,
        ActionMachineStatus = 5,
        ActionFolderSync = 6,
        ActionFileTransfer = 7,
    };

    explicit ToolPage(QWidget* content, QWidget* parent = nullptr);

    QMainWindow* AddTab(const QString& title, QWidget* content);
    void SetChecked(int action, bool checked);
    void SetEnabled(int action, bool enabled);
    QAbstractButton* Button(int action) const;

Q_SIGNALS:
    void SignalActionTriggered(int action);

private:
    QMainWindow* CreatePage();
    void BuildToolBlocks(QMainWindow* page);
    void AddBlock(QMainWindow* page, const QString& title, const QList<QPair<int, QStringList>>& items);
    void OnCurrentTabChanged(int index);

    QWidget* m_pContent = nullptr;
    QHash<int, QAbstractButton*> m_hashButtons;
};
