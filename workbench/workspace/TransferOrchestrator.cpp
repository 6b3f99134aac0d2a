#include "TransferOrchestrator.h"

#include "CDebugLog.h"
#include "CamBaseTextHelper.h"
#include "DeleteFTPFile.h"
#include "DeleteFTPForder.h"
#include "DeleteFtpItems.h"
#include "DownloadToLocal.h"
#include "FtpSessionBudget.h"
#include "KorvBaseGlobals.h"
#include "LogColors.h"
#include "MakeFtpDirection.h"
#include "RenameFtpFile.h"
#include "UploadToFtp.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace {
const QString FtpPort = QStringLiteral("21");
const QString UploadSuffix = QStringLiteral("*Upload");
const QString DownloadSuffix = QStringLiteral("*Download");
const QString AutoCamMachineFolder = QStringLiteral("/FromLunarcHub/");
constexpr int StopWaitMs = 3000;
constexpr int FolderType = 0;

QString LastPart(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

bool IsAllowedType(const QString& path)
{
    return MachineFileSuffixList.contains(QFileInfo(path).suffix().toLower());
}

int ConfiguredMaxTransfers()
{
    return CamBaseTextHelper::instance()
        ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingFtpMaxTransfers),
                               TransferOrchestrator::DefaultMaxTransfers)
        .toInt();
}
} // namespace

TransferOrchestrator::TransferOrchestrator(QObject* parent) : QObject(parent)
{
    RegisterWorkbenchMetaTypes();
    RegisterTanslateInfoMetaType();
    SetMaxTransfers(ConfiguredMaxTransfers());
    m_strAutoCamFolder =
        QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/AutoCamFiles");
}

TransferOrchestrator::~TransferOrchestrator()
{
    for (const QPointer<FtpTaskThread>& task : std::as_const(m_listTasks)) {
        if (task)
            task->SetTransControl(FtpTaskThread::TransControlStop);
    }
    const QDeadlineTimer deadline(StopWaitMs);
    for (const QPointer<FtpTaskThread>& task : std::as_const(m_listTasks)) {
        if (task)
            task->wait(deadline);
    }
    if (IsBusy())
        g_bTranslating = false;
}

QString TransferOrchestrator::Url(const QString& path) const
{
    return QStringLiteral("ftp://%1:%2%3").arg(m_strIp, FtpPort, path);
}

QString TransferOrchestrator::EncodedUrl(const QString& path) const
{
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(m_strIp);
    url.setPath(path);
    url.setPort(FtpPort.toInt());
    return url.toString(QUrl::FullyEncoded);
}

bool TransferOrchestrator::RefuseUnconnected()
{
    if (!m_strIp.isEmpty())
        return false;
    CDebugLog::AddLog(QStringLiteral("当前未与机床进行连接！"));
    Q_EMIT SignalNotice(tr("当前未与机床进行连接！"));
    return true;
}

bool TransferOrchestrator::RefuseBadName(const QString& path)
{
    const QFileInfo info(path);
    const QString suffix = info.suffix().toLower();
    if (!MachineFileSuffixList.contains(suffix)) {
        qDebug() << "文件类型不符合要求：" << suffix;
        CDebugLog::AddLog(QStringLiteral("文件类型不符合要求:%1").arg(suffix));
        return true;
    }
    if (info.fileName().startsWith(QLatin1Char('.'))) {
        Q_EMIT SignalNotice(tr("当前选择上传的文件名称以\".\"开头，请更改名称后重试！"));
        return true;
    }
    return false;
}

bool TransferOrchestrator::HitsRunningProgram(const QString& machinePath, bool bFolder) const
{
    if (m_strRunningProgram.isEmpty())
        return false;
    if (m_strRunningProgram.contains(QLatin1Char('/'))) {
        const QString program = QDir::cleanPath(QLatin1Char('/') + m_strRunningProgram);
        const QString path = QDir::cleanPath(machinePath);
        return bFolder ? (path == QStringLiteral("/") || program.startsWith(path + QLatin1Char('/'))) : program == path;
    }
    // The machine names the program without its folder: any file of that name is held back.
    return !bFolder && LastPart(machinePath) == m_strRunningProgram;
}

