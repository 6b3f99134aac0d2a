#include "ToolPage.h"

#include "CToolBarItem.h"
#include "CToolButton.h"

#include <QAbstractButton>
#include <QMainWindow>
#include <QTabWidget>

ToolPage::ToolPage(QWidget* content, QWidget* parent) : CTabToolWidget(nullptr), m_pContent(content)
{
    if (parent)
        setParent(parent);
    QMainWindow* page = AddTab(tr("功能"), content);
    BuildToolBlocks(page);
    connect(this, &QTabWidget::currentChanged, this, &ToolPage::OnCurrentTabChanged);
}

QMainWindow* ToolPage::CreatePage()
{
    auto* page = new QMainWindow(nullptr, Qt::WindowFlags());
    page->setDockOptions(page->dockOptions() & ~QMainWindow::AllowTabbedDocks);
    return page;
}

QMainWindow* ToolPage::AddTab(const QString& title, QWidget* content)
{
    QMainWindow* page = CreatePage();
    addTab(page, title);
    delete page->centralWidget();
    page->setCentralWidget(content);
    return page;
}

void ToolPage::BuildToolBlocks(QMainWindow* page)
{
    const QString dir = QStringLiteral(":/icon/ToolPage/");
    AddBlock(page, tr("连接"),
             {{ActionNewConnection,
               {tr("新建连接"), dir + "ico_function_files_build.png", dir + "ico_function_files_build_g.png"}},
              {ActionDisconnect,
               {tr("断开连接"), dir + "ico_function_files_offline.png", dir + "ico_function_files_offline_g.png"}}});
    AddBlock(page, tr("信息"),
             {{ActionBindDevice,
               {tr("绑定设备"), dir + "ico_files_device_bingding.png", dir + "ico_files_device_bingding.png"}},
              {ActionUnbindDevice,
               {tr("解绑设备"), dir + "ico_files_device_unbing.png", dir + "ico_files_device_unbing.png"}}});
    AddBlock(page, tr("显示"),
             {{ActionMachineStatus,
               {tr("设备状态"), dir + "ico_function_files_machine_state_nor.png",
                dir + "ico_function_files_machine_state_g.png"}},
              {ActionFileTransfer,
               {tr("文件传输"), dir + "ico_function_files_transmission.png",
                dir + "ico_function_files_transmission_g.png"}}});
    AddBlock(page, tr("同步"),
             {{ActionFolderSync,
               {tr("同步文件夹"), dir + "ico_function_files_synchronization.png",
                dir + "ico_function_files_synchronization.png"}}});
}

void ToolPage::AddBlock(QMainWindow* page, const QString& title, const QList<QPair<int, QStringList>>& items)
{
    auto* block = new CToolBarItem(title, page);
    for (const auto& item : items) {
        // Connecting and disconnecting are acts, not states: their buttons never stay pressed.
        const bool bPlain =
            item.first == ActionNewConnection || item.first == ActionDisconnect || item.first == ActionFolderSync;
        block->AddItem(item.second.at(1), item.second.at(0), bPlain ? ToolItemNoCheck : 0, item.second.at(2));
    }
    const QList<CToolButton*> buttons = block->CreateToolBlock(true);
    page->addToolBar(block);
    for (int i = 0; i < buttons.size() && i < items.size(); ++i) {
        const int action = items.at(i).first;
        QAbstractButton* button = buttons.at(i);
        m_hashButtons.insert(action, button);
        connect(button, &QAbstractButton::clicked, this, [this, action]() { Q_EMIT SignalActionTriggered(action); });
    }
}

void ToolPage::SetChecked(int action, bool checked)
{
    if (QAbstractButton* button = m_hashButtons.value(action))
        button->setChecked(checked);
}

void ToolPage::SetEnabled(int action, bool enabled)
{
    if (QAbstractButton* button = m_hashButtons.value(action))
        button->setEnabled(enabled);
}

QAbstractButton* ToolPage::Button(int action) const
{
    return m_hashButtons.value(action);
}

void ToolPage::OnCurrentTabChanged(int index)
{
    if (auto* page = qobject_cast<QMainWindow*>(widget(index)))
        page->setCentralWidget(m_pContent);
}
