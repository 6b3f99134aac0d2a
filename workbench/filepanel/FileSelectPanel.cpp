#include "FileSelectPanel.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "FileItemRoles.h"
#include "FilePanelActions.h"
#include "FilePanelDropTarget.h"
#include "FilePanelListing.h"
#include "FilePanelOperations.h"
#include "FilePanelTitleBar.h"
#include "FileSortProxyModel.h"
#include "FileTreeView.h"
#include "LocalListingSource.h"
#include "MachineListingSource.h"
#include "ui_FileSelectPanel.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QHeaderView>
#include <QLoggingCategory>
#include <QStandardItemModel>
#include <QTimer>
#include <QUrl>
#include <algorithm>

Q_LOGGING_CATEGORY(lcFilePanel, "korv.filepanel", QtInfoMsg)

FileSelectPanel::FileSelectPanel(bool bLocal, QWidget* parent)
    : QWidget(parent), ui(new Ui::FileSelectPanel), m_bLocal(bLocal)
{
    RegisterWorkbenchMetaTypes();
    ui->setupUi(this);
    if (m_bLocal) {
        m_pLocalSource = new LocalListingSource(this);
        m_pSource = m_pLocalSource;
    } else {
        m_pMachineSource = new MachineListingSource(this);
        m_pSource = m_pMachineSource;
    }
    connect(m_pSource, &FileListingSource::SignalAppendLog, this, &FileSelectPanel::SignalAppendLog);
    SetUpView();
    SetUpHelpers();

    // The local panel starts in the computer view, the machine panel at the machine's root.
    ClearPanel();
    if (m_bLocal) {
        m_pListing->ShowComputer();
    }
}

FileSelectPanel::~FileSelectPanel()
{
    delete ui;
}

void FileSelectPanel::SetMachineIp(const QString& ip)
{
    if (m_pMachineSource) {
        m_pMachineSource->SetMachineIp(ip);
    }
}

QString FileSelectPanel::MachineIp() const
{
    return m_pMachineSource ? m_pMachineSource->MachineIp() : QString();
}

void FileSelectPanel::SetUpView()
{
    m_pModel = new QStandardItemModel(0, 4, this);
    m_pModel->setHorizontalHeaderLabels({tr("名称"), tr("修改时间"), tr("格式"), tr("大小")});
    m_pProxyModel = new FileSortProxyModel(this);
    m_pProxyModel->setSourceModel(m_pModel);

    m_pTreeView = new FileTreeView(m_bLocal, this);
    ui->m_layoutTree->addWidget(m_pTreeView);
    m_pTreeView->setModel(m_pProxyModel);
    m_pTreeView->setSortingEnabled(false);
    m_pTreeView->setContextMenuPolicy(Qt::CustomContextMenu);
    m_pTreeView->setDragEnabled(true);
    m_pTreeView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_pTreeView->setDragDropMode(QAbstractItemView::DragDrop);
    // Drops belong to the panel, which knows which side it shows.
    m_pTreeView->setAcceptDrops(false);
    m_pTreeView->viewport()->setAcceptDrops(false);

    QHeaderView* header = m_pTreeView->header();
    header->setSortIndicatorShown(true);
    // No column is sorted until the first header click.
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->setSectionsClickable(true);
    header->setMinimumSectionSize(80);
    header->setSectionResizeMode(0, QHeaderView::Interactive);
    header->setSectionResizeMode(1, QHeaderView::Interactive);
    header->setSectionResizeMode(2, QHeaderView::Interactive);
    header->setSectionResizeMode(3, QHeaderView::Stretch);
    header->resizeSection(0, 320);
    header->resizeSection(1, 170);
    header->resizeSection(2, 110);
    header->setStyleSheet(
        QStringLiteral("QHeaderView::section {background-color: rgb(227, 231, 237);border: none;padding-left: "
                       "8px;color: rgb(51, 51, 51);}QHeaderView::section:hover {    background-color: rgb(217, "
                       "221, 227);}"));

    connect(m_pTreeView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FileSelectPanel::SlotSelectionChanged);
    connect(header, &QHeaderView::sectionClicked, this, &FileSelectPanel::SlotHeaderClicked);
    connect(m_pTreeView, &QAbstractItemView::doubleClicked, this, &FileSelectPanel::SlotTreeDoubleClicked);
    connect(m_pTreeView, &QAbstractItemView::clicked, this, &FileSelectPanel::SlotTreeClicked);
    connect(m_pTreeView, &FileTreeView::SignalDataChanged, this, &FileSelectPanel::SlotFileNameChanged);
    connect(ui->pathLineEdit, &QLineEdit::returnPressed, this, &FileSelectPanel::SlotPathEditReturnPressed);
    connect(ui->filiterBox, &QCheckBox::stateChanged, this,
            [this](int state) { on_filiterBox_checkStateChanged(static_cast<Qt::CheckState>(state)); });
}