bool TransferOrchestrator::RefuseRunningProgram(const QString& machinePath, bool bFolder)
{
    if (!HitsRunningProgram(machinePath, bFolder))
        return false;
    const QString text = tr("机床正在运行程序%1，不能覆盖、删除或重命名：%2").arg(m_strRunningProgram, machinePath);
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, LogColors::Warning);
    Q_EMIT SignalNotice(text);
    return true;
}

bool TransferOrchestrator::IsQueued(const QString& url) const
{
    if (m_mapRunningTask.contains(url))
        return true;
    for (const Request& request : m_listWaiting) {
        if (request.strUrl == url)
            return true;
    }
    return false;
}

void TransferOrchestrator::Upload(const QString& strLocalPath, const QString& strMachinePath, OperationType operation)
{
    if (RefuseBadName(strLocalPath) || RefuseUnconnected() || RefuseRunningProgram(strMachinePath, false))
        return;
    Request request{DirectionUpload, strLocalPath, strMachinePath, operation, Url(strMachinePath), QString()};
    request.strKey = request.strUrl + UploadSuffix;
    qDebug() << "upload file:" << request.strUrl << " strMachinePath " << strMachinePath;
    Enqueue(request);
}

void TransferOrchestrator::Download(const QString& strLocalPath, const QString& strMachinePath)
{
    if (RefuseBadName(strMachinePath) || RefuseUnconnected())
        return;
    Request request{DirectionDownload, strLocalPath, strMachinePath, OperationCopy, Url(strMachinePath), QString()};
    request.strKey = request.strUrl + DownloadSuffix;
    qDebug() << "下载文件到:" << request.strUrl << " strLocalPath " << strLocalPath << " strMachinePath "
             << strMachinePath;
    Enqueue(request);
}

void TransferOrchestrator::Enqueue(const Request& request)
{
    if (IsQueued(request.strUrl)) {
        qDebug() << "当前文件正在被操作：" << request.strUrl;
        return;
    }
    m_hashRequests.insert(request.strKey, request);
    if (!IsBusy())
        Q_EMIT SignalBusyChanged(true);
    if (m_mapRunningTask.size() < m_iMaxTransfers) {
        Start(request);
        return;
    }
    m_listWaiting.append(request);
    Report(request, TanslateInfo::StateWaiting, 0, 0);
}

void TransferOrchestrator::StartWaiting()
{
    while (!m_listWaiting.isEmpty() && m_mapRunningTask.size() < m_iMaxTransfers)
        Start(m_listWaiting.takeFirst());
}

void TransferOrchestrator::Report(const Request& request, int state, qint64 done, qint64 total)
{
    TanslateInfo info;
    info.totalSize = double(total);
    info.doneSize = double(done);
    info.fileName = DisplayName(request);
    info.direction = request.direction == DirectionDownload;
    info.state = state;
    info.machinePath = request.strMachinePath;
    Q_EMIT SignalTransferUpdated(info, request.strKey);
}

QString TransferOrchestrator::DisplayName(const Request& request)
{
    return LastPart(QDir::fromNativeSeparators(request.direction == DirectionUpload ? request.strLocalPath
                                                                                    : request.strMachinePath));
}

void TransferOrchestrator::Start(const Request& request)
{
    const bool bUpload = request.direction == DirectionUpload;
    FtpTaskThread* task = nullptr;
    if (bUpload)
        task = new UploadToFtp(request.strUrl, EncodedUrl(request.strMachinePath), request.strLocalPath, nullptr);
    else
        task = new DownloadToLocal(request.strUrl, EncodedUrl(request.strMachinePath), request.strLocalPath, nullptr);
    const QString key = request.strKey;
    connect(task, &FtpTaskThread::SignalTaskProgress, this, [this, key](qint64 done, qint64 total, const QString&) {
        if (m_hashRequests.contains(key))
            Report(m_hashRequests.value(key), TanslateInfo::StateRunning, done, total);
    });
    connect(task, &FtpTaskThread::SignalTaskFinished, this,
            [this, key](bool ok, const QString& message) { OnTransferFinished(key, ok, message); });
    Track(task);
    m_mapRunningTask.insert(request.strUrl, task);
    const QString name = DisplayName(request);
    Q_EMIT SignalAppendLog((bUpload ? tr("开始上传文件：%1") : tr("开始下载文件：%1")).arg(name), LogColors::Plain);
    Report(request, TanslateInfo::StateRunning, 0, bUpload ? QFileInfo(request.strLocalPath).size() : 0);
    task->start();
}

