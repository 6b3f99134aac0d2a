#include "FilePanelOperations.h"

#include "CDebugLog.h"
#include "CProgressWidget.h"
#include "CVarnokMessageBox.h"
#include "FileItemRoles.h"
#include "FileListingSource.h"
#include "FileNaming.h"
#include "FileTreeView.h"
#include "LocalPasteJob.h"
#include "LocalTrash.h"
#include "LogColors.h"
#include "MachineFileRequests.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

namespace {
bool IsMachineFileName(const QString& name)
{
    return MachineFileSuffixList.contains(QFileInfo(name).suffix().toLower());
}
} // namespace

FilePanelOperations::FilePanelOperations(FilePanelContext* panel) : QObject(panel->PanelWidget()), m_pPanel(panel)
{
    m_pPasteJob = new LocalPasteJob(this);
    connect(m_pPasteJob, &LocalPasteJob::SignalFinished, this, [this](const LocalPasteJob::Result& result) {
        OnLocalPasteFinished(result.iFailed, result.listLog, m_bPasteCut);
    });
}

FilePanelOperations::~FilePanelOperations()
{
    CProgressWidget::FreeAutoWidget(m_pProgressWidget, true);
}

void FilePanelOperations::Log(const QString& text, const QColor& color)
{
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, color);
}

void FilePanelOperations::Notice(const QString& text, bool bSuccess)
{
    QWidget* panel = m_pPanel->PanelWidget();
    QTimer::singleShot(0, panel, [panel, text, bSuccess] {
        CVarnokMessageBox::Open(panel, MsgButtonConfirm, bSuccess ? MsgIconSuccess : MsgIconFailure,
                                QCoreApplication::translate("FileSelectPanel", "提示"), text);
    });
}

void FilePanelOperations::PutOnClipboard(const QString& operation)
{
    const bool bCut = operation == QLatin1String("cut");
    const QList<FilePanelContext::Entry> entries = m_pPanel->SelectedEntries();
    if (entries.isEmpty() || m_pPanel->IsComputerView()) {
        CDebugLog::AddLog(bCut ? QStringLiteral("No valid index selected for cut operation")
                               : QStringLiteral("No valid index selected for copy operation"));
        return;
    }
    FileClipboardPayload payload;
    payload.strOperation = operation;
    payload.iSourceType = m_pPanel->IsLocal() ? FileClipboardPayload::SourceLocal : FileClipboardPayload::SourceMachine;
    for (const FilePanelContext::Entry& entry : entries)
        payload.listFiles.append({entry.strPath, entry.strName});
    QGuiApplication::clipboard()->setMimeData(payload.ToMimeData(), QClipboard::Clipboard);

    m_listClipboardPaths = payload.FilePaths();
    m_strClipboardOperation = operation;
    m_strClipboardSource = m_pPanel->IsLocal() ? QStringLiteral("local") : QStringLiteral("machine");
    m_dtClipboard = QDateTime::currentDateTime();
    const QString format = bCut ? QStringLiteral("已剪切 %1 个文件到剪贴板 (来源: %2) json%3")
                                : QStringLiteral("已复制 %1 个文件到剪贴板 (来源: %2) json%3");
    CDebugLog::AddLog(format.arg(entries.size()).arg(m_strClipboardSource, QString::fromUtf8(payload.ToJson())));
}

void FilePanelOperations::ClearClipboardRecord()
{
    m_listClipboardPaths.clear();
    m_strClipboardOperation.clear();
    m_strClipboardSource.clear();
    m_dtClipboard = QDateTime();
}

bool FilePanelOperations::Suits(const FileClipboardPayload& payload) const
{
    if (m_pPanel->IsComputerView())
        return false; // drives and shortcuts are no folder to paste into
    // Between two machine folders nothing is offered: the machine cannot copy on its own.
    return m_pPanel->IsLocal() || payload.iSourceType == FileClipboardPayload::SourceLocal;
}

