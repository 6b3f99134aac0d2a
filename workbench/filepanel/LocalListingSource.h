#pragma once

#include "FileListingSource.h"
#include "TaskOwner.h"

// The local disk: folders are read on a pool thread, so that a folder of many thousand
// entries or a slow network drive never freezes the window.
class LocalListingSource final : public FileListingSource
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LocalListingSource)

public:
    using FileListingSource::FileListingSource;

    // With the filter on, files that are not machine programs get no row.
    void SetFilter(bool bFilter) { m_bFilter = bFilter; }
    bool Filter() const { return m_bFilter; }

    bool IsLocal() const override { return true; }
    void List(const QString& path) override;
    void Cancel() override { ++m_nSerial; }
    QString ParentPath(const QString& path) const override;
    QString FolderFromText(const QString& text) const override;
    bool RefuseBrowsing() override { return false; }

private:
    bool m_bFilter = false;
    // Only the newest listing is reported.
    quint64 m_nSerial = 0;
    TaskOwner m_tasks;
};
