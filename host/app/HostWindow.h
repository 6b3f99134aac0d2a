#pragma once

#include <QMainWindow>
#include <QMap>

class QButtonGroup;
class QStackedWidget;
class QToolButton;
class QVBoxLayout;
namespace Plugin {
class PluginInterface;
}

// The host's main window: a vertical bar of workbench buttons and a stacked area
// holding each workbench's widget.
class HostWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit HostWindow(QWidget* parent = nullptr);

    // Initialises the plug-in, asks it for its widget and adds its button.
    bool AddWorkbench(Plugin::PluginInterface* plugin);
    void ShowWorkbench(int workbenchType);
    void SetWorkbenchEnabled(int workbenchType, bool enabled);
    int CurrentWorkbench() const;
    QList<QToolButton*> WorkbenchButtons() const;

private:
    void OnButtonToggled(int workbenchType, bool checked);

    QVBoxLayout* m_pBarLayout = nullptr;
    QButtonGroup* m_pButtonGroup = nullptr;
    QStackedWidget* m_pStack = nullptr;
    QMap<int, Plugin::PluginInterface*> m_mapPlugins;
    QMap<int, QWidget*> m_mapWidgets;
    QMap<int, QToolButton*> m_mapButtons;
};