void FileSelectPanel::SetUpHelpers()
{
    m_pTitleBar = new FilePanelTitleBar(ui, m_bLocal, this);
    connect(m_pTitleBar, &FilePanelTitleBar::SignalComputerClicked, this, [this] { NavigateTo(QString()); });

    m_pListing = new FilePanelListing(m_pSource, m_pModel, m_pTreeView->header(), this);
    connect(m_pListing, &FilePanelListing::SignalPathChanged, m_pTitleBar, &FilePanelTitleBar::SetPath);
    connect(m_pListing, &FilePanelListing::SignalSelect, this, &FileSelectPanel::SelectAndFlash);
    connect(m_pListing, &FilePanelListing::SignalAppendLog, this, &FileSelectPanel::SignalAppendLog);
    connect(m_pListing, &FilePanelListing::SignalListingFinished, this, &FileSelectPanel::SignalListingFinished);

    m_pOperations = new FilePanelOperations(this);
    connect(m_pOperations, &FilePanelOperations::SignalClearLocalClipboardPath, this,
            &FileSelectPanel::SignalClearLocalClipboardPath);
    connect(m_pOperations, &FilePanelOperations::SignalAppendLog, this, &FileSelectPanel::SignalAppendLog);
    new FilePanelDropTarget(this, m_pOperations);

    m_pActions = new FilePanelActions(this, m_pOperations);
    connect(m_pTreeView, &QWidget::customContextMenuRequested, m_pActions, &FilePanelActions::ShowMenu);
    connect(m_pActions, &FilePanelActions::SignalRename, this, &FileSelectPanel::StartRename);
    connect(m_pActions, &FilePanelActions::SignalOpen, this, &FileSelectPanel::OpenSelected);
    connect(m_pActions, &FilePanelActions::SignalUp, this, &FileSelectPanel::on_m_btnUp_clicked);
    connect(m_pActions, &FilePanelActions::SignalRowChosen, this, [this](const QModelIndex& item) {
        ReportItem(item.data(FileItemRole::Kind).toInt(), item.data(FileItemRole::FullPath).toString(),
                   item.data(FileItemRole::Name).toString());
    });
}

void FileSelectPanel::ShowNotice(const QString& text)
{
    CDebugLog::AddLog(text);
    CVarnokMessageBox::Open(this, MsgButtonConfirm, MsgIconFailure, tr("提示"), text);
}

void FileSelectPanel::ReportItem(int kind, const QString& path, const QString& name)
{
    Q_EMIT SignalItemSelected(StructItemInfo{kind, path, name});
}

QString FileSelectPanel::CurrentPath() const
{
    return m_pListing->CurrentPath();
}

bool FileSelectPanel::IsComputerView() const
{
    return m_pListing->IsComputerView();
}

QStringList FileSelectPanel::FolderNames() const
{
    return m_pListing->FolderNames();
}

QStringList FileSelectPanel::FileNames() const
{
    return m_pListing->FileNames();
}

QMenu* FileSelectPanel::ContextMenu() const
{
    return m_pActions->Menu();
}

void FileSelectPanel::SelectAfterListing(const QString& name)
{
    m_pListing->SelectAfterListing(name);
}

void FileSelectPanel::SetPanelLocked(bool locked)
{
    m_bBusy = locked;
    m_pTitleBar->SetLocked(locked);
}

void FileSelectPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_pTitleBar->UpdatePathLabel();
    // The name column gives way first, so that the size column stays in view in a narrow panel.
    QHeaderView* header = m_pTreeView->header();
    const int others = header->sectionSize(1) + header->sectionSize(2) + header->minimumSectionSize();
    header->resizeSection(0, std::clamp(m_pTreeView->width() - others - 12, 160, 320));
}

