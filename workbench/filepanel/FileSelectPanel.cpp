#include "FileSelectPanel.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "FileItemRoles.h"
#include "FilePanelOperations.h"
#include "FileSortProxyModel.h"
#include "FileTreeView.h"
#include "LocalListingSource.h"
#include "LocalVolumeLister.h"
#include "LogColors.h"
#include "MachineListingSource.h"
#include "ui_FileSelectPanel.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QMenu>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QStyle>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <functional>

Q_LOGGING_CATEGORY(lcFilePanel, "korv.filepanel", QtInfoMsg)

namespace {
// The menu's actions by position in m_listActions.
enum MenuAction
{
    ActionNewFile,
    ActionNewFolder,
    ActionDelete,
    ActionRename,
    ActionOpen,
    ActionCopy,
    ActionCut,
    ActionPaste,
};
} // namespace

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
    connect(m_pSource, &FileListingSource::SignalListed, this, &FileSelectPanel::ApplyListing);
    connect(m_pSource, &FileListingSource::SignalAppendLog, this, &FileSelectPanel::SignalAppendLog);
    m_pOperations = new FilePanelOperations(this);
    connect(m_pOperations, &FilePanelOperations::SignalClearLocalClipboardPath, this,
            &FileSelectPanel::SignalClearLocalClipboardPath);
    connect(m_pOperations, &FilePanelOperations::SignalAppendLog, this, &FileSelectPanel::SignalAppendLog);
    SetUpView();
    SetUpTitle();
    SetUpMenu();

    // The local panel starts in the computer view, the machine panel at the machine's root.
    const QString start = m_bLocal ? QString() : QStringLiteral("/");
    m_listFilePath = {start};
    m_iCurIndex = 0;
    ui->m_btnFront->setEnabled(false);
    ui->m_btnBack->setEnabled(false);
    if (m_bLocal) {
        showMyComputer();
    } else {
        SetCurrentPath(start);
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
    setAcceptDrops(true);
    // The file-manager keys reach the panel before the view's own handling (Backspace would search).
    m_pTreeView->installEventFilter(this);

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

    connect(m_pTreeView, &QWidget::customContextMenuRequested, this, &FileSelectPanel::SlotShowContextMenu);
    connect(m_pTreeView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FileSelectPanel::SlotSelectionChanged);
    connect(header, &QHeaderView::sectionClicked, this, &FileSelectPanel::SlotHeaderClicked);
    connect(m_pTreeView, &QAbstractItemView::doubleClicked, this, &FileSelectPanel::SlotTreeDoubleClicked);
    connect(m_pTreeView, &QAbstractItemView::clicked, this, &FileSelectPanel::SlotTreeClicked);
    connect(m_pTreeView, &FileTreeView::SignalDataChanged, this, &FileSelectPanel::SlotFileNameChanged);
    connect(ui->pathLineEdit, &QLineEdit::returnPressed, this, &FileSelectPanel::SlotPathEditReturnPressed);
    connect(ui->pathLineEdit, &QLineEdit::editingFinished, this, &FileSelectPanel::SlotPathEditFinished);
    connect(ui->filiterBox, &QCheckBox::stateChanged, this,
            [this](int state) { on_filiterBox_checkStateChanged(static_cast<Qt::CheckState>(state)); });
}