bool FilePanelOperations::CanPaste() const
{
    const QMimeData* mimeData = QGuiApplication::clipboard()->mimeData();
    if (!mimeData || !mimeData->hasFormat(FileClipboardPayload::MimeType))
        return false;
    const std::optional<FileClipboardPayload> payload = FileClipboardPayload::FromMimeData(mimeData);
    return payload && Suits(*payload);
}

void FilePanelOperations::Paste()
{
    const QMimeData* mimeData = QGuiApplication::clipboard()->mimeData();
    CDebugLog::AddLog(QStringLiteral("json原始数据: ") +
                      QString::fromUtf8(mimeData ? mimeData->data(FileClipboardPayload::MimeType) : QByteArray()));
    const std::optional<FileClipboardPayload> payload = FileClipboardPayload::FromMimeData(mimeData);
    if (!payload) {
        CDebugLog::AddLog(QStringLiteral("clipboard holds no files to paste"));
        return;
    }
    Route(*payload);
}

bool FilePanelOperations::CanDrop(const QMimeData* mimeData, const QObject* source) const
{
    if (m_pPanel->IsPanelBusy() || source == m_pPanel->TreeView())
        return false;
    if (!m_pPanel->IsLocal() && !m_pPanel->HasMachine())
        return false;
    const std::optional<FileClipboardPayload> payload = FileClipboardPayload::FromMimeData(mimeData);
    return payload && Suits(*payload);
}

void FilePanelOperations::Drop(const QMimeData* mimeData)
{
    const std::optional<FileClipboardPayload> payload = FileClipboardPayload::FromMimeData(mimeData);
    if (payload)
        Route(*payload);
}

void FilePanelOperations::Route(const FileClipboardPayload& payload)
{
    if (!Suits(payload)) {
        CDebugLog::AddLog(QStringLiteral("paste ignored: source %1 does not suit this panel").arg(payload.iSourceType));
        return;
    }
    const QString folder = m_pPanel->CurrentPath();
    if (!m_pPanel->IsLocal() || payload.iSourceType == FileClipboardPayload::SourceMachine) {
        // To or from the machine: one batch through the funnel, which checks and asks.
        const bool bUpload = !m_pPanel->IsLocal();
        const OperationType operation = payload.IsCut() ? OperationCut : OperationCopy;
        QList<TransferItem> items;
        for (const FileClipboardPayload::Entry& entry : payload.listFiles) {
            const QString name = QFileInfo(entry.strFilePath).fileName();
            items.append(bUpload ? TransferItem{true, entry.strFilePath, FileListingSource::JoinPath(folder, name),
                                                operation, QFileInfo(entry.strFilePath).isDir()}
                                 : TransferItem{false, QDir(folder).filePath(name), entry.strFilePath, OperationCopy});
        }
        CDebugLog::AddLog(QStringLiteral("%1 %2 个文件")
                              .arg(bUpload ? QStringLiteral("本地上传") : QStringLiteral("本地复制下载"))
                              .arg(items.size()));
        if (m_pRequests)
            Q_EMIT m_pRequests->SignalTransfer(items);
        return;
    }
    PasteLocally(payload);
}

void FilePanelOperations::PasteLocally(const FileClipboardPayload& payload)
{
    if (m_pPasteJob->IsRunning()) {
        Log(tr("上一次粘贴尚未完成，请稍候"), LogColors::Warning);
        return;
    }
    m_bPasteCut = payload.IsCut();
    CProgressWidget::FreeAutoWidget(m_pProgressWidget, true);
    m_pProgressWidget = CProgressWidget::CreateAutoWidget(
        tr("粘贴文件"), tr("正在粘贴 %1 个文件，请稍候").arg(payload.listFiles.size()));
    m_pPasteJob->Start(payload.FilePaths(), m_pPanel->CurrentPath(), payload.IsCut());
}