QModelIndex FileSelectPanel::ProxyIndexOfName(const QString& name) const
{
    for (int row = 0; row < m_pModel->rowCount(); ++row) {
        const QStandardItem* item = m_pModel->item(row);
        if (item->data(FileItemRole::Name).toString() == name &&
            item->data(FileItemRole::Kind).toInt() != FileItemKind::Loading) {
            return m_pProxyModel->mapFromSource(item->index());
        }
    }
    return QModelIndex();
}

void FileSelectPanel::SelectAndFlash(const QString& name)
{
    const QModelIndex index = ProxyIndexOfName(name);
    if (!index.isValid()) {
        return;
    }
    m_pTreeView->setCurrentIndex(index);
    m_pTreeView->scrollTo(index);
    startFlash(index);
}

void FileSelectPanel::on_m_btnFront_clicked()
{
    StepHistory(-1);
}

void FileSelectPanel::on_m_btnBack_clicked()
{
    StepHistory(+1);
}

void FileSelectPanel::on_pushButton_2_clicked() {}

void FileSelectPanel::on_m_btnReset_clicked()
{
    RefreshPanel();
}

void FileSelectPanel::SlotTreeClicked(QModelIndex index)
{
    qCDebug(lcFilePanel) << (index.isValid() ? "clicked item" : "clicked none");
}

void FileSelectPanel::SlotPathEditFinished()
{
    m_pTitleBar->HidePathEdit();
}

void FileSelectPanel::showPathEdit()
{
    m_pTitleBar->ShowPathEdit();
}

void FileSelectPanel::SlotSelectionChanged(QItemSelection, QItemSelection)
{
    const QModelIndex current = m_pTreeView->currentIndex();
    const QModelIndexList rows = m_pTreeView->selectionModel()->selectedRows(0);
    const QModelIndex index = current.isValid() && m_pTreeView->selectionModel()->isRowSelected(current.row())
                                  ? current.sibling(current.row(), 0)
                                  : rows.value(0);
    if (!index.isValid() || index.data(FileItemRole::Kind).toInt() == FileItemKind::Loading) {
        return;
    }
    ReportItem(index.data(FileItemRole::Kind).toInt(), index.data(FileItemRole::FullPath).toString(),
               index.data(FileItemRole::Name).toString());
}

void FileSelectPanel::startFlash(QModelIndex index, int count)
{
    if (!m_pFlashTimer) {
        m_pFlashTimer = new QTimer(this);
        connect(m_pFlashTimer, &QTimer::timeout, this, &FileSelectPanel::onFlashTimeout);
    }
    m_flashIndex = index;
    m_iFlashCount = count;
    m_bFlashing = true;
    m_pFlashTimer->start(m_iFlashIntervalMs);
}

void FileSelectPanel::onFlashTimeout()
{
    if (m_iFlashCount < 1) {
        m_pFlashTimer->stop();
        if (m_flashIndex.isValid()) {
            m_pTreeView->setCurrentIndex(m_flashIndex);
        }
        m_bFlashing = false;
        return;
    }
    if (m_iFlashCount % 2 == 1) {
        m_pTreeView->clearSelection();
    } else if (m_flashIndex.isValid()) {
        m_pTreeView->setCurrentIndex(m_flashIndex);
    }
    --m_iFlashCount;
}

void FileSelectPanel::StepHistory(int step)
{
    if (m_pSource->RefuseBrowsing() || !m_history.Step(step)) {
        return;
    }
    m_pTitleBar->SetHistoryButtons(m_history.CanGoBack(), m_history.CanGoForward());
    qCDebug(lcFilePanel) << " m_iCurIndex == " << m_history.Index() << " path " << m_history.Paths();
    ShowPath(m_history.Current());
    ReportItem(0, CurrentPath(), QString());
}

void FileSelectPanel::ShowPath(const QString& path)
{
    if (m_bLocal && path.isEmpty()) {
        m_pListing->ShowComputer();
    } else {
        m_pListing->List(path);
    }
}

