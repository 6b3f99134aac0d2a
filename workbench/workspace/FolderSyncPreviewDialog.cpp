#include "FolderSyncPreviewDialog.h"

#include "filepanel/FileSizeText.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
constexpr int KindRole = Qt::UserRole;
constexpr int IndexRole = Qt::UserRole + 1;

QString Describe(const SyncEntry* entry)
{
    if (!entry)
        return QString();
    const QString time = entry->time.isValid() ? entry->time.toString(QStringLiteral("yyyy-MM-dd HH:mm")) : QString();
    return entry->bDir ? time : FileSizeText::Format(entry->iSize) + QStringLiteral("  ") + time;
}
} // namespace

FolderSyncPreviewDialog::FolderSyncPreviewDialog(const FolderSyncPlan& plan, QWidget* parent)
    : QDialog(parent), m_plan(plan), m_pTree(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("FolderSyncPreviewDialog"));
    setWindowTitle(tr("同步前预览"));
    resize(760, 480);
    m_pTree->setRootIsDecorated(false);
    m_pTree->setColumnCount(ColumnCount);
    m_pTree->setHeaderLabels({tr("文件"), tr("操作"), tr("本地"), tr("机床")});
    m_pTree->header()->setSectionResizeMode(ColumnPath, QHeaderView::Stretch);
    for (int i = 0; i < plan.listMachineDirs.size(); ++i)
        AddRow(KindMachineDir, plan.listMachineDirs.at(i), tr("新建机床文件夹"), nullptr, nullptr)
            ->setData(0, IndexRole, i);
    for (int i = 0; i < plan.listLocalDirs.size(); ++i)
        AddRow(KindLocalDir, plan.listLocalDirs.at(i), tr("新建本地文件夹"), nullptr, nullptr)
            ->setData(0, IndexRole, i);
    for (int i = 0; i < plan.listUpload.size(); ++i)
        AddRow(KindUpload, plan.listUpload.at(i).strRelPath, tr("上传"), &plan.listUpload.at(i), nullptr)
            ->setData(0, IndexRole, i);
    for (int i = 0; i < plan.listDownload.size(); ++i)
        AddRow(KindDownload, plan.listDownload.at(i).strRelPath, tr("下载"), nullptr, &plan.listDownload.at(i))
            ->setData(0, IndexRole, i);
    for (int i = 0; i < plan.listConflict.size(); ++i) {
        const SyncConflict& conflict = plan.listConflict.at(i);
        QTreeWidgetItem* item =
            AddRow(KindConflict, conflict.local.strRelPath, QString(), &conflict.local, &conflict.machine);
        item->setData(0, IndexRole, i);
        auto* choice = new QComboBox(m_pTree);
        choice->addItems({tr("保存本地版本"), tr("保存机床版本"), tr("跳过")});
        choice->setCurrentIndex(ChoiceSkip);
        m_pTree->setItemWidget(item, ColumnAction, choice);
    }
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("开始同步"), QDialogButtonBox::AcceptRole);
    buttons->addButton(tr("取消"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("以下操作将在确认后执行，取消勾选的项目不会传输："), this));
    layout->addWidget(m_pTree, 1);
    layout->addWidget(buttons);
}

QTreeWidgetItem* FolderSyncPreviewDialog::AddRow(Kind kind, const QString& path, const QString& action,
                                                 const SyncEntry* local, const SyncEntry* machine)
{
    auto* item = new QTreeWidgetItem(m_pTree, {path, action, Describe(local), Describe(machine)});
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(ColumnPath, Qt::Checked);
    item->setData(0, KindRole, kind);
    return item;
}

void FolderSyncPreviewDialog::SetConflictChoice(int row, Choice choice)
{
    if (auto* box = qobject_cast<QComboBox*>(m_pTree->itemWidget(m_pTree->topLevelItem(row), ColumnAction)))
        box->setCurrentIndex(choice);
}

FolderSyncPlan FolderSyncPreviewDialog::Result() const
{
    FolderSyncPlan result;
    result.listConflict = m_plan.listConflict;
    result.iLeftOutType = m_plan.iLeftOutType;
    result.iLeftOutHidden = m_plan.iLeftOutHidden;
    for (int row = 0; row < m_pTree->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = m_pTree->topLevelItem(row);
        if (item->checkState(ColumnPath) != Qt::Checked)
            continue;
        const int index = item->data(0, IndexRole).toInt();
        switch (item->data(0, KindRole).toInt()) {
        case KindMachineDir:
            result.listMachineDirs.append(m_plan.listMachineDirs.at(index));
            break;
        case KindLocalDir:
            result.listLocalDirs.append(m_plan.listLocalDirs.at(index));
            break;
        case KindUpload:
            result.listUpload.append(m_plan.listUpload.at(index));
            break;
        case KindDownload:
            result.listDownload.append(m_plan.listDownload.at(index));
            break;
        default: {
            const auto* box = qobject_cast<QComboBox*>(m_pTree->itemWidget(item, ColumnAction));
            const SyncConflict& conflict = m_plan.listConflict.at(index);
            if (box && box->currentIndex() == ChoiceLocal)
                result.listUpload.append(conflict.local);
            else if (box && box->currentIndex() == ChoiceMachine)
                result.listDownload.append(conflict.machine);
            break;
        }
        }
    }
    return result;
}