void TransferOrchestrator::OnTransferFinished(const QString& strKey, bool bResult, const QString& message)
{
    const Request request = m_hashRequests.value(strKey);
    const bool bUpload = request.direction == DirectionUpload;
    if (bUpload) {
        qDebug() << "result " << bResult << "operation" << request.operation;
        CDebugLog::AddLog(QStringLiteral("UploadToFtp result:%1, operation:%2, url:%3")
                              .arg(bResult)
                              .arg(request.operation)
                              .arg(request.strUrl));
    } else {
        CDebugLog::AddLog(QStringLiteral("DownloadToLocal result:%1, url:%2").arg(bResult).arg(request.strUrl));
    }
    if (m_mapRunningTask.remove(request.strUrl) > 0)
        qDebug() << "remove url:" << request.strUrl;
    // A machine that turned logins away takes fewer at once: the rest wait here, not in task threads.
    const int accepted = FtpSessionBudget::Instance().Limit(m_strIp);
    if (accepted > 0 && accepted < m_iMaxTransfers) {
        SetMaxTransfers(accepted);
        const QString text = tr("机床最多同时接受%1个FTP连接，其余传输将排队进行").arg(accepted);
        CDebugLog::AddLog(text);
        Q_EMIT SignalAppendLog(text, LogColors::Warning);
    }
    if (bResult && bUpload && !m_bNavigationWaiting)
        Q_EMIT SignalUploaded(request.strMachinePath);
    StartWaiting();
    if (!IsBusy())
        AfterLastTransfer();

    const qint64 size = QFileInfo(request.strLocalPath).size();
    Report(request, bResult ? TanslateInfo::StateSucceeded : TanslateInfo::StateFailed, bResult ? size : 0, size);
    const QString name = DisplayName(request);
    if (bUpload) {
        Q_EMIT SignalAppendLog((bResult ? tr("上传文件完成：%1") : tr("上传文件失败：%1")).arg(name),
                               bResult ? LogColors::Plain : LogColors::Failure);
        CDebugLog::AddLog(QStringLiteral("FTP上传文件result：%1，operation %2").arg(bResult).arg(request.operation));
        if (request.operation == OperationCut)
            FinishCut(request, bResult);
    } else {
        Q_EMIT SignalAppendLog((bResult ? tr("下载文件完成：%1") : tr("下载文件失败：%1")).arg(name),
                               bResult ? LogColors::Plain : LogColors::Failure);
        if (bResult)
            Q_EMIT SignalDownloaded(request.strLocalPath);
    }
    // The reason, so that the operator can tell a full disk from a lost machine.
    if (!bResult && !message.isEmpty()) {
        CDebugLog::AddLog(message);
        Q_EMIT SignalAppendLog(message, LogColors::Failure);
    }
    if (bResult)
        m_hashRequests.remove(strKey);
    Q_EMIT SignalTransferFinished(request.strUrl, bResult, message);
}

void TransferOrchestrator::FinishCut(const Request& request, bool bResult)
{
    if (bResult) {
        qDebug() << "剪切操作成功，删除本地源文件:" << request.strLocalPath;
        QFile::remove(request.strLocalPath);
        Q_EMIT SignalCutSucceeded(request.strLocalPath);
        qDebug() << "已清除剪贴板数据";
    } else {
        qDebug() << "剪切操作失败，恢复本地剪切板数据";
    }
}

