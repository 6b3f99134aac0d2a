#pragma once

#include <QCollator>
#include <QMetaType>
#include <QString>
#include <optional>

// The collation key of a row's name, built once per listing where the entries are
// read. The name it was built from travels along, so a renamed row is recognised
// and gets a fresh key.
struct FileNameSortKey
{
    QString strName;
    std::optional<QCollatorSortKey> key;

    // The collator of file names: natural order (file2 before file10) in the user's
    // locale. The C locale collates by code point and ignores numeric mode, so a
    // process without a locale gets English rules. One per thread: ICU collators
    // must not be shared between threads.
    static QCollator CreateCollator();
};
Q_DECLARE_METATYPE(FileNameSortKey)
