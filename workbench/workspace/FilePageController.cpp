#include "FilePageController.h"

#include "CDebugLog.h"
#include "CProgressWidget.h"
#include "CVarnokMessageBox.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseTextHelper.h"
#include "FolderSync.h"
#include "FolderSyncPreviewDialog.h"
#include "MachineConnection.h"
#include "MachineFileService.h"
#include "OverwriteQuestion.h"
#include "SyncButtonLook.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/MachineFileRequests.h"
#include "filepanel/MachineListingSource.h"
#include "history/MachineCopyCompare.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransList.h"
#include "transfer/TransManager.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace {
constexpr int RealTimeStatusRunning = 1;
constexpr char SyncSubfoldersKey[] = "FolderSync/IncludeSubfolders";
constexpr char SyncPreviewKey[] = "FolderSync/Preview";
constexpr char SyncCompareKey[] = "FolderSync/CompareContent";

bool Setting(const char* key)
{
    return CamBaseTextHelper::instance()
        ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key), false)
        .toBool();
}

QString NoticeTitle()
{
    return FilePageController::tr("提示");
}
} // namespace

FilePageController::FilePageController(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts)
{
    m_pFolderSync = new FolderSync(parts.files, this);
    ConnectRequests();
    ConnectAnswers();
    ConnectConnection();
    ConnectFolderSync();
}

void FilePageController::ConnectRequests()
{
    MachineFileService* files = m_parts.files;
    MachineConnection* connection = m_parts.connection;
    const MachineFileRequests* requests = m_parts.fileManager->Requests();
    connect(requests, &MachineFileRequests::SignalTransfer, files,
            [files, connection](const QList<TransferItem>& items) {
                files->Transfer(connection->Endpoint(), items, RequestOrigin::FilePage);
            });
    connect(requests, &MachineFileRequests::SignalDelete, files,
            [files, connection](const QStringList& fileList, const QStringList& folders) {
                files->Delete(connection->Endpoint(), fileList, folders, RequestOrigin::FilePage);
            });
    connect(requests, &MachineFileRequests::SignalRename, files,
            [files, connection](const QString& oldPath, const QString& newPath) {
                files->Rename(connection->Endpoint(), oldPath, newPath, RequestOrigin::FilePage);
            });
    connect(requests, &MachineFileRequests::SignalMakeDir, files, [files, connection](const QString& path) {
        files->MakeDir(connection->Endpoint(), path, RequestOrigin::FilePage);
    });
    connect(m_parts.transManager, &TransManager::SignalRestartTransfer, files, &MachineFileService::Retry);
    connect(m_parts.transManager, &TransManager::SignalCancelTransfer, files, &MachineFileService::Cancel);
    // The desktop's file browser opens on its own; nothing here waits for it.
    connect(m_parts.transManager, &TransManager::SignalOpenFolder, this,
            [](const QString& folder) { QDesktopServices::openUrl(QUrl::fromLocalFile(folder)); });
    // One question per batch, whatever way the batch was asked for.
    QWidget* window = m_parts.window;
    m_fnAskOverwrite = [this, window](const QList<OverwriteEntry>& entries, std::function<void(bool)> answer) {
        CVarnokMessageBox::Open(window, MsgButtonYes | MsgButtonNo | MsgButtonIgnore, MsgIconWarning, NoticeTitle(),
                                OverwriteQuestion::Text(entries), {{MsgButtonIgnore, tr("比较")}},
                                [this, entries, answer = std::move(answer)](int button) {
                                    if (button == MsgButtonIgnore)
                                        CompareBeforeOverwrite(entries, answer);
                                    else
                                        answer(button == MsgButtonYes);
                                });
    };
    files->SetOverwriteAsker(m_fnAskOverwrite);
}

void FilePageController::CompareBeforeOverwrite(const QList<OverwriteEntry>& entries, std::function<void(bool)> answer)
{
    // The first file of the batch beside the copy it would replace; the question comes back after.
    const OverwriteEntry& first = entries.first();
    const QString local = first.bUpload ? first.strSource : first.strTarget;
    const QString machine = first.bUpload ? first.strTarget : first.strSource;
    MachineCopyCompare::Open(m_parts.window, m_parts.files, m_parts.files->Endpoint(),
                             tr("本地文件：%1").arg(QDir::toNativeSeparators(local)), local, machine,
                             [this, entries, answer]() { m_fnAskOverwrite(entries, answer); });
}

