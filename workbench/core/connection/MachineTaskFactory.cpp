#include "MachineTaskFactory.h"

#include "CheckConnect.h"
#include "DeleteFTPFile.h"
#include "DeleteFTPForder.h"
#include "DeleteFtpItems.h"
#include "DownloadToLocal.h"
#include "HostFtpTask.h"
#include "ListFtpDirectory.h"
#include "MakeFtpDirection.h"
#include "RenameFtpFile.h"
#include "UploadToFtp.h"

#include <QUrl>

namespace {
constexpr int FolderType = 0;

QString RootUrl(const MachineEndpoint& endpoint)
{
    return QStringLiteral("ftp://%1:%2").arg(endpoint.strIp).arg(MachineEndpoint::WellKnownFtpPort);
}
} // namespace

MachineTaskFactory::~MachineTaskFactory() = default;

std::shared_ptr<MachineTaskFactory> MachineTaskFactory::Default()
{
    static const auto factory = std::make_shared<MachineTaskFactory>();
    return factory;
}

QString MachineTaskFactory::Url(const MachineEndpoint& endpoint, const QString& path)
{
    return RootUrl(endpoint) + path;
}

QString MachineTaskFactory::EncodedUrl(const MachineEndpoint& endpoint, const QString& path)
{
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(endpoint.strIp);
    url.setPort(MachineEndpoint::WellKnownFtpPort);
    url.setPath(path);
    return url.toString(QUrl::FullyEncoded);
}

MachineTask* MachineTaskFactory::Upload(const MachineEndpoint& endpoint, const QString& localPath,
                                        const QString& machinePath) const
{
    return new HostFtpTask(
        new UploadToFtp(Url(endpoint, machinePath), EncodedUrl(endpoint, machinePath), localPath, nullptr));
}

MachineTask* MachineTaskFactory::Download(const MachineEndpoint& endpoint, const QString& machinePath,
                                          const QString& localPath, qint64 listedSize) const
{
    return new HostFtpTask(new DownloadToLocal(Url(endpoint, machinePath), EncodedUrl(endpoint, machinePath), localPath,
                                               listedSize, nullptr));
}

MachineTask* MachineTaskFactory::DeleteFile(const MachineEndpoint& endpoint, const QString& path) const
{
    return new HostFtpTask(new DeleteFTPFile(Url(endpoint, path), EncodedUrl(endpoint, path), path, nullptr));
}

MachineTask* MachineTaskFactory::DeleteFolder(const MachineEndpoint& endpoint, const QString& path) const
{
    return new HostFtpTask(
        new DeleteFTPForder(RootUrl(endpoint), Url(endpoint, path), path, QString::number(FolderType), nullptr));
}

MachineTask* MachineTaskFactory::DeleteItems(const MachineEndpoint& endpoint, const QStringList& files,
                                             const QStringList& folders) const
{
    return new HostFtpTask(
        new DeleteFtpItems(RootUrl(endpoint) + QLatin1Char('/'), QString(), files, folders, endpoint.strIp, nullptr));
}

MachineTask* MachineTaskFactory::Rename(const MachineEndpoint& endpoint, const QString& oldPath,
                                        const QString& newPath) const
{
    auto* task = new RenameFtpFile(Url(endpoint, oldPath), Url(endpoint, newPath), oldPath, nullptr);
    task->SetFilePath(oldPath, newPath);
    return new HostFtpTask(task);
}

MachineTask* MachineTaskFactory::MakeDir(const MachineEndpoint& endpoint, const QString& path) const
{
    return new HostFtpTask(new MakeFtpDirection(Url(endpoint, path), EncodedUrl(endpoint, path), path, nullptr));
}

MachineTask* MachineTaskFactory::List(const MachineEndpoint& endpoint, const QString& folder) const
{
    return new HostFtpTask(new ListFtpDirectory(Url(endpoint, folder), EncodedUrl(endpoint, folder), folder, nullptr));
}

MachineTask* MachineTaskFactory::Check(const MachineEndpoint& endpoint) const
{
    return new HostFtpTask(new CheckConnect(Url(endpoint, QStringLiteral("/")), nullptr));
}
