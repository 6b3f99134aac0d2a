#pragma once

#include "FileListingSource.h"
#include "TaskOwner.h"

#include <QPointer>

// The machine's file system, listed over FTP by the host's listing task. Browsing waits
// while a transfer runs: the machine serves one file operation at a time reliably.
class MachineListingSource final : public FileListingSource
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineListingSource)

public:
    using FileListingSource::FileListingSource;

    void SetMachineIp(const QString& ip) { m_strMachineIp = ip; }
    QString MachineIp() const { return m_strMachineIp; }

    bool IsLocal() const override { return false; }
    void List(const QString& path) override;
    void Cancel() override { m_pListTask = nullptr; }
    QString ParentPath(const QString& path) const override;
    QString FolderFromText(const QString& text) const override;
    bool RefuseBrowsing() override;

    // "/nc/" and "/nc" are the same machine folder; the panel keeps the short form.
    static QString NormalizedPath(const QString& path);

Q_SIGNALS:
    // Temporary files of our own uploads found in a folder that listed well.
    void SignalLeftoversListed(QString folder, QList<FtpFileInfo> leftovers);

private:
    QString m_strMachineIp;
    QPointer<QObject> m_pListTask;
    TaskOwner m_tasks; // listings still running are stopped when the panel goes
};