void FilePageController::ConnectAnswers()
{
    MachineFileService* files = m_parts.files;
    FileManager* manager = m_parts.fileManager;
    FileSelectPanel* machine = manager->MachinePanel();
    FileSelectPanel* local = manager->LocalPanel();
    connect(files, &MachineFileService::SignalAppendLog, this, &FilePageController::SignalAppendLog);
    connect(files, &MachineFileService::SignalTransferUpdated, m_parts.transManager->TransferList(),
            &TransList::SlotUpdateTransfer);
    connect(files, &MachineFileService::SignalNotice, this,
            [this](const QString& text) { Q_EMIT SignalNotice(MsgIconWarning, text); });
    // The panels follow the one count of running transfers, however the last one ended.
    connect(files->Activity(), &TransferActivity::SignalBusyChanged, manager, [manager, machine](bool busy) {
        manager->SetPanelLocked(busy);
        if (!busy && manager->IsConnected())
            machine->RefreshPanel();
    });
    connect(files, &MachineFileService::SignalUploaded, machine, [machine](const QString& machinePath) {
        machine->LocateAndHighlightFile(machinePath.mid(machinePath.lastIndexOf(QLatin1Char('/')) + 1));
    });
    connect(files, &MachineFileService::SignalMachineNavigation, machine, &FileSelectPanel::NavigateAndHighlightFolder);
    connect(machine, &FileSelectPanel::SignalNavigationPostponed, files, &MachineFileService::NavigateMachinePanel);
    connect(machine->MachineSource(), &MachineListingSource::SignalLeftoversListed, files,
            [files](const QString& folder, const QList<FtpFileInfo>& leftovers) {
                files->RemoveLeftovers(files->Endpoint(), folder, leftovers);
            });
    connect(files, &MachineFileService::SignalMachineChanged, machine, &FileSelectPanel::RefreshPanel);
    const auto refreshLocal = [local](const QString& localPath) {
        if (QFileInfo(localPath).absolutePath() == QFileInfo(local->CurrentPath()).absoluteFilePath())
            local->RefreshPanel();
    };
    connect(files, &MachineFileService::SignalDownloaded, local, refreshLocal);
    connect(files, &MachineFileService::SignalCutSucceeded, local, [local, refreshLocal](const QString& path) {
        const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
        if (mime && mime->hasFormat(QStringLiteral("MimeDataCopy")))
            QGuiApplication::clipboard()->clear();
        local->SlotClearLocalClipboardData();
        refreshLocal(path);
    });
    connect(files, &MachineFileService::SignalProgressStarted, this, [this](const QString& title, const QString& text) {
        CProgressWidget::FreeAutoWidget(m_pProgressWidget, true);
        m_pProgressWidget = CProgressWidget::CreateAutoWidget(title, text);
    });
    connect(files, &MachineFileService::SignalProgressFinished, this,
            [this]() { CProgressWidget::FreeAutoWidget(m_pProgressWidget); });
}

void FilePageController::ConnectConnection()
{
    MachineConnection* connection = m_parts.connection;
    MachineFileService* files = m_parts.files;
    FileManager* manager = m_parts.fileManager;
    connect(connection, &MachineConnection::SignalEndpointChanged, files, &MachineFileService::SetEndpoint);
    connect(connection, &MachineConnection::SignalConnected, this,
            [this, manager](const QString& ip, const QString& sn) {
                m_pFolderSync->StopSyncAndRestoreState();
                m_parts.toolPage->SetEnabled(ToolPage::ActionFolderSync, true);
                manager->SetMachineConnected(ip, sn);
            });
    connect(connection, &MachineConnection::SignalOffline, this, [this, files, manager]() {
        m_pFolderSync->StopSyncAndRestoreState();
        m_parts.toolPage->SetEnabled(ToolPage::ActionFolderSync, false);
        files->StopAll();
        files->SetRunningProgram(QString());
        if (manager->IsConnected())
            manager->SetMachineDisconnected();
    });
    connect(connection, &MachineConnection::SignalRealTimeData, files,
            [files](bool ok, const StructRealTimeData& record) {
                // A failed poll says nothing about the program: forgetting it would let its file be overwritten.
                if (!ok || record.sn.isEmpty())
                    return;
                files->SetRunningProgram(record.status == RealTimeStatusRunning ? record.program.name : QString());
            });
}

