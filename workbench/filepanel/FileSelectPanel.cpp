#include "FileSelectPanel.h"

#include "CDebugLog.h"
#include "CVarnokMessageBox.h"
#include "FileItemRoles.h"
#include "FileSortProxyModel.h"
#include "FileTreeView.h"
#include "KorvBaseGlobals.h"
#include "ListFtpDirectory.h"
#include "LocalDirectoryReader.h"
#include "LocalVolumeLister.h"
#include "ui_FileSelectPanel.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QHeaderView>
#include <QLoggingCategory>
#include <QMenu>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QStyle>
#include <QTimer>
#include <QUrl>
#include <QtConcurrent>
#include <algorithm>

Q_LOGGING_CATEGORY(lcFilePanel, "korv.filepanel", QtInfoMsg)

namespace {
const QString kComputerPath = QStringLiteral("/");
const QColor kColorFailure(220, 50, 50);
const QColor kColorWarning(220, 150, 0);

// "/nc/" and "/nc" are the same machine folder; the panel keeps the short form.
QString NormalizedMachinePath(const QString& path)
{
    QString normalized = QDir::cleanPath(path);
    return normalized.isEmpty() ? QStringLiteral("/") : normalized;
}

// The parent of a local folder, or an empty text at a root.
QString LocalParent(const QString& path)
{
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(path));
    if (clean.isEmpty() || QDir(clean).isRoot()) {
        return QString();
    }
    return LocalVolumeLister::PanelPath(QFileInfo(clean).path());
}
} // namespace

FileSelectPanel::FileSelectPanel(bool bLocal, QWidget* parent)
    : QWidget(parent), ui(new Ui::FileSelectPanel), m_bLocal(bLocal)
{
    RegisterWorkbenchMetaTypes();
    ui->setupUi(this);
    SetUpView();
    SetUpTitle();
    SetUpMenu();

    m_listFilePath = {kComputerPath};
    m_iCurIndex = 0;
    ui->m_btnFront->setEnabled(false);
    ui->m_btnBack->setEnabled(false);
    if (m_bLocal) {
        showMyComputer();
    } else {
        SetCurrentPath(kComputerPath);
    }
}

