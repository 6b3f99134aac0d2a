#include "FileTreeView.h"

#include "CFileHeaderView.h"
#include "CFileTreeDelegate.h"
#include "CTimeTooltipDelegate.h"
#include "FileClipboardPayload.h"
#include "FileItemRoles.h"
#include "KorvFonts.h"

#include <QDrag>
#include <QIcon>
#include <QPainter>
#include <algorithm>

namespace {
constexpr int kIconLeft = 5;
constexpr int kIconSize = 16;
constexpr int kNameGap = 6;
constexpr int kCellPadding = 4;

const char* KindIconPath(int kind)
{
    switch (kind) {
    case FileItemKind::File:
        return ":/icon/filepanel/fileFormat.png";
    case FileItemKind::Desktop:
        return ":/icon/filepanel/desktop.png";
    case FileItemKind::Downloads:
        return ":/icon/filepanel/download.png";
    case FileItemKind::Documents:
        return ":/icon/filepanel/txt.png";
    default:
        return ":/icon/filepanel/open.png";
    }
}
} // namespace

FileTreeView::FileTreeView(bool bLocal, QWidget* parent) : QTreeView(parent), m_bLocal(bLocal)
{
    m_pHeader = new CFileHeaderView(Qt::Horizontal, this);
    m_pHeader->setSectionsClickable(true);
    m_pHeader->setHighlightSections(false);
    setHeader(m_pHeader);

    m_pNameDelegate = new CFileTreeDelegate(this);
    m_pTimeDelegate = new CTimeTooltipDelegate(this);
    setItemDelegateForColumn(0, m_pNameDelegate);
    setItemDelegateForColumn(1, m_pTimeDelegate);
    connect(m_pNameDelegate, &CFileTreeDelegate::SignalDataChanged, this, &FileTreeView::SignalDataChanged);

    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setTextElideMode(Qt::ElideRight);
    // Renames start from the panel's menu, never from a click.
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setFont(FontCnMedium_15);
    setStyleSheet(QStringLiteral(
        "QTreeView {    border: 1px solid #c0c0c0;    background-color: white;    show-decoration-selected: 1;"
        "    outline:none;    padding-left:2px;    padding-right:2px;    padding-top:2px;    padding-bottom:10px;}"
        // Keyboard focus must be seen: the focused list gets the accent border.
        "QTreeView:focus {border: 2px solid #368bd4;}"
        "QScrollBar:vertical {background: transparent; width: 5px; margin: 0px;}"
        "QScrollBar::handle:vertical {background: rgba(0, 0, 0, 60); border-radius: 2px; min-height: 24px;}"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical {height: 0px;}"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical {background: transparent;}"));
}

void FileTreeView::setModel(QAbstractItemModel* model)
{
    QTreeView::setModel(model);
    m_pHeader->setSectionsClickable(true);
}

QPixmap FileTreeView::KindPixmap(const QModelIndex& index) const
{
    // A row may bring its own icon (a volume's drive type); otherwise the kind decides.
    const QVariant decoration = index.data(Qt::DecorationRole);
    if (decoration.canConvert<QIcon>()) {
        const QIcon icon = decoration.value<QIcon>();
        if (!icon.isNull()) {
            return icon.pixmap(kIconSize, kIconSize);
        }
    }
    return QIcon(QString::fromLatin1(KindIconPath(index.data(FileItemRole::Kind).toInt())))
        .pixmap(kIconSize, kIconSize);
}

QString FileTreeView::TypeCellText(const QModelIndex& index) const
{
    if (index.data(FileItemRole::QuickAccess).toBool()) {
        return tr("快捷方式");
    }
    // Folders carry "文件夹" (or a volume's drive type) in the type role already.
    return index.data(FileItemRole::Type).toString();
}

void FileTreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (!index.isValid()) {
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    QTreeView::drawRow(painter, option, index);

    const QModelIndex item = index.sibling(index.row(), 0);
    const int kind = item.data(FileItemRole::Kind).toInt();
    const QRect rowRect = option.rect;
    painter->setFont(FontCnMedium_15);
    const QFontMetrics metrics(FontCnMedium_15);

    const int nameLeft = columnViewportPosition(0);
    const int nameWidth = columnWidth(0);
    int textLeft = nameLeft + kIconLeft;
    if (kind != FileItemKind::Loading) {
        const int iconTop = rowRect.top() + std::max(0, (rowRect.height() - 15) / 2);
        painter->drawPixmap(QRect(textLeft, iconTop, kIconSize, kIconSize), KindPixmap(item));
        textLeft += kIconSize + kNameGap;
    }
    const QRect nameRect(textLeft, rowRect.top(), nameLeft + nameWidth - textLeft - kCellPadding, rowRect.height());
    // The text colours are for plain rows; on the selection's fill they would not read.
    const bool bSelected = selectionModel() && selectionModel()->isRowSelected(index.row(), index.parent());
    const QColor selectedText = option.palette.color(QPalette::HighlightedText);
    painter->setPen(bSelected ? selectedText : QColor(51, 51, 51));
    painter->drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(item.data(FileItemRole::Name).toString(), Qt::ElideRight, nameRect.width()));

    if (kind != FileItemKind::Loading) {
        const QString cells[] = {item.data(FileItemRole::Time).toString(), TypeCellText(item),
                                 item.data(FileItemRole::SizeText).toString()};
        painter->setPen(bSelected ? selectedText : QColor(102, 102, 102));
        for (int column = 1; column <= 3; ++column) {
            if (isColumnHidden(column)) {
                continue;
            }
            const QRect cell(columnViewportPosition(column) + kCellPadding, rowRect.top(),
                             columnWidth(column) - 2 * kCellPadding, rowRect.height());
            painter->drawText(cell, Qt::AlignCenter,
                              metrics.elidedText(cells[column - 1], Qt::ElideRight, cell.width()));
        }
    }
    painter->restore();
}

void FileTreeView::startDrag(Qt::DropActions supportedActions)
{
    // The same payload as a copy, so that a drop goes through the checks of a paste.
    FileClipboardPayload payload;
    payload.strOperation = QStringLiteral("copy");
    payload.iSourceType = m_bLocal ? FileClipboardPayload::SourceLocal : FileClipboardPayload::SourceMachine;
    const QModelIndexList rows = selectionModel() ? selectionModel()->selectedRows(0) : QModelIndexList();
    for (const QModelIndex& row : rows) {
        const int kind = row.data(FileItemRole::Kind).toInt();
        if (row.data(FileItemRole::QuickAccess).toBool() ||
            (kind != FileItemKind::File && kind != FileItemKind::Folder)) {
            continue;
        }
        payload.listFiles.append(
            {row.data(FileItemRole::FullPath).toString(), row.data(FileItemRole::Name).toString()});
    }
    if (payload.listFiles.isEmpty()) {
        return;
    }
    auto* drag = new QDrag(this);
    drag->setMimeData(payload.ToMimeData());
    drag->setPixmap(KindPixmap(rows.first()));
    drag->exec(supportedActions, Qt::CopyAction);
}