void FilePanelOperations::OnLocalPasteFinished(int failed, const QStringList& log, bool bCut)
{
    CProgressWidget::FreeAutoWidget(m_pProgressWidget);
    for (const QString& line : log)
        CDebugLog::AddLog(line);
    m_pPanel->RefreshPanel();
    if (bCut) {
        // The files have moved: pasting them again would find nothing.
        const QMimeData* mimeData = QGuiApplication::clipboard()->mimeData();
        if (mimeData && mimeData->hasFormat(FileClipboardPayload::MimeType))
            QGuiApplication::clipboard()->clear();
        ClearClipboardRecord();
        CDebugLog::AddLog(QStringLiteral("currentClipboardData 已清除剪贴板数据"));
        Q_EMIT SignalClearLocalClipboardPath();
    }
    if (failed == 0) {
        Log(tr("粘贴成功！"), LogColors::Success);
        Notice(tr("粘贴成功！"), true);
    } else {
        Log(tr("部分文件粘贴失败！"), LogColors::Failure);
        Notice(tr("部分文件粘贴失败！"));
    }
}

void FilePanelOperations::DeleteSelected()
{
    const QList<FilePanelContext::Entry> entries = m_pPanel->SelectedEntries();
    if (entries.isEmpty() || m_pPanel->IsComputerView() || m_pPanel->Source()->RefuseBrowsing())
        return;
    QStringList names;
    for (const FilePanelContext::Entry& entry : entries)
        names.append(entry.strName);
    // Local files go to the trash; the machine has none, so its side says so.
    const QString permanence =
        m_pPanel->IsLocal() ? QString() : QStringLiteral("\n") + tr("机床没有回收站，文件将从机床上永久删除。");
    CVarnokMessageBox::Open(m_pPanel->PanelWidget(), MsgButtonYes | MsgButtonNo, MsgIconWarning,
                            QCoreApplication::translate("FileSelectPanel", "提示"),
                            names.join(QLatin1Char('\n')) + QStringLiteral("\n\n") + tr("确定删除以上文件？") +
                                permanence,
                            {}, [self = QPointer<FilePanelOperations>(this), entries](int answer) {
                                if (self && answer == MsgButtonYes)
                                    self->Delete(entries);
                            });
}

void FilePanelOperations::ShowHistory()
{
    const QList<FilePanelContext::Entry> entries = m_pPanel->SelectedEntries();
    const bool bOneFile = entries.size() == 1 && entries.first().iKind == FileItemKind::File;
    if (m_pRequests)
        Q_EMIT m_pRequests->SignalShowHistory(bOneFile ? entries.first().strPath : QString());
}

void FilePanelOperations::Delete(const QList<FilePanelContext::Entry>& entries)
{
    if (!m_pPanel->IsLocal()) {
        QStringList files;
        QStringList folders;
        for (const FilePanelContext::Entry& entry : entries)
            (entry.iKind == FileItemKind::File ? files : folders).append(entry.strPath);
        if (m_pRequests)
            Q_EMIT m_pRequests->SignalDelete(files, folders);
        return;
    }
    bool bFailed = false;
    for (const FilePanelContext::Entry& entry : entries) {
        QString error;
        if (LocalTrash::Move(entry.strPath, &error)) {
            Log(tr(" 文件已移至回收站：") + entry.strPath, LogColors::Success);
        } else {
            bFailed = true;
            Log(tr(" 移至回收站失败，错误码：") + error + QLatin1Char(' ') + entry.strPath, LogColors::Failure);
        }
    }
    m_pPanel->RefreshPanel();
    if (bFailed) {
        Log(tr("部分文件删除失败！"), LogColors::Failure);
        Notice(tr("部分文件删除失败！"));
    }
}

QStringList FilePanelOperations::TakenNames() const
{
    return m_pPanel->FolderNames() + m_pPanel->FileNames();
}

