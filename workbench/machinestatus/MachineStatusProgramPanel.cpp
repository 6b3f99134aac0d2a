#include "MachineStatusProgramPanel.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "MachineStatusFileActionWidget.h"
#include "MachineStatusFileDelegate.h"
#include "MachineStatusFtpManager.h"
#include "ui_MachineStatusProgramPanel.h"

#include <QButtonGroup>
#include <QFileInfo>
#include <QHeaderView>
#include <QStandardItemModel>

namespace {
const QColor Green(0x17, 0xa0, 0x61);

QString NoticeTitle()
{
    return MachineStatusProgramPanel::tr("提示");
}

QString LoadingFolder()
{
    return MachineStatusProgramPanel::tr("加载中...");
}

QString JoinPath(const QString& folder, const QString& name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

QString ParentPath(const QString& path)
{
    const int slash = int(path.lastIndexOf(QLatin1Char('/')));
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}
} // namespace

MachineStatusProgramPanel::MachineStatusProgramPanel(QWidget* parent)
    : QWidget(parent), m_pUi(new Ui::MachineStatusProgramPanel), m_pTabGroup(new QButtonGroup(this)),
      m_pFtpManager(new MachineStatusFtpManager(this)), m_pProgramModel(new QStandardItemModel(this)),
      m_pFileModel(new QStandardItemModel(this)), m_pDelegate(new MachineStatusFileDelegate(this))
{
    m_pUi->setupUi(this);
    m_pTabGroup->setExclusive(true);
    m_pTabGroup->addButton(m_pUi->BtnNowProgram, 0);
    m_pTabGroup->addButton(m_pUi->BtnFile, 1);
    m_pUi->BtnNowProgram->setChecked(true);
    m_pUi->stackedWidget->setCurrentIndex(0);
    connect(m_pTabGroup, &QButtonGroup::idClicked, m_pUi->stackedWidget, &QStackedWidget::setCurrentIndex);

    m_pUi->LabelNowNumber->SetFixedWidthBySample();
    m_pUi->LabelTotalNumber->SetFixedWidthBySample();
    for (MachineStatusElidedLabel* label : {m_pUi->LabelTimeUsed, m_pUi->LabelTimeRemain})
        label->setStyleSheet(QStringLiteral("background-color: transparent; color: #333333;"));

    QTableView* table = m_pUi->TableViewProgram;
    table->setModel(m_pProgramModel);
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->setShowGrid(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    table->setFocusPolicy(Qt::NoFocus);
    table->verticalHeader()->setDefaultSectionSize(24);
    m_pProgramModel->setColumnCount(2);
    table->setColumnWidth(0, table->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 12);

    QTreeView* tree = m_pUi->treeViewFiles;
    tree->setModel(m_pFileModel);
    tree->setItemDelegateForColumn(ColumnName, m_pDelegate);
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->setUniformRowHeights(true);
    tree->header()->setStretchLastSection(false);
    connect(tree, &QTreeView::expanded, this, &MachineStatusProgramPanel::SlotTreeExpanded);
    connect(tree, &QTreeView::collapsed, this, &MachineStatusProgramPanel::SlotTreeCollapsed);
    connect(m_pDelegate, &MachineStatusFileDelegate::signalRenameCommit, this,
            &MachineStatusProgramPanel::SlotRenameCommit);
    connect(m_pFtpManager, &MachineStatusFtpManager::SignalListResult, this,
            &MachineStatusProgramPanel::SlotOnListResult);
    connect(m_pFtpManager, &MachineStatusFtpManager::SignalRenameResult, this,
            &MachineStatusProgramPanel::SlotRenameResult);
    connect(m_pFtpManager, &MachineStatusFtpManager::SignalDeleteResult, this,
            &MachineStatusProgramPanel::SlotDeleteResult);
    ResetFileTree();
}

MachineStatusProgramPanel::~MachineStatusProgramPanel()
{
    delete m_pUi;
}

QString MachineStatusProgramPanel::TimeText(int seconds)
{
    const int total = std::max(0, seconds);
    return QStringLiteral("%1:%2:%3")
        .arg(total / 3600, 2, 10, QLatin1Char('0'))
        .arg(total % 3600 / 60, 2, 10, QLatin1Char('0'))
        .arg(total % 60, 2, 10, QLatin1Char('0'));
}

bool MachineStatusProgramPanel::IsRunnableProgram(const QString& name)
{
    static const QStringList runnable = {QStringLiteral("nc"), QStringLiteral("ngc"), QStringLiteral("tap"),
                                         QStringLiteral("mpf")};
    return runnable.contains(QFileInfo(name).suffix().toLower());
}

void MachineStatusProgramPanel::SetProgramInfo(const StructProgramInfo& program)
{
    m_pUi->LabelProgram->SetFullText(program.name.isEmpty() ? QStringLiteral("----") : program.name);
    const QString now = QStringLiteral("%1").arg(program.curLine, 4, 10, QLatin1Char('0'));
    const QString total = QStringLiteral("/%1").arg(program.totalLine, 4, 10, QLatin1Char('0'));
    m_pUi->LabelNowNumber->SetFullText(now);
    m_pUi->LabelTotalNumber->SetFullText(total);
    m_pUi->LabelNowNumber->SetExplicitToolTip(now + total);
    m_pUi->LabelTotalNumber->SetExplicitToolTip(now + total);
    m_pUi->LabelTimeUsed->SetFullText(TimeText(program.timeUsed));
    m_pUi->LabelTimeRemain->SetFullText(TimeText(program.timeLeft));
}

void MachineStatusProgramPanel::SetCurrentLines(const StructCurrentLines& currentLines, int curLine)
{
    m_iCurLine = curLine;
    const int previousHighlight = m_iHighlightedRow;
    m_iHighlightedRow = -1;
    const int count = int(currentLines.lines.size());
    // The window keeps its size while a program runs: rows are rewritten in place.
    if (m_pProgramModel->rowCount() != count)
        m_pProgramModel->removeRows(0, m_pProgramModel->rowCount());
    if (count == 0)
        return;
    if (currentLines.startLine <= curLine && curLine <= currentLines.endLine)
        m_iHighlightedRow = curLine - currentLines.startLine;
    const QColor plain = palette().color(QPalette::Text);
    const QBrush highlight(QColor(0xe7, 0xf5, 0xee));
    for (int i = 0; i < count; ++i) {
        QStandardItem* number = m_pProgramModel->item(i, 0);
        QStandardItem* text = m_pProgramModel->item(i, 1);
        if (!number) {
            number = new QStandardItem;
            number->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            number->setEditable(false);
            number->setForeground(Green);
            text = new QStandardItem;
            text->setEditable(false);
            m_pProgramModel->appendRow({number, text});
        }
        const QString numberText = QStringLiteral("%1").arg(currentLines.startLine + i, 5, 10, QLatin1Char('0'));
        if (number->text() != numberText)
            number->setText(numberText);
        if (text->text() != currentLines.lines.at(i))
            text->setText(currentLines.lines.at(i));
        const bool lit = i == m_iHighlightedRow;
        // The executing line also stands out from a distance.
        if (text->foreground().color() != (lit ? Green : plain)) {
            text->setForeground(lit ? Green : plain);
            number->setBackground(lit ? highlight : QBrush());
            text->setBackground(lit ? highlight : QBrush());
        }
    }
    if (m_iHighlightedRow >= 0 && m_iHighlightedRow != previousHighlight)
        m_pUi->TableViewProgram->scrollTo(m_pProgramModel->index(m_iHighlightedRow, 1));
}

void MachineStatusProgramPanel::SetMachineIp(const QString& ip)
{
    m_pFtpManager->SetIp(ip);
    ResetFileTree();
    RefreshFiles();
}

void MachineStatusProgramPanel::RefreshFiles()
{
    if (m_pFtpManager->Ip().isEmpty())
        return;
    ResetFileTree();
    m_pFtpManager->RequestList(QStringLiteral("/"));
}

void MachineStatusProgramPanel::ResetFileTree()
{
    // Rows only: the root item stays the same object for whoever holds it.
    m_pFileModel->removeRows(0, m_pFileModel->rowCount());
    m_pFileModel->setColumnCount(ColumnCount);
    m_pFileModel->setHorizontalHeaderLabels({tr("文件名称"), tr("修改日期"), tr("操作")});
    AppendPlaceholder(m_pFileModel->invisibleRootItem(), tr("加载中"));
    QHeaderView* header = m_pUi->treeViewFiles->header();
    header->setSectionResizeMode(ColumnName, QHeaderView::Stretch);
    header->resizeSection(ColumnTime, 130);
    header->resizeSection(ColumnAction, 96);
}

void MachineStatusProgramPanel::AppendPlaceholder(QStandardItem* parent, const QString& text)
{
    auto* item = new QStandardItem(text);
    item->setEditable(false);
    item->setForeground(QColor(0x99, 0x99, 0x99));
    parent->appendRow(item);
}

void MachineStatusProgramPanel::RemoveChildNodes(QStandardItem* item)
{
    if (item && item->rowCount() > 0)
        item->removeRows(0, item->rowCount());
}

QString MachineStatusProgramPanel::PathOf(const QStandardItem* item) const
{
    return item && item != m_pFileModel->invisibleRootItem() ? item->data(RolePath).toString() : QStringLiteral("/");
}

QStandardItem* MachineStatusProgramPanel::FolderItem(const QString& dirPath) const
{
    QStandardItem* item = m_pFileModel->invisibleRootItem();
    const QStringList parts = dirPath.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        QStandardItem* next = nullptr;
        for (int row = 0; row < item->rowCount() && !next; ++row) {
            QStandardItem* child = item->child(row, ColumnName);
            if (child->data(RoleIsDir).toBool() && child->text() == part)
                next = child;
        }
        if (!next)
            return nullptr;
        item = next;
    }
    return item;
}

void MachineStatusProgramPanel::AppendEntry(QStandardItem* parent, const QString& parentPath, const FtpFileInfo& entry)
{
    const bool isDir = entry.type == QLatin1String("dir");
    auto* name = new QStandardItem(QIcon(isDir ? QStringLiteral(":/icon/MachineStatus/ico_machine_status_folder.png")
                                               : QStringLiteral(":/icon/MachineStatus/ico_machine_status_files.png")),
                                   entry.name);
    name->setData(isDir, RoleIsDir);
    name->setData(JoinPath(parentPath, entry.name), RolePath);
    auto* time = new QStandardItem(
        entry.time.isValid() ? entry.time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm")) : QString());
    time->setEditable(false);
    time->setForeground(QColor(0x88, 0x88, 0x88));
    auto* action = new QStandardItem;
    action->setEditable(false);
    parent->appendRow({name, time, action});
    if (isDir)
        AppendPlaceholder(name, LoadingFolder());

    auto* widget = new MachineStatusFileActionWidget(!isDir);
    const QPersistentModelIndex index(name->index());
    connect(widget, &MachineStatusFileActionWidget::SignalRename, this, [this, index]() { SlotActionRename(index); });
    connect(widget, &MachineStatusFileActionWidget::SignalDelete, this, [this, index]() { SlotActionDelete(index); });
    connect(widget, &MachineStatusFileActionWidget::SignalLoadProgram, this,
            [this, index]() { SlotActionLoadProgram(index); });
    connect(widget, &MachineStatusFileActionWidget::SignalShowHistory, this, [this, index]() {
        if (const QStandardItem* item = m_pFileModel->itemFromIndex(index))
            Q_EMIT SignalShowHistoryRequested(item->data(RolePath).toString());
    });
    m_pUi->treeViewFiles->setIndexWidget(action->index(), widget);
}

void MachineStatusProgramPanel::SlotOnListResult(QString dirPath, bool success, QList<FtpFileInfo> items)
{
    QStandardItem* folder = FolderItem(dirPath);
    if (!success) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusProgramPanel 目录列表请求失败: %1").arg(dirPath));
        if (m_pUi->stackedWidget->currentWidget() == m_pUi->PageFileLists && isVisible()) {
            StructMsgBoxRequest request;
            request.strTitle = NoticeTitle();
            request.strText = tr("获取机床文件列表失败，请检查机床连接后重试！");
            request.eIcon = MsgIconFailure;
            request.bAutoClose = true;
            CVarnokMessageBox::Open(this, request, {});
        }
        return;
    }
    if (!folder)
        return;
    RemoveChildNodes(folder);
    const QString parentPath = PathOf(folder);
    for (const FtpFileInfo& entry : std::as_const(items)) {
        if (entry.type == QLatin1String("dir"))
            AppendEntry(folder, parentPath, entry);
    }
    for (const FtpFileInfo& entry : std::as_const(items)) {
        if (entry.type != QLatin1String("dir"))
            AppendEntry(folder, parentPath, entry);
    }
    if (items.isEmpty())
        AppendPlaceholder(folder, tr("无文件"));
}

void MachineStatusProgramPanel::SlotTreeExpanded(QModelIndex index)
{
    const QStandardItem* item = m_pFileModel->itemFromIndex(index.siblingAtColumn(ColumnName));
    if (item && item->data(RoleIsDir).toBool())
        m_pFtpManager->RequestList(PathOf(item));
}

void MachineStatusProgramPanel::SlotTreeCollapsed(QModelIndex index)
{
    QStandardItem* item = m_pFileModel->itemFromIndex(index.siblingAtColumn(ColumnName));
    if (!item || !item->data(RoleIsDir).toBool())
        return;
    // Every expansion lists the folder afresh.
    RemoveChildNodes(item);
    AppendPlaceholder(item, LoadingFolder());
}

void MachineStatusProgramPanel::SlotActionRename(QPersistentModelIndex index)
{
    if (!index.isValid())
        return;
    m_pUi->treeViewFiles->setCurrentIndex(index);
    m_pUi->treeViewFiles->edit(index);
}

void MachineStatusProgramPanel::SlotRenameCommit(QPersistentModelIndex index, QString oldName, QString newName)
{
    const QStandardItem* item = m_pFileModel->itemFromIndex(index);
    if (!item)
        return;
    const QStandardItem* parent = item->parent() ? item->parent() : m_pFileModel->invisibleRootItem();
    for (int row = 0; row < parent->rowCount(); ++row) {
        const QStandardItem* sibling = parent->child(row, ColumnName);
        if (sibling != item && sibling->text().compare(newName, Qt::CaseInsensitive) == 0) {
            ShowNotice(tr("同级目录下已存在相同名称的条目！"));
            return;
        }
    }
    const QString parentPath = PathOf(item->parent());
    m_pFtpManager->RequestRename(JoinPath(parentPath, oldName), JoinPath(parentPath, newName));
}

void MachineStatusProgramPanel::SlotRenameResult(bool success, QString oldPath, QString)
{
    if (!success) {
        ShowNotice(tr("重命名失败，请稍后重试！"));
        return;
    }
    const QString folder = ParentPath(oldPath);
    if (!folder.isEmpty())
        m_pFtpManager->RequestList(folder);
}

void MachineStatusProgramPanel::SlotActionDelete(QPersistentModelIndex index)
{
    const QStandardItem* item = m_pFileModel->itemFromIndex(index);
    if (!item)
        return;
    const bool isDir = item->data(RoleIsDir).toBool();
    const QString text = isDir ? tr("确定删除文件夹 \"%1\" 及其全部内容吗？").arg(item->text())
                               : tr("确定删除文件 \"%1\" 吗？").arg(item->text());
    const QString path = item->data(RolePath).toString();
    const QString parentPath = PathOf(item->parent());
    // The row may be gone when the box closes: everything needed is taken first.
    CVarnokMessageBox::Open(this, MsgButtonConfirm | MsgButtonCancel, MsgIconWarning, NoticeTitle(), text, {},
                            [this, isDir, path, parentPath](int answer) {
                                if (answer != MsgButtonConfirm)
                                    return;
                                m_strDeleteParent = parentPath;
                                m_pFtpManager->RequestDelete(isDir ? QStringList() : QStringList{path},
                                                             isDir ? QStringList{path} : QStringList());
                            });
}

void MachineStatusProgramPanel::SlotDeleteResult(bool success)
{
    if (!success) {
        ShowNotice(tr("删除失败，请稍后重试！"));
        return;
    }
    if (!m_strDeleteParent.isEmpty())
        m_pFtpManager->RequestList(m_strDeleteParent);
}

void MachineStatusProgramPanel::SlotActionLoadProgram(QPersistentModelIndex index)
{
    const QStandardItem* item = m_pFileModel->itemFromIndex(index);
    if (!item || item->data(RoleIsDir).toBool())
        return;
    if (!IsRunnableProgram(item->text())) {
        ShowNotice(tr("机床无法运行此类型的文件：%1").arg(item->text()));
        return;
    }
    Q_EMIT SignalLoadProgramRequested(item->data(RolePath).toString());
}

void MachineStatusProgramPanel::ShowNotice(const QString& text)
{
    // Results arrive from task threads and editor commits: the box never runs a loop inside them.
    CVarnokMessageBox::Open(this, MsgButtonConfirm, MsgIconWarning, NoticeTitle(), text);
}
