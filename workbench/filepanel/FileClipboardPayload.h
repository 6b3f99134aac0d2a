#pragma once

#include <QList>
#include <QString>
#include <optional>

class QMimeData;

// Files copied or cut in a panel, as they travel through the system clipboard and in drags:
// file URLs, the operation word as text, and the "MimeDataCopy" JSON that says which side
// the files are on.
struct FileClipboardPayload
{
    enum Source
    {
        SourceLocal = 1,
        SourceMachine = 2,
    };
    struct Entry
    {
        QString strFilePath;
        QString strFileName;
    };

    QString strOperation; // "copy" or "cut"
    int iSourceType = SourceLocal;
    QList<Entry> listFiles;

    static const QString MimeType;

    bool IsCut() const { return strOperation == QLatin1String("cut"); }
    QStringList FilePaths() const;
    QByteArray ToJson() const;
    QMimeData* ToMimeData() const;
    // Our own payload, or else the local files of a plain URL list (a drop from the desktop,
    // taken as a copy); nothing when the data holds neither.
    static std::optional<FileClipboardPayload> FromMimeData(const QMimeData* mimeData);
};