void FileSelectPanel::NavigateTo(const QString& path, const QString& entry)
{
    if (!path.isEmpty() && m_pSource->RefuseBrowsing()) {
        if (!m_bLocal)
            Q_EMIT SignalNavigationPostponed(path, entry);
        return;
    }
    if (!entry.isEmpty())
        m_pListing->SelectAfterListing(entry);
    m_history.Push(path);
    m_pTitleBar->SetHistoryButtons(true, false);
    ShowPath(path);
}

void FileSelectPanel::on_m_btnUp_clicked()
{
    if (IsComputerView()) {
        return;
    }
    const QString parent = m_pSource->ParentPath(CurrentPath());
    if (parent.isEmpty()) {
        if (m_bLocal) {
            CDebugLog::AddLog(QStringLiteral("m_btnUp local no cdUp"));
            NavigateTo(QString());
        } else {
            CDebugLog::AddLog(QStringLiteral("m_btnUp machine already root"));
        }
        return;
    }
    if (!m_bLocal) {
        CDebugLog::AddLog(QStringLiteral("m_btnUp machine parent path:") + parent);
    }
    NavigateTo(parent);
}

void FileSelectPanel::RefreshPanel()
{
    if (IsComputerView()) {
        return;
    }
    // The trailing slash makes the server treat the path as a folder.
    const QString path = CurrentPath();
    const bool bSlash = !m_bLocal && path != QLatin1String("/");
    m_pListing->List(bSlash ? path + QLatin1Char('/') : path);
}

void FileSelectPanel::OpenFolder(const QString& path)
{
    NavigateTo(path);
}

void FileSelectPanel::ClearPanel()
{
    const QString start = m_bLocal ? QString() : QStringLiteral("/");
    m_history.Reset(start);
    m_pTitleBar->SetHistoryButtons(false, false);
    m_pListing->Clear(start);
}

void FileSelectPanel::SlotTreeDoubleClicked(QModelIndex index)
{
    if (!index.isValid()) {
        qCDebug(lcFilePanel) << "!index.isValid()";
        return;
    }
    const QModelIndex item = index.sibling(index.row(), 0);
    const int kind = item.data(FileItemRole::Kind).toInt();
    const QString path = item.data(FileItemRole::FullPath).toString();
    if (kind == FileItemKind::Loading) {
        return;
    }
    if (!m_bLocal) {
        if (kind != FileItemKind::File) {
            NavigateTo(path);
        }
        return;
    }
    if (item.data(FileItemRole::QuickAccess).toBool()) {
        CDebugLog::AddLog(QStringLiteral("quick Treedouble strPath:") + path);
        NavigateTo(path);
        return;
    }
    const QFileInfo info(path);
    if (kind != FileItemKind::File) {
        if (!info.exists()) {
            ShowNotice(tr("目录不存在或无权限访问。"));
        } else if (!info.isReadable()) {
            ShowNotice(tr("没有权限访问该目录。"));
        } else {
            NavigateTo(path);
        }
        return;
    }
    if (!info.exists()) {
        ShowNotice(tr("文件不存在或无权限访问。"));
    } else if (!info.isFile()) {
        ShowNotice(tr("所选路径不是文件。"));
    } else if (!info.isReadable()) {
        ShowNotice(tr("没有权限读取该文件。"));
    } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        ShowNotice(tr("无法打开文件，请检查文件关联程序。"));
    }
}

void FileSelectPanel::on_filiterBox_checkStateChanged(Qt::CheckState state)
{
    if (!m_bLocal) {
        return;
    }
    m_pLocalSource->SetFilter(state == Qt::Checked);
    ShowPath(CurrentPath());
    ReportItem(0, CurrentPath(), QString());
}

void FileSelectPanel::SlotPathEditReturnPressed()
{
    const QString text = m_pTitleBar->EditedText().trimmed();
    if (text.isEmpty()) {
        CDebugLog::AddLog(tr("路径不能为空"));
        return;
    }
    const QString path = m_pSource->FolderFromText(text);
    if (!path.isEmpty()) {
        NavigateTo(path);
        return;
    }
    if (!m_bLocal) {
        return;
    }
    CDebugLog::AddLog(tr("路径不存在: %1").arg(text));
    QTimer::singleShot(200, this, [this, text] { ShowNotice(tr("找不到路径\"%1\",请检查拼写并重试。").arg(text)); });
}

