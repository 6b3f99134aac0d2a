#include "HostWindow.h"

#include "WorkbenchPlugin.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QIcon>
#include <QPixmap>
#include <QScreen>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
QPixmap pixmapFromBytes(const std::vector<unsigned char>& bytes)
{
    QPixmap pixmap;
    if (!bytes.empty())
        pixmap.loadFromData(bytes.data(), static_cast<uint>(bytes.size()), "PNG");
    return pixmap;
}
} // namespace

HostWindow::HostWindow(QWidget* parent) : QMainWindow(parent)
{
    setWindowTitle(tr("Korv CAM"));
    // The usual size, but never beyond a small screen's bottom edge.
    QSize size(1440, 900);
    if (const QScreen* shown = screen())
        size = size.boundedTo(shown->availableGeometry().size());
    resize(size);

    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* bar = new QWidget(central);
    bar->setObjectName(QStringLiteral("m_widgetWorkbenchBar"));
    bar->setFixedWidth(72);
    bar->setStyleSheet(
        QStringLiteral("#m_widgetWorkbenchBar{background:#2b2f36;}"
                       "QToolButton{color:#c8ccd2;border:none;padding:8px 0px;}"
                       "QToolButton:checked{color:#ffffff;background:#3d434d;border-left:3px solid #368bd4;}"
                       "QToolButton:disabled{color:#6b717a;}"));
    m_pBarLayout = new QVBoxLayout(bar);
    m_pBarLayout->setContentsMargins(0, 8, 0, 8);
    m_pBarLayout->setSpacing(4);
    m_pBarLayout->addStretch();

    m_pButtonGroup = new QButtonGroup(this);
    m_pButtonGroup->setExclusive(true);
    connect(m_pButtonGroup, &QButtonGroup::idToggled, this, &HostWindow::OnButtonToggled);

    m_pStack = new QStackedWidget(central);
    layout->addWidget(bar);
    layout->addWidget(m_pStack, 1);
    setCentralWidget(central);
}

bool HostWindow::AddWorkbench(Plugin::PluginInterface* plugin)
{
    const int type = plugin->getWorkbenchType();
    if (m_mapPlugins.contains(type) || !plugin->initialize())
        return false;
    QWidget* widget = plugin->createWidget(m_pStack);
    if (!widget)
        return false;
    m_pStack->addWidget(widget);

    auto* button = new QToolButton(this);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setCheckable(true);
    button->setAutoRaise(true);
    button->setFixedWidth(72);
    button->setText(QString::fromStdString(plugin->getDisplayName()));
    button->setToolTip(QString::fromStdString(plugin->getTooltip()));
    QIcon icon;
    icon.addPixmap(pixmapFromBytes(plugin->getIcon(0)), QIcon::Normal, QIcon::Off);
    icon.addPixmap(pixmapFromBytes(plugin->getIcon(1)), QIcon::Normal, QIcon::On);
    button->setIcon(icon);
    button->setIconSize(QSize(32, 32));
    m_pBarLayout->insertWidget(m_pBarLayout->count() - 1, button);
    m_pButtonGroup->addButton(button, type);

    m_mapPlugins.insert(type, plugin);
    m_mapWidgets.insert(type, widget);
    m_mapButtons.insert(type, button);

    if (auto* workbench = dynamic_cast<Plugin::WorkbenchPlugin*>(plugin)) {
        workbench->setPluginOperationCallback(
            [this](Plugin::PluginOperationType operation, Plugin::WorkbenchPluginType target) {
                const int targetType = static_cast<int>(target);
                switch (operation) {
                case Plugin::PluginOperationType::SwitchTo:
                    ShowWorkbench(targetType);
                    break;
                case Plugin::PluginOperationType::Enable:
                case Plugin::PluginOperationType::Disable:
                    SetWorkbenchEnabled(targetType, operation == Plugin::PluginOperationType::Enable);
                    break;
                case Plugin::PluginOperationType::CloseApp:
                    close();
                    break;
                case Plugin::PluginOperationType::Activate:
                case Plugin::PluginOperationType::Deactivate:
                    break;
                }
            });
    }
    if (m_mapPlugins.size() == 1)
        ShowWorkbench(type);
    return true;
}

void HostWindow::ShowWorkbench(int workbenchType)
{
    QToolButton* button = m_mapButtons.value(workbenchType);
    if (button && button->isEnabled())
        button->setChecked(true);
}

void HostWindow::SetWorkbenchEnabled(int workbenchType, bool enabled)
{
    if (QToolButton* button = m_mapButtons.value(workbenchType))
        button->setEnabled(enabled);
}

int HostWindow::CurrentWorkbench() const
{
    return m_pButtonGroup->checkedId();
}

QList<QToolButton*> HostWindow::WorkbenchButtons() const
{
    return m_mapButtons.values();
}

void HostWindow::OnButtonToggled(int workbenchType, bool checked)
{
    Plugin::PluginInterface* plugin = m_mapPlugins.value(workbenchType);
    if (!plugin)
        return;
    plugin->setActive(checked);
    if (auto* workbench = dynamic_cast<Plugin::WorkbenchPlugin*>(plugin))
        checked ? void(workbench->activateWorkbench()) : workbench->deactivateWorkbench();
    if (checked)
        m_pStack->setCurrentWidget(m_mapWidgets.value(workbenchType));
}