void FileSelectPanel::SetUpTitle()
{
    setStyleSheet(QStringLiteral(
        "QWidget#m_widgetTitle {background-color: rgb(242, 242, 242);}"
        "QWidget#m_widgetNavigation {background-color: rgb(250, 250, 250);}"
        "QLabel#m_labelTitle {color: rgb(51, 51, 51); font-weight: bold;}"
        "QFrame#m_widgetPathBox {background-color: white; border: 1px solid rgb(187, 187, 187); border-radius: 4px;}"
        "QFrame#m_widgetPathBox QLabel {color: rgb(51, 51, 51); border: none;}"
        "QLineEdit#pathLineEdit {border: none;}"
        "QPushButton {border: none; border-radius: 4px;}"
        "QPushButton:hover {background-color: rgb(227, 231, 237);}"));
    if (m_bLocal) {
        ui->m_labelTitleIcon->setPixmap(QIcon(QStringLiteral(":/icon/filepanel/ico_local.png")).pixmap(20, 20));
    } else {
        ui->m_labelTitle->setText(QStringLiteral("Varnok"));
        ui->m_labelTitleIcon->setStyleSheet(QStringLiteral("image: url(:/icon/filepanel/ico_machine.png);"));
        ui->filiterBox->hide();
        ui->m_labelComputer->hide();
        ui->m_labelComputerIcon->hide();
        ui->m_labelPathSeparator->hide();
    }
    ui->m_labelComputerIcon->setPixmap(style()->standardIcon(QStyle::SP_ComputerIcon).pixmap(16, 16));
    ui->m_btnFront->setIcon(QIcon(QStringLiteral(":/icon/filepanel/ico_arrow_left_blue.png")));
    ui->m_btnBack->setIcon(QIcon(QStringLiteral(":/icon/filepanel/ico_arrow_right_green.png")));
    ui->m_btnUp->setIcon(style()->standardIcon(QStyle::SP_FileDialogToParent));
    ui->m_btnReset->setIcon(QIcon(QStringLiteral(":/icon/filepanel/restart.png")));
    ui->pushButton_2->setIcon(style()->standardIcon(QStyle::SP_ArrowDown));
    ui->m_btnReset->setCursor(Qt::PointingHandCursor);
    ui->pushButton_2->setCursor(Qt::PointingHandCursor);
    ui->pathLineEdit->hide();
    for (QWidget* watched : {static_cast<QWidget*>(ui->m_widgetPathBox), static_cast<QWidget*>(ui->m_labelComputer),
                             static_cast<QWidget*>(ui->m_labelComputerIcon)}) {
        watched->installEventFilter(this);
    }
}

void FileSelectPanel::SetUpMenu()
{
    m_pMenu = new QMenu(this);
    m_pMenu->setStyleSheet(
        QStringLiteral("QMenu { background-color: white; border: 1px solid gray; }QMenu::item { background-color: "
                       "transparent; padding: 5px 20px; }QMenu::item:selected { background-color: lightblue; }"));
    for (const QString& text :
         {tr("新建文件"), tr("新建文件夹"), tr("删除"), tr("重命名"), tr("打开"), tr("复制"), tr("剪切"), tr("粘贴")}) {
        auto* action = new QAction(text, this);
        connect(action, &QAction::triggered, this, &FileSelectPanel::SlotActionTriggered);
        m_listActions.append(action);
    }
}

void FileSelectPanel::LogLine(const QString& text)
{
    CDebugLog::AddLog(text);
}

void FileSelectPanel::ShowNotice(const QString& text)
{
    LogLine(text);
    CVarnokMessageBox::ShowWindow(this, MsgButtonConfirm, MsgIconFailure, tr("提示"), text);
}

void FileSelectPanel::SetPanelLocked(bool locked)
{
    m_bBusy = locked;
    for (QPushButton* button : {ui->m_btnFront, ui->m_btnBack, ui->m_btnUp, ui->m_btnReset}) {
        button->setEnabled(!locked);
    }
}

void FileSelectPanel::SetCurrentPath(const QString& path)
{
    m_strFullPath = path;
    UpdatePathLabel();
}

void FileSelectPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    UpdatePathLabel();
    // The name column gives way first, so that the size column stays in view in a narrow panel.
    QHeaderView* header = m_pTreeView->header();
    const int others = header->sectionSize(1) + header->sectionSize(2) + header->minimumSectionSize();
    header->resizeSection(0, std::clamp(m_pTreeView->width() - others - 12, 160, 320));
}

void FileSelectPanel::ReplaceRows(const QList<FileRowData>& rows)
{
    m_pModel->removeRows(0, m_pModel->rowCount());
    AppendRows(rows);
}