void FileSelectPanel::SlotHeaderClicked(int logicalIndex)
{
    QHeaderView* header = m_pTreeView->header();
    if (IsComputerView()) {
        header->setSortIndicatorShown(false);
        return;
    }
    const Qt::SortOrder order = (logicalIndex == m_iLastSortColumn && m_eLastSortOrder == Qt::AscendingOrder)
                                    ? Qt::DescendingOrder
                                    : Qt::AscendingOrder;
    static const int roles[] = {FileItemRole::Name, FileItemRole::Time, FileItemRole::Type, FileItemRole::Size};
    m_pProxyModel->SetSortRole(logicalIndex >= 0 && logicalIndex < 4 ? roles[logicalIndex] : 0);
    m_pProxyModel->sort(0, order);
    header->setSortIndicator(logicalIndex, order);
    m_iLastSortColumn = logicalIndex;
    m_eLastSortOrder = order;
}

void FileSelectPanel::LocateAndHighlightFile(QString fileName)
{
    if (!m_bLocal) {
        m_pListing->LocateAfterListing(fileName);
    }
}

void FileSelectPanel::NavigateAndHighlightFolder(QString targetDir, QString folderName)
{
    if (m_bLocal) {
        return;
    }
    NavigateTo(targetDir, folderName);
}

void FileSelectPanel::OpenSelected()
{
    const QList<Entry> entries = SelectedEntries();
    const QModelIndex current = m_pTreeView->currentIndex();
    // Enter on a shortcut or a drive opens it too; SelectedEntries() leaves those out.
    if (current.isValid() && m_pTreeView->selectionModel()->isRowSelected(current.row(), current.parent())) {
        SlotTreeDoubleClicked(current);
    } else if (entries.size() == 1) {
        SlotTreeDoubleClicked(ProxyIndexOfName(entries.first().strName));
    }
}

QList<FilePanelContext::Entry> FileSelectPanel::SelectedEntries() const
{
    QList<Entry> entries;
    for (const QModelIndex& index : m_pTreeView->selectionModel()->selectedRows(0)) {
        const int kind = index.data(FileItemRole::Kind).toInt();
        if (index.data(FileItemRole::QuickAccess).toBool() ||
            (kind != FileItemKind::File && kind != FileItemKind::Folder)) {
            continue;
        }
        entries.append(
            {index.data(FileItemRole::FullPath).toString(), index.data(FileItemRole::Name).toString(), kind});
    }
    return entries;
}

bool FileSelectPanel::StartRename()
{
    const QModelIndexList rows = m_pTreeView->selectionModel()->selectedRows(0);
    const QList<Entry> entries = SelectedEntries();
    if (m_bBusy || rows.size() != 1 || entries.size() != 1 || IsComputerView()) {
        return false;
    }
    const Entry& entry = entries.first();
    if (!m_pOperations->MayRename(entry.strName, entry.iKind != FileItemKind::File) || m_pSource->RefuseBrowsing()) {
        return false;
    }
    m_renameIndex = m_pProxyModel->mapToSource(rows.first());
    m_pTreeView->setCurrentIndex(rows.first());
    m_pTreeView->edit(rows.first());
    return true;
}

void FileSelectPanel::SlotFileNameChanged(QString newName)
{
    const QPersistentModelIndex index = m_renameIndex;
    m_renameIndex = QPersistentModelIndex();
    if (!index.isValid()) {
        return;
    }
    const QString oldName = index.data(FileItemRole::Name).toString();
    const QString oldPath = index.data(FileItemRole::FullPath).toString();
    const bool bFolder = index.data(FileItemRole::Kind).toInt() != FileItemKind::File;
    if (m_pOperations->Rename(oldPath, newName, bFolder)) {
        m_pModel->setData(index, FileListingSource::JoinPath(CurrentPath(), newName), FileItemRole::FullPath);
        return;
    }
    // The editor writes the new name right after this signal: put the old one back after it.
    QTimer::singleShot(0, this, [this, index, oldName] {
        if (index.isValid()) {
            m_pModel->setData(index, oldName, FileItemRole::Name);
        }
    });
}

void FileSelectPanel::SetRequests(MachineFileRequests* requests)
{
    m_pOperations->SetRequests(requests);
}

void FileSelectPanel::SlotClearLocalClipboardData()
{
    m_pOperations->ClearClipboardRecord();
}
