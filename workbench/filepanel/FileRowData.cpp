#include "FileRowData.h"

#include "FileItemRoles.h"
#include "FileSizeText.h"

#include <QApplication>
#include <QCoreApplication>
#include <QStandardItem>
#include <QStyle>

namespace {
QString FolderTypeText()
{
    return QCoreApplication::translate("FileSelectPanel", "文件夹");
}

QString FileTypeText(const QString& name)
{
    const QString suffix = QFileInfo(name).suffix();
    return suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
}
} // namespace

QString FileRowData::JoinPath(const QString& directory, const QString& name)
{
    if (directory.endsWith(QLatin1Char('/'))) {
        return directory + name;
    }
    return directory + QLatin1Char('/') + name;
}

QString FileRowData::TimeText(const QDateTime& time)
{
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) : QString();
}

FileRowData FileRowData::FromLocal(const QFileInfo& info, const QString& fullPath)
{
    FileRowData row;
    row.strName = info.fileName();
    row.strFullPath = fullPath;
    row.strTime = TimeText(info.lastModified());
    if (info.isDir()) {
        row.iKind = FileItemKind::Folder;
        row.strType = FolderTypeText();
    } else {
        row.iKind = FileItemKind::File;
        row.strType = FileTypeText(row.strName);
        row.nSize = info.size();
        row.strSizeText = FileSizeText::Format(row.nSize);
    }
    return row;
}

FileRowData FileRowData::FromFtp(const FtpFileInfo& info, const QString& directory)
{
    FileRowData row;
    row.strName = info.name;
    row.strFullPath = JoinPath(directory, info.name);
    row.strTime = TimeText(info.time);
    if (info.isDir()) {
        row.iKind = FileItemKind::Folder;
        row.strType = FolderTypeText();
    } else {
        row.iKind = FileItemKind::File;
        row.strType = FileTypeText(info.name);
        row.nSize = info.size;
        row.strSizeText = FileSizeText::Format(info.size);
    }
    return row;
}

FileRowData FileRowData::QuickAccess(int kind, const QString& name, const QString& path)
{
    FileRowData row;
    row.iKind = kind;
    row.strName = name;
    row.strType = FolderTypeText();
    row.strFullPath = path;
    row.strTime = TimeText(QFileInfo(path).lastModified());
    row.bQuickAccess = true;
    return row;
}

FileRowData FileRowData::Placeholder()
{
    FileRowData row;
    row.iKind = FileItemKind::Loading;
    row.strName = QCoreApplication::translate("FileSelectPanel", "加载中...");
    return row;
}

QStandardItem* FileRowData::CreateItem() const
{
    auto* item = new QStandardItem;
    item->setData(strType, FileItemRole::Type);
    item->setData(strName, FileItemRole::Name);
    item->setData(strSizeText, FileItemRole::SizeText);
    item->setData(nSize, FileItemRole::Size);
    item->setData(strTime, FileItemRole::Time);
    item->setData(iKind, FileItemRole::Kind);
    item->setData(strFullPath, FileItemRole::FullPath);
    item->setData(bQuickAccess, FileItemRole::QuickAccess);
    if (nameKey) {
        item->setData(QVariant::fromValue(FileNameSortKey{strName, nameKey}), FileItemRole::NameSortKey);
    }
    if (iStandardIcon >= 0) {
        item->setData(QApplication::style()->standardIcon(static_cast<QStyle::StandardPixmap>(iStandardIcon)),
                      Qt::DecorationRole);
    }
    // Only real entries can be renamed or dragged.
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (iKind == FileItemKind::Folder || iKind == FileItemKind::File) {
        flags |= Qt::ItemIsEditable | Qt::ItemIsDragEnabled;
    }
    item->setFlags(flags);
    return item;
}