void FileSelectPanel::AppendRows(const QList<FileRowData>& rows)
{
    QList<QStandardItem*> items;
    items.reserve(rows.size());
    for (const FileRowData& row : rows) {
        items.append(row.CreateItem());
    }
    // One insertion for the whole listing, so the proxy sorts once.
    m_pModel->invisibleRootItem()->appendRows(items);
}

QList<FileRowData> FileSelectPanel::QuickAccessRows() const
{
    struct Place
    {
        int kind;
        QString name;
        QStandardPaths::StandardLocation location;
    };
    const Place places[] = {{FileItemKind::Desktop, tr("桌面"), QStandardPaths::DesktopLocation},
                            {FileItemKind::Downloads, tr("下载"), QStandardPaths::DownloadLocation},
                            {FileItemKind::Documents, tr("文档"), QStandardPaths::DocumentsLocation}};
    QList<FileRowData> rows;
    for (const Place& place : places) {
        const QString path = QDir::toNativeSeparators(QStandardPaths::writableLocation(place.location));
        if (path.isEmpty() || !QDir(path).exists()) {
            CDebugLog::AddLog(QStringLiteral("添加快捷方式【%1】失败，路径【%2】不存在").arg(place.name, path));
            continue;
        }
        rows.append(FileRowData::QuickAccess(place.kind, place.name, path));
    }
    return rows;
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

void FileSelectPanel::PushHistory(const QString& path)
{
    ++m_iCurIndex;
    while (m_listFilePath.size() > m_iCurIndex) {
        m_listFilePath.removeLast();
    }
    m_listFilePath.append(path);
    ui->m_btnFront->setEnabled(true);
    ui->m_btnBack->setEnabled(false);
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
    ui->pathLineEdit->hide();
    ui->m_labelPath->show();
    ui->m_labelComputer->setVisible(m_bLocal);
    ui->m_labelComputerIcon->setVisible(m_bLocal);
    UpdatePathLabel();
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
    m_structItemInfo =
        StructItemInfo{index.data(FileItemRole::Kind).toInt(), index.data(FileItemRole::FullPath).toString(),
                       index.data(FileItemRole::Name).toString()};
    Q_EMIT SignalItemSelected(m_structItemInfo);
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

void FileSelectPanel::UpdatePathLabel()
{
    const bool bComputerView = IsComputerView();
    const bool bEditing = ui->pathLineEdit->isVisible();
    ui->m_labelPathSeparator->setVisible(m_bLocal && !bComputerView && !bEditing);
    const QString shown = QDir::toNativeSeparators(m_strFullPath);
    ui->m_labelPath->setText(
        ui->m_labelPath->fontMetrics().elidedText(shown, Qt::ElideMiddle, std::max(0, ui->m_labelPath->width())));
    ui->m_labelPath->setToolTip(shown);
}

void FileSelectPanel::showMyComputer()
{
    m_pSource->Cancel();
    m_bListing = false;
    m_listFolderNames.clear();
    m_listFileNames.clear();
    SetCurrentPath(QString());
    ReplaceRows(QuickAccessRows() + LocalVolumeLister::ListRows());
    m_pTreeView->header()->setSortIndicatorShown(false);
    Q_EMIT SignalListingFinished(QString(), true);
}

bool FileSelectPanel::StartListing(const QString& path)
{
    if (m_pSource->RefuseBrowsing()) {
        return false;
    }
    if (m_bLocal) {
        qCDebug(lcFilePanel) << "scanDirectory:" << path;
        if (!QDir(path).exists()) {
            LogLine(path + QStringLiteral(" not exists"));
        }
    } else if (!m_bListing) {
        // A listing still in flight already keeps the rows from before it.
        m_strSavedPath = m_strFullPath;
    }
    m_listFolderNames.clear();
    m_listFileNames.clear();
    SetCurrentPath(m_bLocal ? path : MachineListingSource::NormalizedPath(path));
    m_pTreeView->header()->setSortIndicatorShown(true);
    ReplaceRows((m_bLocal ? QuickAccessRows() : QList<FileRowData>()) << FileRowData::Placeholder());
    m_bListing = true;
    m_pSource->List(path);
    return true;
}

void FileSelectPanel::ApplyListing(const FileListing& listing)
{
    m_bListing = false;
    if (!listing.bOk && !m_bLocal) {
        SetCurrentPath(m_strSavedPath);
        ReplaceRows(m_listShownRows);
        const QString text = tr("获取机床文件列表失败！");
        LogLine(text);
        Q_EMIT SignalAppendLog(text, LogColors::Failure);
        Q_EMIT SignalListingFinished(listing.strPath, false);
        return;
    }
    const int lastRow = m_pModel->rowCount() - 1;
    if (lastRow >= 0 && m_pModel->item(lastRow)->data(FileItemRole::Kind).toInt() == FileItemKind::Loading) {
        m_pModel->removeRow(lastRow);
    }
    m_listFolderNames = listing.listFolderNames;
    m_listFileNames = listing.listFileNames;
    AppendRows(listing.listRows);
    if (!m_bLocal) {
        m_listShownRows = listing.listRows;
    }
    if (!m_strPendingFolderName.isEmpty()) {
        QTimer::singleShot(0, this, [this] {
            const QString name = m_strPendingFolderName;
            m_strPendingFolderName.clear();
            SelectAndFlash(name);
        });
    }
    if (!m_strPendingLocateName.isEmpty()) {
        QTimer::singleShot(0, this, [this] {
            LogLine(QStringLiteral("上传文件到机床m_strPendingLocateName: %1").arg(m_strPendingLocateName));
            const QString name = m_strPendingLocateName;
            m_strPendingLocateName.clear();
            SelectAndFlash(name);
        });
    }
    Q_EMIT SignalListingFinished(listing.strPath, listing.bOk);
}

void FileSelectPanel::StepHistory(int step)
{
    if (m_pSource->RefuseBrowsing()) {
        return;
    }
    const int target = m_iCurIndex + step;
    if (target < 0 || target >= m_listFilePath.size()) {
        return;
    }
    m_iCurIndex = target;
    ui->m_btnFront->setEnabled(m_iCurIndex > 0);
    ui->m_btnBack->setEnabled(m_iCurIndex < m_listFilePath.size() - 1);
    qCDebug(lcFilePanel) << " m_iCurIndex == " << m_iCurIndex << " path " << m_listFilePath;
    ShowHistoryEntry();
    m_structItemInfo = StructItemInfo{0, m_strFullPath, QString()};
    Q_EMIT SignalItemSelected(m_structItemInfo);
}

void FileSelectPanel::ShowHistoryEntry()
{
    ShowPath(m_listFilePath.value(m_iCurIndex));
}

void FileSelectPanel::ShowPath(const QString& path)
{
    if (m_bLocal && path.isEmpty()) {
        showMyComputer();
    } else {
        StartListing(path);
    }
}

void FileSelectPanel::NavigateTo(const QString& path)
{
    if (!path.isEmpty() && m_pSource->RefuseBrowsing()) {
        return;
    }
    PushHistory(path);
    ShowPath(path);
}

void FileSelectPanel::on_m_btnUp_clicked()
{
    if (IsComputerView() || m_pSource->RefuseBrowsing()) {
        return;
    }
    const QString parent = m_pSource->ParentPath(m_strFullPath);
    if (parent.isEmpty()) {
        if (m_bLocal) {
            LogLine(QStringLiteral("m_btnUp local no cdUp"));
            NavigateTo(QString());
        } else {
            LogLine(QStringLiteral("m_btnUp machine already root"));
        }
        return;
    }
    if (!m_bLocal) {
        LogLine(QStringLiteral("m_btnUp machine parent path:") + parent);
    }
    NavigateTo(parent);
}

void FileSelectPanel::RefreshPanel()
{
    if (IsComputerView()) {
        return;
    }
    // The trailing slash makes the server treat the path as a folder.
    const bool bSlash = !m_bLocal && m_strFullPath != QLatin1String("/");
    StartListing(bSlash ? m_strFullPath + QLatin1Char('/') : m_strFullPath);
}

void FileSelectPanel::OpenFolder(const QString& path)
{
    NavigateTo(path);
}

void FileSelectPanel::ClearPanel()
{
    m_pSource->Cancel();
    m_bListing = false;
    m_strPendingLocateName.clear();
    m_strPendingFolderName.clear();
    m_listShownRows.clear();
    const QString start = m_bLocal ? QString() : QStringLiteral("/");
    m_listFilePath = {start};
    m_iCurIndex = 0;
    ui->m_btnFront->setEnabled(false);
    ui->m_btnBack->setEnabled(false);
    m_pModel->removeRows(0, m_pModel->rowCount());
    SetCurrentPath(start);
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
        LogLine(QStringLiteral("quick Treedouble strPath:") + path);
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
    ShowPath(m_strFullPath);
    m_structItemInfo = StructItemInfo{0, m_strFullPath, QString()};
    Q_EMIT SignalItemSelected(m_structItemInfo);
}

void FileSelectPanel::showPathEdit()
{
    ui->m_labelPath->hide();
    ui->m_labelComputer->hide();
    ui->m_labelComputerIcon->hide();
    ui->m_labelPathSeparator->hide();
    ui->pathLineEdit->setText(QDir::toNativeSeparators(m_strFullPath));
    ui->pathLineEdit->show();
    ui->pathLineEdit->setFocus();
    ui->pathLineEdit->selectAll();
}

void FileSelectPanel::SlotPathEditReturnPressed()
{
    const QString text = ui->pathLineEdit->text().trimmed();
    if (text.isEmpty()) {
        LogLine(tr("路径不能为空"));
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
    LogLine(tr("路径不存在: %1").arg(text));
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
        m_strPendingLocateName = fileName;
    }
}

void FileSelectPanel::NavigateAndHighlightFolder(QString targetDir, QString folderName)
{
    if (m_bLocal || m_pSource->RefuseBrowsing()) {
        return;
    }
    m_strPendingFolderName = folderName;
    NavigateTo(targetDir);
}

bool FileSelectPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pTreeView && event->type() == QEvent::KeyPress) {
        return HandleKey(static_cast<QKeyEvent*>(event));
    }
    if (event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        const bool bComputerEntry = watched == ui->m_labelComputer || watched == ui->m_labelComputerIcon;
        if (bComputerEntry || watched == ui->m_widgetPathBox) {
            if (m_bBusy) {
                return true;
            }
            if (bComputerEntry) {
                NavigateTo(QString());
            } else {
                showPathEdit();
            }
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FileSelectPanel::keyPressEvent(QKeyEvent* event)
{
    if (!HandleKey(event)) {
        QWidget::keyPressEvent(event);
    }
}

bool FileSelectPanel::HandleKey(QKeyEvent* event)
{
    if (m_pTreeView->IsEditing()) {
        return false;
    }
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    std::function<void()> action;
    if (modifiers == Qt::ControlModifier && key == Qt::Key_C) {
        action = [this] { m_pOperations->Copy(); };
    } else if (modifiers == Qt::ControlModifier && key == Qt::Key_X) {
        action = [this] { m_pOperations->Cut(); };
    } else if (modifiers == Qt::ControlModifier && key == Qt::Key_V) {
        action = [this] {
            CDebugLog::AddLog(QStringLiteral("快捷键执行粘贴操作"));
            m_pOperations->Paste();
        };
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_Delete) {
        action = [this] { m_pOperations->DeleteSelected(); };
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_F2) {
        action = [this] { StartRename(); };
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_F5) {
        action = [this] { RefreshPanel(); };
    } else if ((modifiers == Qt::NoModifier && key == Qt::Key_Backspace) ||
               (modifiers == Qt::AltModifier && key == Qt::Key_Up)) {
        action = [this] { on_m_btnUp_clicked(); };
    } else if (modifiers == Qt::NoModifier && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        action = [this] { OpenSelected(); };
    } else {
        return false;
    }
    // While the owner runs something, the keys do what the locked buttons and menu do: nothing.
    if (!m_bBusy) {
        action();
    }
    event->accept();
    return true;
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

QList<FileSelectPanel::Entry> FileSelectPanel::SelectedEntries() const
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

void FileSelectPanel::SlotShowContextMenu(QPoint pos)
{
    if (m_bBusy) {
        return;
    }
    m_pMenu->clear();
    const QModelIndex index = m_pTreeView->indexAt(pos);
    QItemSelectionModel* selection = m_pTreeView->selectionModel();
    if (index.isValid() && !selection->isRowSelected(index.row(), index.parent())) {
        m_pTreeView->setCurrentIndex(index);
    }
    const int count = int(selection->selectedRows().size());
    const bool bPaste = !IsComputerView() && m_pOperations->CanPaste();
    qCDebug(lcFilePanel) << QStringLiteral("SlotShowContextMenu size:%1").arg(count);
    QList<int> actions;
    if (!index.isValid()) {
        qCDebug(lcFilePanel) << "clicked none";
        if (IsComputerView()) {
            return;
        }
        actions << ActionNewFolder;
        if (m_bLocal) {
            actions << ActionNewFile;
        }
        if (bPaste) {
            actions << ActionPaste;
        }
    } else {
        qCDebug(lcFilePanel) << "clicked item";
        const QModelIndex item = index.sibling(index.row(), 0);
        m_structItemInfo =
            StructItemInfo{item.data(FileItemRole::Kind).toInt(), item.data(FileItemRole::FullPath).toString(),
                           item.data(FileItemRole::Name).toString()};
        Q_EMIT SignalItemSelected(m_structItemInfo);
        if (item.data(FileItemRole::QuickAccess).toBool() ||
            item.data(FileItemRole::Kind).toInt() == FileItemKind::Loading) {
            return;
        }
        if (IsComputerView()) {
            actions << ActionOpen; // a drive: nothing to copy, rename or delete
        } else {
            if (count == 1) {
                actions << ActionOpen;
            }
            actions << ActionCopy << ActionCut;
            if (bPaste) {
                actions << ActionPaste;
            }
            actions << ActionDelete;
            if (count == 1) {
                actions << ActionRename;
            }
            actions << ActionNewFolder;
            if (m_bLocal) {
                actions << ActionNewFile;
            }
        }
    }
    for (const int action : std::as_const(actions)) {
        m_pMenu->addAction(m_listActions.at(action));
    }
    m_pMenu->popup(m_pTreeView->viewport()->mapToGlobal(pos));
}

void FileSelectPanel::SlotActionTriggered()
{
    switch (m_listActions.indexOf(qobject_cast<QAction*>(sender()))) {
    case ActionNewFile:
        m_pOperations->NewFile();
        break;
    case ActionNewFolder:
        m_pOperations->NewFolder();
        break;
    case ActionDelete:
        m_pOperations->DeleteSelected();
        break;
    case ActionRename:
        StartRename();
        break;
    case ActionOpen:
        OpenSelected();
        break;
    case ActionCopy:
        m_pOperations->Copy();
        break;
    case ActionCut:
        m_pOperations->Cut();
        break;
    case ActionPaste:
        m_pOperations->Paste();
        break;
    default:
        break;
    }
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
        m_pModel->setData(index, FileListingSource::JoinPath(m_strFullPath, newName), FileItemRole::FullPath);
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

bool FileSelectPanel::AcceptDrag(QDropEvent* event)
{
    if (!m_pOperations->CanDrop(event->mimeData(), event->source())) {
        event->ignore(); // the drag shows the forbidden cursor
        return false;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    return true;
}

void FileSelectPanel::dragEnterEvent(QDragEnterEvent* event)
{
    AcceptDrag(event);
}

void FileSelectPanel::dragMoveEvent(QDragMoveEvent* event)
{
    AcceptDrag(event);
}

void FileSelectPanel::dropEvent(QDropEvent* event)
{
    if (AcceptDrag(event)) {
        m_pOperations->Drop(event->mimeData());
    }
}