void FilePanelOperations::NewFolder()
{
    if (m_pPanel->IsComputerView() || m_pPanel->Source()->RefuseBrowsing())
        return;
    const QStringList taken = TakenNames();
    const QString name = FileNaming::FreeName(QStringLiteral("NewForder"), true,
                                              [&taken](const QString& candidate) { return taken.contains(candidate); });
    const QString path = FileListingSource::JoinPath(m_pPanel->CurrentPath(), name);
    m_pPanel->SelectAfterListing(name);
    if (!m_pPanel->IsLocal()) {
        if (m_pRequests)
            Q_EMIT m_pRequests->SignalMakeDir(path);
        return;
    }
    if (QDir().mkdir(path))
        Log(tr("单层目录创建成功：") + path, LogColors::Success);
    else
        Log(tr("单层目录创建失败：") + path, LogColors::Failure);
    m_pPanel->RefreshPanel();
}

void FilePanelOperations::NewFile()
{
    if (!m_pPanel->IsLocal() || m_pPanel->IsComputerView())
        return;
    const QStringList taken = TakenNames();
    const QString name = FileNaming::FreeName(QStringLiteral("NewFile.nc"), false,
                                              [&taken](const QString& candidate) { return taken.contains(candidate); });
    const QString path = FileListingSource::JoinPath(m_pPanel->CurrentPath(), name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        Log(tr("文件创建成功：") + path, LogColors::Success);
    else
        Log(tr("文件创建失败：") + path, LogColors::Failure);
    m_pPanel->SelectAfterListing(name);
    m_pPanel->RefreshPanel();
}

bool FilePanelOperations::MayRename(const QString& name, bool bFolder)
{
    if (m_pPanel->IsLocal() || bFolder || IsMachineFileName(name))
        return true;
    const QString suffix = QFileInfo(name).suffix();
    const QString text = tr("文件类型 %1 不支持，不允许重命名").arg(suffix.isEmpty() ? name : suffix);
    Log(text, LogColors::Warning);
    Notice(text);
    return false;
}

bool FilePanelOperations::Rename(const QString& oldPath, const QString& newName, bool bFolder)
{
    const QFileInfo oldInfo(oldPath);
    const QString newPath = FileListingSource::JoinPath(m_pPanel->CurrentPath(), newName);
    CDebugLog::AddLog(QStringLiteral("Old file path:") + oldPath);
    CDebugLog::AddLog(QStringLiteral("File name changed to:") + newName);
    CDebugLog::AddLog(QStringLiteral("New file path:") + newPath);
    if (newName == oldInfo.fileName())
        return false;
    if (!MayRename(oldInfo.fileName(), bFolder))
        return false;
    if (!m_pPanel->IsLocal()) {
        if (!bFolder && !IsMachineFileName(newName)) {
            const QString text = tr("机床文件重命名后缀不合法: %1").arg(QFileInfo(newName).suffix());
            Log(text, LogColors::Warning);
            Notice(text);
            return false;
        }
        if (m_pPanel->Source()->RefuseBrowsing())
            return false;
        if (m_pRequests)
            Q_EMIT m_pRequests->SignalRename(oldPath, newPath);
        return true;
    }
    if (bFolder) {
        QString failure;
        if (!QFileInfo(oldPath).isDir())
            failure = tr("源目录不存在：") + oldPath;
        else if (QFileInfo::exists(newPath))
            failure = tr("目标目录已存在：") + newPath;
        else if (!QDir().rename(oldPath, newPath))
            failure = tr("目录重命名失败：") + oldPath;
        if (!failure.isEmpty()) {
            Log(failure, LogColors::Failure);
            return false;
        }
    } else if (!QFile::rename(oldPath, newPath)) { // never over an existing file
        CDebugLog::AddLog(QStringLiteral("Failed to rename file"));
        Log(tr("文件重命名失败：") + oldPath, LogColors::Failure);
        return false;
    }
    m_pPanel->SelectAfterListing(newName);
    m_pPanel->RefreshPanel();
    return true;
}