FileSelectPanel::~FileSelectPanel()
{
    delete ui;
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

bool FileSelectPanel::RefuseWhileTransferring()
{
    if (m_bLocal || !g_bTranslating) {
        return false;
    }
    const QString text = tr("当前FTP正在进行文件传输，无法访问机器文件！");
    LogLine(text);
    Q_EMIT SignalAppendLog(text, kColorWarning);
    return true;
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

void FileSelectPanel::UpdatePathLabel()
{
    const bool bComputerView = m_bLocal && m_strFullPath == kComputerPath;
    const bool bEditing = ui->pathLineEdit->isVisible();
    ui->m_labelPathSeparator->setVisible(m_bLocal && !bComputerView && !bEditing);
    const QString shown = bComputerView ? QString() : QDir::toNativeSeparators(m_strFullPath);
    ui->m_labelPath->setText(
        ui->m_labelPath->fontMetrics().elidedText(shown, Qt::ElideMiddle, std::max(0, ui->m_labelPath->width())));
    ui->m_labelPath->setToolTip(shown);
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

void FileSelectPanel::showMyComputer()
{
    ++m_nLocalListingSerial;
    m_listFolderNames.clear();
    m_listFileNames.clear();
    SetCurrentPath(kComputerPath);
    ReplaceRows(QuickAccessRows() + LocalVolumeLister::ListRows());
    m_pTreeView->header()->setSortIndicatorShown(false);
    Q_EMIT SignalListingFinished(kComputerPath, true);
}

void FileSelectPanel::scanDirectory(const QString& path, const QString& fileToSelect)
{
    qCDebug(lcFilePanel) << "scanDirectory:" << path;
    if (m_bLocal && path == kComputerPath) {
        showMyComputer();
        return;
    }
    if (!QDir(path).exists()) {
        LogLine(path + QStringLiteral(" not exists"));
    }
    m_listFolderNames.clear();
    m_listFileNames.clear();
    SetCurrentPath(path);
    m_pTreeView->header()->setSortIndicatorShown(true);
    ReplaceRows((m_bLocal ? QuickAccessRows() : QList<FileRowData>()) << FileRowData::Placeholder());

    // The disk is read on a pool thread so that a folder of many thousand entries, or
    // a slow network drive, never freezes the window; a newer listing supersedes it.
    const quint64 serial = ++m_nLocalListingSerial;
    auto* watcher = new QFutureWatcher<LocalListing>(this);
    connect(watcher, &QFutureWatcher<LocalListing>::finished, this, [this, watcher, serial, fileToSelect] {
        watcher->deleteLater();
        if (serial == m_nLocalListingSerial) {
            ApplyLocalListing(watcher->result(), fileToSelect);
        }
    });
    watcher->setFuture(QtConcurrent::run(&LocalDirectoryReader::Read, path, m_bFilter));
}

void FileSelectPanel::ApplyLocalListing(const LocalListing& listing, const QString& fileToSelect)
{
    const int lastRow = m_pModel->rowCount() - 1;
    if (lastRow >= 0 && m_pModel->item(lastRow)->data(FileItemRole::Kind).toInt() == FileItemKind::Loading) {
        m_pModel->removeRow(lastRow);
    }
    m_listFolderNames = listing.listFolderNames;
    m_listFileNames = listing.listFileNames;
    AppendRows(listing.listRows);
    if (!fileToSelect.isEmpty()) {
        const QModelIndex index = ProxyIndexOfName(fileToSelect);
        if (index.isValid()) {
            qCDebug(lcFilePanel) << " scanDirectory select strCurFile " << fileToSelect;
            m_pTreeView->setCurrentIndex(index);
            m_pTreeView->scrollTo(index);
        }
    }
    Q_EMIT SignalListingFinished(listing.strPath, listing.bExists);
}

bool FileSelectPanel::startListFtp(const QString& path)
{
    if (RefuseWhileTransferring()) {
        return false;
    }
    LogLine(QStringLiteral("startListFtp Start"));
    const QString url = QStringLiteral("ftp://%1:%2%3").arg(m_strMachineIp, QStringLiteral("21"), path);
    QUrl encoded;
    encoded.setScheme(QStringLiteral("ftp"));
    encoded.setHost(m_strMachineIp);
    encoded.setPort(21);
    encoded.setPath(path);

    // A listing still in flight already keeps the rows from before it.
    if (!m_pListTask) {
        m_strSavedPath = m_strFullPath;
    }
    SetCurrentPath(NormalizedMachinePath(path));
    ReplaceRows({FileRowData::Placeholder()});

    auto* task = new ListFtpDirectory(url, encoded.toString(QUrl::FullyEncoded), path, nullptr);
    connect(task, &ListFtpDirectory::SignalListFileFinished, this,
            [this, task](bool ok, const QList<FtpFileInfo>& entries) { ApplyMachineListing(task, ok, entries); });
    // The reason of a failed listing (a wrong name encoding is told apart from a lost machine).
    connect(task, &FtpTaskThread::SignalTaskFinished, this, [this](bool ok, const QString& message) {
        if (!ok && !message.isEmpty()) {
            LogLine(message);
            Q_EMIT SignalAppendLog(message, kColorFailure);
        }
    });
    m_pListTask = task;
    m_tasks.Start(task);
    return true;
}

void FileSelectPanel::ApplyMachineListing(QObject* task, bool ok, const QList<FtpFileInfo>& entries)
{
    if (task != m_pListTask) {
        return; // superseded by a newer listing or by ClearPanel
    }
    m_pListTask = nullptr;
    const QString path = m_strFullPath;
    if (!ok) {
        SetCurrentPath(m_strSavedPath);
        ReplaceRows(m_listShownRows);
        const QString text = tr("获取机床文件列表失败！");
        LogLine(text);
        Q_EMIT SignalAppendLog(text, kColorFailure);
        Q_EMIT SignalListingFinished(path, false);
        return;
    }
    QList<FileRowData> rows;
    rows.reserve(entries.size());
    for (const bool bFolders : {true, false}) {
        for (const FtpFileInfo& entry : entries) {
            if (entry.isDir() == bFolders && (bFolders || entry.type == QLatin1String("file"))) {
                rows.append(FileRowData::FromFtp(entry, path));
                qCDebug(lcFilePanel) << "varnok fullPath" << rows.last().strFullPath;
            }
        }
    }
    m_listShownRows = rows;
    ReplaceRows(rows);
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
    Q_EMIT SignalListingFinished(path, true);
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

void FileSelectPanel::StepHistory(int step)
{
    if (RefuseWhileTransferring()) {
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
    const QString path = m_listFilePath.value(m_iCurIndex);
    if (!m_bLocal) {
        startListFtp(path);
    } else if (path == kComputerPath) {
        showMyComputer();
    } else {
        scanDirectory(path);
    }
}

void FileSelectPanel::on_m_btnFront_clicked()
{
    StepHistory(-1);
}

void FileSelectPanel::on_m_btnBack_clicked()
{
    StepHistory(+1);
}

void FileSelectPanel::on_m_btnUp_clicked()
{
    if (m_bLocal) {
        if (m_strFullPath == kComputerPath) {
            return;
        }
        const QString parent = LocalParent(m_strFullPath);
        if (parent.isEmpty()) {
            LogLine(QStringLiteral("m_btnUp local no cdUp"));
            PushHistory(kComputerPath);
            showMyComputer();
            return;
        }
        PushHistory(parent);
        scanDirectory(parent);
        return;
    }
    if (RefuseWhileTransferring()) {
        return;
    }
    if (m_strFullPath == kComputerPath) {
        LogLine(QStringLiteral("m_btnUp machine already root"));
        return;
    }
    const int cut = m_strFullPath.lastIndexOf(QLatin1Char('/'));
    const QString parent = cut < 1 ? kComputerPath : m_strFullPath.left(cut);
    LogLine(QStringLiteral("m_btnUp machine parent path:") + parent);
    PushHistory(parent);
    startListFtp(parent);
}

void FileSelectPanel::on_pushButton_2_clicked() {}

void FileSelectPanel::on_m_btnReset_clicked()
{
    RefreshPanel();
}

void FileSelectPanel::RefreshPanel()
{
    if (m_bLocal) {
        if (m_strFullPath != kComputerPath) {
            scanDirectory(m_strFullPath);
        }
        return;
    }
    // The trailing slash makes the server treat the path as a folder.
    startListFtp(m_strFullPath == kComputerPath ? m_strFullPath : m_strFullPath + QLatin1Char('/'));
}

void FileSelectPanel::OpenFolder(const QString& path)
{
    PushHistory(path);
    if (m_bLocal) {
        scanDirectory(path);
    } else {
        startListFtp(path);
    }
}

void FileSelectPanel::ClearPanel()
{
    m_pListTask = nullptr;
    ++m_nLocalListingSerial;
    m_strPendingLocateName.clear();
    m_strPendingFolderName.clear();
    m_listShownRows.clear();
    m_listFilePath = {kComputerPath};
    m_iCurIndex = 0;
    ui->m_btnFront->setEnabled(false);
    ui->m_btnBack->setEnabled(false);
    m_pModel->removeRows(0, m_pModel->rowCount());
    SetCurrentPath(kComputerPath);
}

void FileSelectPanel::SlotTreeClicked(QModelIndex index)
{
    qCDebug(lcFilePanel) << (index.isValid() ? "clicked item" : "clicked none");
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
        if (RefuseWhileTransferring() || kind == FileItemKind::File) {
            return;
        }
        PushHistory(path);
        startListFtp(path);
        return;
    }
    if (item.data(FileItemRole::QuickAccess).toBool()) {
        LogLine(QStringLiteral("quick Treedouble strPath:") + path);
        PushHistory(path);
        scanDirectory(path);
        return;
    }
    const QFileInfo info(path);
    if (kind != FileItemKind::File) {
        if (!info.exists()) {
            ShowNotice(tr("目录不存在或无权限访问。"));
        } else if (!info.isReadable()) {
            ShowNotice(tr("没有权限访问该目录。"));
        } else {
            PushHistory(path);
            scanDirectory(path);
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
    m_bFilter = state == Qt::Checked;
    if (m_strFullPath == kComputerPath) {
        showMyComputer();
    } else {
        scanDirectory(m_strFullPath);
    }
    m_structItemInfo = StructItemInfo{0, m_strFullPath, QString()};
    Q_EMIT SignalItemSelected(m_structItemInfo);
}

void FileSelectPanel::showPathEdit()
{
    ui->m_labelPath->hide();
    ui->m_labelComputer->hide();
    ui->m_labelComputerIcon->hide();
    ui->m_labelPathSeparator->hide();
    const bool bComputerView = m_bLocal && m_strFullPath == kComputerPath;
    ui->pathLineEdit->setText(bComputerView ? QString() : QDir::toNativeSeparators(m_strFullPath));
    ui->pathLineEdit->show();
    ui->pathLineEdit->setFocus();
    ui->pathLineEdit->selectAll();
}

void FileSelectPanel::SlotPathEditFinished()
{
    ui->pathLineEdit->hide();
    ui->m_labelPath->show();
    ui->m_labelComputer->setVisible(m_bLocal);
    ui->m_labelComputerIcon->setVisible(m_bLocal);
    UpdatePathLabel();
}

void FileSelectPanel::SlotPathEditReturnPressed()
{
    const QString text = ui->pathLineEdit->text().trimmed();
    if (text.isEmpty()) {
        LogLine(tr("路径不能为空"));
        return;
    }
    if (!m_bLocal) {
        if (!text.startsWith(QLatin1Char('/')) || RefuseWhileTransferring()) {
            return;
        }
        const QString path = NormalizedMachinePath(text);
        PushHistory(path);
        startListFtp(path);
        return;
    }
    if (text == kComputerPath) {
        PushHistory(kComputerPath);
        showMyComputer();
        return;
    }
    if (QDir::isAbsolutePath(text) && QDir(text).exists()) {
        const QString path = LocalVolumeLister::PanelPath(QDir::cleanPath(QDir::fromNativeSeparators(text)));
        PushHistory(path);
        scanDirectory(path);
        return;
    }
    LogLine(tr("路径不存在: %1").arg(text));
    QTimer::singleShot(200, this, [this, text] { ShowNotice(tr("找不到路径\"%1\",请检查拼写并重试。").arg(text)); });
}

void FileSelectPanel::SlotHeaderClicked(int logicalIndex)
{
    QHeaderView* header = m_pTreeView->header();
    if (m_bLocal && m_strFullPath == kComputerPath) {
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

void FileSelectPanel::LocateAndHighlightFile(QString fileName)
{
    if (!m_bLocal) {
        m_strPendingLocateName = fileName;
    }
}

void FileSelectPanel::NavigateAndHighlightFolder(QString targetDir, QString folderName)
{
    if (m_bLocal || RefuseWhileTransferring()) {
        return;
    }
    PushHistory(targetDir);
    m_strPendingFolderName = folderName;
    startListFtp(targetDir);
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

bool FileSelectPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        const bool bComputerEntry = watched == ui->m_labelComputer || watched == ui->m_labelComputerIcon;
        if (bComputerEntry || watched == ui->m_widgetPathBox) {
            if (m_bBusy) {
                return true;
            }
            if (bComputerEntry) {
                PushHistory(kComputerPath);
                showMyComputer();
            } else {
                showPathEdit();
            }
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FileSelectPanel::SlotShowContextMenu(QPoint)
{
    if (m_bBusy) {
        return;
    }
    qCDebug(lcFilePanel)
        << QStringLiteral("SlotShowContextMenu size:%1").arg(m_pTreeView->selectionModel()->selectedRows().size());
}

void FileSelectPanel::SlotActionTriggered() {}

void FileSelectPanel::SlotFileNameChanged(QString newName)
{
    qCDebug(lcFilePanel) << "File name changed to:" << newName;
}

void FileSelectPanel::SlotClearLocalClipboardData()
{
    m_listClipboardPaths.clear();
    m_strClipboardOperation.clear();
    m_strClipboardSource.clear();
    m_dtClipboard = QDateTime();
}