void TransferOrchestrator::AfterLastTransfer()
{
    CDebugLog::AddLog(QStringLiteral("当前FTP无文件传输，允许访问机器文件！"));
    g_bTranslating = false;
    Q_EMIT SignalBusyChanged(false);
    if (m_bNavigationWaiting) {
        m_bNavigationWaiting = false;
        Q_EMIT SignalMachineNavigation(m_strNavigationFolder, m_strNavigationEntry);
        m_strNavigationFolder.clear();
        m_strNavigationEntry.clear();
    }
}

void TransferOrchestrator::NavigateMachinePanel(const QString& folder, const QString& entry)
{
    if (!IsBusy()) {
        Q_EMIT SignalMachineNavigation(folder, entry);
        return;
    }
    m_bNavigationWaiting = true;
    m_strNavigationFolder = folder;
    m_strNavigationEntry = entry;
}

void TransferOrchestrator::Retry(const QString& strKey)
{
    const auto it = m_hashRequests.constFind(strKey);
    if (it == m_hashRequests.cend() || m_mapRunningTask.contains(it->strUrl))
        return;
    const Request request = *it;
    m_hashRequests.erase(it);
    if (request.direction == DirectionUpload)
        Upload(request.strLocalPath, request.strMachinePath, request.operation);
    else
        Download(request.strLocalPath, request.strMachinePath);
}

void TransferOrchestrator::StopAll()
{
    for (const QPointer<FtpTaskThread>& task : std::as_const(m_mapRunningTask)) {
        if (task)
            task->SetTransControl(FtpTaskThread::TransControlStop);
    }
    const QList<Request> waiting = std::exchange(m_listWaiting, {});
    for (const Request& request : waiting)
        Report(request, TanslateInfo::StateFailed, 0, 0);
    if (!IsBusy() && !waiting.isEmpty())
        AfterLastTransfer();
}

void TransferOrchestrator::StartTask(FtpTaskThread* task, const QString& hostLogFormat, bool bProgressWidget)
{
    connect(task, &FtpTaskThread::SignalTaskFinished, this,
            [this, hostLogFormat, bProgressWidget, url = task->GetUrl()](bool ok, const QString& message) {
                CDebugLog::AddLog(hostLogFormat.arg(ok).arg(url));
                if (!ok) {
                    CDebugLog::AddLog(message);
                    Q_EMIT SignalAppendLog(message, LogColors::Failure);
                }
                if (bProgressWidget)
                    Q_EMIT SignalProgressFinished();
                Q_EMIT SignalMachineChanged();
            });
    Track(task);
    task->start();
}

void TransferOrchestrator::Track(FtpTaskThread* task)
{
    connect(task, &QThread::finished, task, &QObject::deleteLater);
    m_listTasks.removeIf([](const QPointer<FtpTaskThread>& known) { return known.isNull(); });
    m_listTasks.append(task);
}

void TransferOrchestrator::DeletePath(const QString& path, int type)
{
    if (RefuseUnconnected())
        return;
    const bool bFolder = type == FolderType;
    const QString url = Url(path);
    CDebugLog::AddLog(QStringLiteral("SlotDeleteTriggered url:%1, path:%2").arg(url, path));
    qDebug() << "==-- url:" << url << " path:" << path;
    bool bBusy = m_mapRunningTask.contains(url);
    for (const QString& running : m_mapRunningTask.keys())
        bBusy = bBusy || (bFolder && running.startsWith(url + QLatin1Char('/')));
    if (bBusy) {
        qDebug() << (bFolder ? "当前文件夹正在被操作：" : "当前文件正在被操作：") << url;
        return;
    }
    if (RefuseRunningProgram(path, bFolder))
        return;
    if (bFolder) {
        qDebug() << "删除文件夹:" << path;
        Q_EMIT SignalProgressStarted(tr("删除文件夹"), tr("正在删除文件夹，请稍候"));
        StartTask(new DeleteFTPForder(QStringLiteral("ftp://%1:%2").arg(m_strIp, FtpPort), url, path,
                                      QString::number(type), nullptr),
                  QStringLiteral("DeleteFTPForder result:%1, url:%2"), true);
        return;
    }
    qDebug() << "删除文件:" << path;
    Q_EMIT SignalProgressStarted(tr("删除文件"), tr("正在删除文件，请稍候"));
    StartTask(new DeleteFTPFile(url, EncodedUrl(path), path, nullptr),
              QStringLiteral("DeleteFTPFile result:%1, url:%2"), true);
}

