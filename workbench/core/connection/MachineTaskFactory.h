#pragma once

#include "MachineEndpoint.h"

#include <QStringList>
#include <memory>

class MachineTask;

// The only place that turns an endpoint and a machine path into FTP URLs and host tasks.
// Virtual so that tests can hand the funnel fake tasks.
class MachineTaskFactory
{
public:
    virtual ~MachineTaskFactory();

    // The factory every view and the funnel use unless a test replaced it.
    static std::shared_ptr<MachineTaskFactory> Default();

    // The machine path as a URL on the well-known port, as the host's tasks and the transfer list key it.
    static QString Url(const MachineEndpoint& endpoint, const QString& path);
    static QString EncodedUrl(const MachineEndpoint& endpoint, const QString& path);

    virtual MachineTask* Upload(const MachineEndpoint& endpoint, const QString& localPath,
                                const QString& machinePath) const;
    // listedSize: the size the folder's listing showed, or -1 to have the task ask the machine.
    virtual MachineTask* Download(const MachineEndpoint& endpoint, const QString& machinePath, const QString& localPath,
                                  qint64 listedSize = -1) const;
    virtual MachineTask* DeleteFile(const MachineEndpoint& endpoint, const QString& path) const;
    virtual MachineTask* DeleteFolder(const MachineEndpoint& endpoint, const QString& path) const;
    virtual MachineTask* DeleteItems(const MachineEndpoint& endpoint, const QStringList& files,
                                     const QStringList& folders) const;
    virtual MachineTask* Rename(const MachineEndpoint& endpoint, const QString& oldPath, const QString& newPath) const;
    virtual MachineTask* MakeDir(const MachineEndpoint& endpoint, const QString& path) const;
    // Entries() of the task holds the folder's entries once it finished.
    virtual MachineTask* List(const MachineEndpoint& endpoint, const QString& folder) const;
    // Logs in and out: the machine's FTP service answers.
    virtual MachineTask* Check(const MachineEndpoint& endpoint) const;
};
