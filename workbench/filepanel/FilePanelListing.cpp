#include "FilePanelListing.h"

#include "CDebugLog.h"
#include "FileItemRoles.h"
#include "FileListing.h"
#include "FileListingSource.h"
#include "LocalVolumeLister.h"
#include "LogColors.h"
#include "MachineListingSource.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLoggingCategory>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QTimer>

Q_LOGGING_CATEGORY(lcPanelListing, "korv.filepanel", QtInfoMsg)

namespace {
// A slice stops at whichever comes first, so one turn of the event loop stays well
// under a frame even on a slow machine.
constexpr qsizetype kSliceRows = 2048;
constexpr qint64 kSliceMs = 8;
} // namespace

FilePanelListing::FilePanelListing(FileListingSource* source, QStandardItemModel* model, QHeaderView* header,
                                   QObject* parent)
    : QObject(parent), m_pSource(source), m_pModel(model), m_pHeader(header), m_bLocal(source->IsLocal())
{
    connect(m_pSource, &FileListingSource::SignalListed, this, &FilePanelListing::Apply);
}

void FilePanelListing::SetPath(const QString& path)
{
    m_strPath = path;
    Q_EMIT SignalPathChanged(path);
}

void FilePanelListing::ReplaceRows(const QList<FileRowData>& rows)
{
    m_pModel->removeRows(0, m_pModel->rowCount());
    AppendRows(rows);
}

void FilePanelListing::AppendRows(const QList<FileRowData>& rows)
{
    QList<QStandardItem*> items;
    items.reserve(rows.size());
    for (const FileRowData& row : rows) {
        items.append(row.CreateItem());
    }
    m_pModel->invisibleRootItem()->appendRows(items);
}

QList<FileRowData> FilePanelListing::QuickAccessRows() const
{
    // The texts keep the panel's translation context.
    struct Place
    {
        int kind;
        QString name;
        QStandardPaths::StandardLocation location;
    };
    const Place places[] = {{FileItemKind::Desktop, QCoreApplication::translate("FileSelectPanel", "桌面"),
                             QStandardPaths::DesktopLocation},
                            {FileItemKind::Downloads, QCoreApplication::translate("FileSelectPanel", "下载"),
                             QStandardPaths::DownloadLocation},
                            {FileItemKind::Documents, QCoreApplication::translate("FileSelectPanel", "文档"),
                             QStandardPaths::DocumentsLocation}};
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

void FilePanelListing::StopAppending()
{
    ++m_iGeneration;
    m_pendingListing = FileListing();
    m_iNextRow = 0;
}

void FilePanelListing::ShowComputer()
{
    m_pSource->Cancel();
    StopAppending();
    m_bListing = false;
    m_listFolderNames.clear();
    m_listFileNames.clear();
    SetPath(QString());
    ReplaceRows(QuickAccessRows() + LocalVolumeLister::ListRows());
    m_pHeader->setSortIndicatorShown(false);
    Q_EMIT SignalListingFinished(QString(), true);
}

void FilePanelListing::Clear(const QString& start)
{
    m_pSource->Cancel();
    StopAppending();
    m_bListing = false;
    m_strPendingLocateName.clear();
    m_strPendingFolderName.clear();
    m_listShownRows.clear();
    m_pModel->removeRows(0, m_pModel->rowCount());
    SetPath(start);
}

bool FilePanelListing::List(const QString& path)
{
    if (m_pSource->RefuseBrowsing()) {
        return false;
    }
    if (m_bLocal) {
        qCDebug(lcPanelListing) << "scanDirectory:" << path;
        if (!QDir(path).exists()) {
            CDebugLog::AddLog(path + QStringLiteral(" not exists"));
        }
    } else if (!m_bListing) {
        // A listing still in flight already keeps the rows from before it.
        m_strSavedPath = m_strPath;
    }
    StopAppending();
    m_listFolderNames.clear();
    m_listFileNames.clear();
    SetPath(m_bLocal ? path : MachineListingSource::NormalizedPath(path));
    m_pHeader->setSortIndicatorShown(true);
    ReplaceRows((m_bLocal ? QuickAccessRows() : QList<FileRowData>()) << FileRowData::Placeholder());
    m_bListing = true;
    m_pSource->List(path);
    return true;
}

void FilePanelListing::Apply(const FileListing& listing)
{
    m_bListing = false;
    StopAppending();
    if (!listing.bOk && !m_bLocal) {
        SetPath(m_strSavedPath);
        ReplaceRows(m_listShownRows);
        const QString text = QCoreApplication::translate("FileSelectPanel", "获取机床文件列表失败！");
        CDebugLog::AddLog(text);
        Q_EMIT SignalAppendLog(text, LogColors::Failure);
        Q_EMIT SignalListingFinished(listing.strPath, false);
        return;
    }
    const int lastRow = m_pModel->rowCount() - 1;
    if (lastRow >= 0 && m_pModel->item(lastRow)->data(FileItemRole::Kind).toInt() == FileItemKind::Loading) {
        m_pModel->removeRow(lastRow);
    }
    m_listFolderNames = listing.listFolderNames;
    m_listFileNames = listing.listFileNames;
    if (!m_bLocal) {
        m_listShownRows = listing.listRows;
    }
    m_pendingListing = listing;
    AppendSlice(m_iGeneration);
}

void FilePanelListing::AppendSlice(quint64 generation)
{
    if (generation != m_iGeneration) {
        return; // a newer listing or a cleared panel took over
    }
    // A sorted panel places each row it gets among all the others, which costs far more
    // per slice than one insertion of the whole listing; only an unsorted panel, where a
    // slice lands behind the rows before it, takes the listing in slices.
    const bool bSliced = m_pHeader->sortIndicatorSection() < 0;
    const QList<FileRowData>& rows = m_pendingListing.listRows;
    QElapsedTimer clock;
    clock.start();
    QList<QStandardItem*> items;
    while (m_iNextRow < rows.size() && (!bSliced || (items.size() < kSliceRows && !clock.hasExpired(kSliceMs)))) {
        items.append(rows.at(m_iNextRow++).CreateItem());
    }
    if (!items.isEmpty()) {
        m_pModel->invisibleRootItem()->appendRows(items);
    }
    if (m_iNextRow < rows.size()) {
        QTimer::singleShot(0, this, [this, generation] { AppendSlice(generation); });
        return;
    }
    const QString path = m_pendingListing.strPath;
    const bool bOk = m_pendingListing.bOk;
    StopAppending();
    SelectLater(&m_strPendingFolderName, QString());
    SelectLater(&m_strPendingLocateName, QStringLiteral("上传文件到机床m_strPendingLocateName: %1"));
    Q_EMIT SignalListingFinished(path, bOk);
}

void FilePanelListing::SelectLater(QString* pending, const QString& logFormat)
{
    if (pending->isEmpty()) {
        return;
    }
    QTimer::singleShot(0, this, [this, pending, logFormat] {
        if (!logFormat.isEmpty()) {
            CDebugLog::AddLog(logFormat.arg(*pending));
        }
        const QString name = *pending;
        pending->clear();
        Q_EMIT SignalSelect(name);
    });
}
