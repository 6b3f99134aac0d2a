#include "LocalListingSource.h"

#include "LocalDirectoryReader.h"

#include <QDir>
#include <QFutureWatcher>
#include <memory>

void LocalListingSource::List(const QString& path)
{
    const quint64 serial = ++m_nSerial;
    auto listing = std::make_shared<FileListing>();
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, serial, listing] {
        watcher->deleteLater();
        if (serial == m_nSerial)
            Q_EMIT SignalListed(*listing);
    });
    watcher->setFuture(m_tasks.Run([listing, path, bFilter = m_bFilter](const TaskOwner::StopCheck&) {
        *listing = LocalDirectoryReader::Read(path, bFilter);
        return listing->bOk;
    }));
}

QString LocalListingSource::ParentPath(const QString& path) const
{
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(path));
    if (clean.isEmpty() || QDir(clean).isRoot())
        return QString();
    return QDir::toNativeSeparators(QFileInfo(clean).path());
}

QString LocalListingSource::FolderFromText(const QString& text) const
{
    if (!QDir::isAbsolutePath(text) || !QDir(text).exists())
        return QString();
    return QDir::toNativeSeparators(QDir::cleanPath(QDir::fromNativeSeparators(text)));
}
