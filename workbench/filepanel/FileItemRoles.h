#pragma once

#include <Qt>

// Every file row is one item in column 0 carrying all of its data in these roles;
// the view paints the other columns from them.
namespace FileItemRole {
enum Role
{
    Type = Qt::UserRole + 1,     // "文件夹", or "." + suffix, or empty
    Name = Qt::UserRole + 2,     // file name ("加载中..." on the placeholder)
    SizeText = Qt::UserRole + 3, // size formatted by FileSizeText
    Size = Qt::UserRole + 4,     // bytes, qint64
    Time = Qt::UserRole + 5,     // "yyyy-MM-dd hh:mm:ss", local time
    Kind = Qt::UserRole + 6,     // FileItemKind
    FullPath = Qt::UserRole + 7, // directory joined with the name
    QuickAccess = Qt::UserRole + 8,
    NameSortKey = Qt::UserRole + 9, // FileNameSortKey built with the listing, off the GUI thread
};
} // namespace FileItemRole

namespace FileItemKind {
enum Kind
{
    Folder = 0,
    File = 1,
    Desktop = 2,
    Downloads = 3,
    Documents = 4,
    Loading = 99,
};
} // namespace FileItemKind
