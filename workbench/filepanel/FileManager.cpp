#include "FileManager.h"

#include "CDebugLog.h"
#include "FileItemRoles.h"
#include "FileSelectPanel.h"
#include "FileTreeView.h"
#include "MachineFileRequests.h"

#include <QAbstractProxyModel>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QSplitter>
#include <QStandardItemModel>
#include <QVBoxLayout>

namespace {
const QString MachineRoot = QStringLiteral("/");
const QString ToolTipStyle = QStringLiteral("QToolTip {    background: #f0f0f0;    color: #333333;    border: 1px "
                                            "solid #aaaaaa;    padding: 2px;        border-radius: 3px;}");

QString ArrowStyle(const QString& icon, const QString& hoverIcon)
{
    return ToolTipStyle +
           QStringLiteral("QPushButton{background-color:rgb(252,252,252);border:1px solid rgb(187,187,187);"
                          "border-radius:4px;outline:none;image:url(%1);padding:12px;}"
                          "QPushButton:hover{background-color:rgb(235,242,250);image:url(%2);}"
                          "QPushButton:pressed{background-color:rgb(222,232,245);}")
               .arg(icon, hoverIcon);
}

QString FileName(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString JoinMachinePath(const QString& folder, const QString& name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}
} // namespace

FileManager::FileManager(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("FileManager"));
    RegisterWorkbenchMetaTypes();
    m_pRequests = new MachineFileRequests(this);
    m_pLocalPanel = new FileSelectPanel(true);
    m_pMachinePanel = new FileSelectPanel(false);
    m_pLocalPanel->setObjectName(QStringLiteral("m_widgetLocalPanel"));
    m_pMachinePanel->setObjectName(QStringLiteral("m_widgetMachinePanel"));
    BuildLayout();
    ConnectPanels();
}

void FileManager::BuildLayout()
{
    m_layoutMain = new QVBoxLayout(this);
    m_layoutMain->setObjectName(QStringLiteral("m_layoutMain"));
    m_layoutMain->setContentsMargins(0, 0, 0, 0);
    m_pSplitter = new QSplitter(Qt::Horizontal, this);
    m_pSplitter->addWidget(m_pLocalPanel);
    m_pSplitter->addWidget(BuildArrowColumn());
    m_pSplitter->addWidget(m_pMachinePanel);
    m_pSplitter->setSizes({840, 120, 840});
    m_pSplitter->setHandleWidth(0);
    for (int i = 0; i < m_pSplitter->count(); ++i)
        m_pSplitter->setCollapsible(i, false);
    // The arrow column keeps its width; the panels share what the window gives.
    m_pSplitter->setStretchFactor(0, 1);
    m_pSplitter->setStretchFactor(1, 0);
    m_pSplitter->setStretchFactor(2, 1);
    m_layoutMain->addWidget(m_pSplitter);
}

QWidget* FileManager::BuildArrowColumn()
{
    auto* middle = new QWidget;
    middle->setObjectName(QStringLiteral("m_widgetArrows"));
    middle->setAttribute(Qt::WA_StyledBackground);
    middle->setStyleSheet(QStringLiteral(
        "#m_widgetArrows{background-color:rgb(242,242,242);border:1px solid rgb(187,187,187);border-top:none;}"));
    auto* layout = new QVBoxLayout(middle);
    layout->setContentsMargins(16, 0, 16, 0);
    layout->setSpacing(24);

    m_pUploadButton = new QPushButton(middle);
    m_pUploadButton->setObjectName(QStringLiteral("m_btnUpload"));
    m_pUploadButton->setStyleSheet(ArrowStyle(QStringLiteral(":/icon/filepanel/img_file_arrow_2.png"),
                                              QStringLiteral(":/icon/filepanel/img_file_arrow_1.png")));
    m_pUploadButton->setToolTip(tr("上传至机床"));
    m_pDownloadButton = new QPushButton(middle);
    m_pDownloadButton->setObjectName(QStringLiteral("m_btnDownload"));
    m_pDownloadButton->setStyleSheet(ArrowStyle(QStringLiteral(":/icon/filepanel/img_file_arrow_4.png"),
                                                QStringLiteral(":/icon/filepanel/img_file_arrow_3.png")));
    m_pDownloadButton->setToolTip(tr("从机床下载"));
    for (QPushButton* button : {m_pUploadButton, m_pDownloadButton}) {
        button->setFixedSize(88, 97);
        button->setCursor(Qt::PointingHandCursor);
    }
    layout->addStretch(1);
    layout->addWidget(m_pUploadButton, 0, Qt::AlignHCenter);
    layout->addWidget(m_pDownloadButton, 0, Qt::AlignHCenter);
    layout->addStretch(1);
    connect(m_pUploadButton, &QPushButton::clicked, this, &FileManager::SlotLeftBtnClicked);
    connect(m_pDownloadButton, &QPushButton::clicked, this, &FileManager::SlotRightBtnClicked);
    return middle;
}