void TransferOrchestrator::DeleteItems(const QStringList& filePathList, const QStringList& foderPathList)
{
    if (RefuseUnconnected())
        return;
    for (const QString& file : filePathList) {
        if (RefuseRunningProgram(file, false))
            return;
    }
    for (const QString& folder : foderPathList) {
        if (RefuseRunningProgram(folder, true))
            return;
    }
    CDebugLog::AddLog(QStringLiteral("SlotDeleteItemsTriggered fileCount:%1, folderCount:%2")
                          .arg(filePathList.size())
                          .arg(foderPathList.size()));
    Q_EMIT SignalProgressStarted(tr("删除"), tr("正在删除，请稍候"));
    const QString base = QStringLiteral("ftp://%1:%2/").arg(m_strIp, FtpPort);
    StartTask(new DeleteFtpItems(base, QString(), filePathList, foderPathList, m_strIp, nullptr),
              QStringLiteral("DeleteFtpItems result:%1, url:%2"), true);
}

void TransferOrchestrator::Rename(const QString& strOldPath, const QString& strNewPath)
{
    if (RefuseUnconnected())
        return;
    qDebug() << "重命名:" << strOldPath << " path " << strNewPath;
    const QString oldUrl = Url(strOldPath);
    if (m_mapRunningTask.contains(oldUrl)) {
        qDebug() << "当前文件正在被操作：" << oldUrl;
        return;
    }
    for (const QString& running : m_mapRunningTask.keys()) {
        if (running.startsWith(oldUrl + QLatin1Char('/'))) {
            qDebug() << "当前文件夹正在被操作：" << oldUrl;
            return;
        }
    }
    if (RefuseRunningProgram(strOldPath, !IsAllowedType(strOldPath)) || RefuseRunningProgram(strNewPath, false))
        return;
    auto* task = new RenameFtpFile(oldUrl, Url(strNewPath), strOldPath, nullptr);
    task->SetFilePath(strOldPath, strNewPath);
    StartTask(task, QStringLiteral("RenameFtpFile result:%1, url:%2"), false);
}

void TransferOrchestrator::MakeDir(const QString& path)
{
    if (RefuseUnconnected())
        return;
    qDebug() << "create new forder:"
             << " path " << path;
    StartTask(new MakeFtpDirection(Url(path), EncodedUrl(path), path, nullptr),
              QStringLiteral("MakeFtpDirection result:%1, url:%2"), false);
}

void TransferOrchestrator::UploadAutoCamFiles(const QVariant& fileData, const QString& filePath,
                                              const QString& modelName)
{
    const QFileInfo source(filePath);
    const QString base = modelName.isEmpty() ? source.completeBaseName() : modelName;
    const QString suffix = source.suffix().isEmpty() ? QStringLiteral("nc") : source.suffix();
    const QString name =
        QStringLiteral("%1_%2").arg(base, QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"))) +
        QLatin1Char('.') + suffix;
    const QString localPath = QDir(m_strAutoCamFolder).filePath(name);
    if (QFileInfo::exists(localPath))
        qDebug() << "文件已存在:" << localPath;
    if (!QDir().mkpath(m_strAutoCamFolder)) {
        qDebug() << "创建目录失败:" << m_strAutoCamFolder;
        return;
    }
    QFile file(localPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qDebug() << "文件创建失败:" << localPath;
        qDebug() << "错误信息:" << file.errorString();
        return;
    }
    file.write(fileData.toStringList().join(QLatin1Char('\n')).toUtf8());
    file.close();
    qDebug() << "文件创建成功:" << localPath;
    Upload(localPath, AutoCamMachineFolder + name, OperationCopy);
}