void FilePageController::ConnectFolderSync()
{
    ToolPage* toolPage = m_parts.toolPage;
    m_pSyncLook = new SyncButtonLook(toolPage->Button(ToolPage::ActionFolderSync), this);
    toolPage->SetEnabled(ToolPage::ActionFolderSync, false);
    connect(m_pFolderSync, &FolderSync::SignalAppendLog, this, &FilePageController::SignalAppendLog);
    connect(m_pFolderSync, &FolderSync::SignalNotice, this, &FilePageController::SignalNotice);
    connect(m_pFolderSync, &FolderSync::SignalButtonStateChanged, m_pSyncLook, &SyncButtonLook::SetState);
    connect(m_pFolderSync, &FolderSync::SignalButtonStateChanged, this, [this](int state) {
        // The run listed and changed both folders: show them as they are now.
        if (state == FolderSync::ButtonRunning || !m_parts.fileManager->IsConnected())
            return;
        m_parts.fileManager->MachinePanel()->RefreshPanel();
        m_parts.fileManager->LocalPanel()->RefreshPanel();
    });
    QWidget* window = m_parts.window;
    m_pFolderSync->SetConflictAsker([window](const SyncConflict& conflict, std::function<void(int)> answer) {
        CVarnokMessageBox::Open(
            window, MsgButtonYes | MsgButtonNo | MsgButtonIgnore, MsgIconWarning, tr("文件冲突确认"),
            tr("文件 \"%1\" 在本地和机床中均存在，内容不一致。\n\n请选择要保留的版本：")
                    .arg(conflict.local.strRelPath) +
                tr("\n    本地：%1\n    机床：%2")
                    .arg(OverwriteQuestion::Describe(conflict.local.iSize, conflict.local.time),
                         OverwriteQuestion::Describe(conflict.machine.iSize, conflict.machine.time)),
            {{MsgButtonYes, tr("保存本地版本")}, {MsgButtonNo, tr("保存机床版本")}, {MsgButtonIgnore, tr("跳过")}},
            std::move(answer));
    });
    m_pFolderSync->SetPlanReviewer(
        [window](const FolderSyncPlan& plan, std::function<void(bool, FolderSyncPlan)> answer) {
            auto* dialog = new FolderSyncPreviewDialog(plan, window);
            dialog->setAttribute(Qt::WA_DeleteOnClose);
            connect(dialog, &QDialog::finished, dialog, [dialog, answer = std::move(answer)](int result) {
                answer(result == QDialog::Accepted, dialog->Result());
            });
            dialog->open();
        });
    AddSyncSettings();
}

void FilePageController::AddSyncSettings()
{
    // The synchronisation's settings sit on the button's context menu.
    QAbstractButton* button = m_parts.toolPage->Button(ToolPage::ActionFolderSync);
    button->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (const auto& [key, text] :
         {std::pair{SyncSubfoldersKey, tr("包含子文件夹")}, std::pair{SyncPreviewKey, tr("同步前预览")},
          std::pair{SyncCompareKey, tr("比较文件内容")}}) {
        auto* action = new QAction(text, button);
        action->setCheckable(true);
        action->setChecked(Setting(key));
        connect(action, &QAction::toggled, this, [key = key](bool checked) {
            CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                                QString::fromLatin1(key), checked, false);
        });
        button->addAction(action);
    }
}

void FilePageController::StartFolderSync()
{
    qDebug() << "sync cnc is connected?";
    if (!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus()) {
        Q_EMIT SignalNotice(MsgIconFailure, tr("机床未连接"));
        return;
    }
    FileManager* manager = m_parts.fileManager;
    m_pFolderSync->SetOptions({Setting(SyncSubfoldersKey), Setting(SyncPreviewKey), Setting(SyncCompareKey)});
    m_pFolderSync->Start(manager->LocalPanel()->CurrentPath(), manager->MachinePanel()->CurrentPath());
}