void FileManager::ConnectPanels()
{
    for (FileSelectPanel* panel : {m_pLocalPanel, m_pMachinePanel}) {
        panel->SetRequests(m_pRequests);
        connect(panel, &FileSelectPanel::SignalAppendLog, this, &FileManager::SignalAppendLog);
    }
}

void FileManager::SetMachineConnected(const QString& ip, const QString& sn)
{
    m_bConnected = true;
    m_strIp = ip;
    m_strSn = sn;
    m_strMachineBasePath = MachineRoot;
    m_pMachinePanel->SetMachineIp(ip);
    m_pMachinePanel->ClearPanel();
    m_pMachinePanel->RefreshPanel();
}

void FileManager::SetMachineDisconnected()
{
    m_bConnected = false;
    m_strIp.clear();
    m_strSn.clear();
    m_strMachineBasePath.clear();
    m_pMachinePanel->SetMachineIp(QString());
    m_pMachinePanel->ClearPanel();
    m_pMachinePanel->SetPanelLocked(false);
}

void FileManager::SetPanelLocked(bool locked)
{
    m_pLocalPanel->SetPanelLocked(locked);
    m_pMachinePanel->SetPanelLocked(locked);
}

QList<QPair<QString, bool>> FileManager::SelectedEntries(const FileSelectPanel* panel) const
{
    QList<QPair<QString, bool>> entries;
    const QModelIndexList rows = panel->TreeView()->selectionModel()->selectedRows(0);
    for (const QModelIndex& index : rows) {
        const int kind = index.data(FileItemRole::Kind).toInt();
        if (kind == FileItemKind::File || kind == FileItemKind::Folder)
            entries.append({index.data(FileItemRole::FullPath).toString(), kind == FileItemKind::Folder});
    }
    return entries;
}

void FileManager::SlotLeftBtnClicked()
{
    qDebug() << "leftBtn clicked";
    // The computer view lists drives, not files that could be sent.
    if (m_pLocalPanel->IsComputerView())
        return;
    QList<TransferItem> items;
    for (const auto& [localPath, bFolder] : SelectedEntries(m_pLocalPanel))
        items.append({true, localPath, JoinMachinePath(m_pMachinePanel->CurrentPath(), FileName(localPath)),
                      OperationCopy, bFolder});
    if (!items.isEmpty())
        Q_EMIT m_pRequests->SignalTransfer(items);
}

void FileManager::SlotRightBtnClicked()
{
    qDebug() << "RightBtn clicked";
    // The computer view lists drives, not a folder that could receive a file.
    if (m_pLocalPanel->IsComputerView())
        return;
    QList<TransferItem> items;
    for (const auto& [machinePath, bFolder] : SelectedEntries(m_pMachinePanel))
        items.append({false, QDir(m_pLocalPanel->CurrentPath()).filePath(FileName(machinePath)), machinePath,
                      OperationCopy, bFolder});
    if (!items.isEmpty())
        Q_EMIT m_pRequests->SignalTransfer(items);
}

void FileManager::SlotUploadFileToMachine(QString filePath, QString machinePath, OperationType operation)
{
    Q_EMIT m_pRequests->SignalTransfer(
        {TransferItem{true, filePath, JoinMachinePath(machinePath, QFileInfo(filePath).fileName()), operation}});
}

void FileManager::SlotDownloadFileFromMachine(QString localPath, QString machinePath)
{
    Q_EMIT m_pRequests->SignalTransfer(
        {TransferItem{false, QDir(localPath).filePath(FileName(machinePath)), machinePath, OperationCopy}});
}
