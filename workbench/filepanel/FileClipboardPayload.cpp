#include "FileClipboardPayload.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QUrl>

const QString FileClipboardPayload::MimeType = QStringLiteral("MimeDataCopy");

QStringList FileClipboardPayload::FilePaths() const
{
    QStringList paths;
    for (const Entry& entry : listFiles)
        paths.append(entry.strFilePath);
    return paths;
}

QByteArray FileClipboardPayload::ToJson() const
{
    QJsonArray files;
    for (const Entry& entry : listFiles)
        files.append(QJsonObject{{QStringLiteral("filePath"), entry.strFilePath},
                                 {QStringLiteral("fileName"), entry.strFileName}});
    const QJsonObject object{{QStringLiteral("operation"), strOperation},
                             {QStringLiteral("sourceType"), iSourceType},
                             {QStringLiteral("files"), files}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QMimeData* FileClipboardPayload::ToMimeData() const
{
    auto* mimeData = new QMimeData;
    // Machine paths are no local files: as file URLs a desktop file manager would paste
    // whatever local file happens to have the same path.
    if (iSourceType == SourceLocal) {
        QList<QUrl> urls;
        for (const Entry& entry : listFiles)
            urls.append(QUrl::fromLocalFile(entry.strFilePath));
        mimeData->setUrls(urls);
    }
    mimeData->setText(strOperation);
    mimeData->setData(MimeType, ToJson());
    return mimeData;
}

std::optional<FileClipboardPayload> FileClipboardPayload::FromMimeData(const QMimeData* mimeData)
{
    if (!mimeData)
        return std::nullopt;
    FileClipboardPayload payload;
    if (mimeData->hasFormat(MimeType)) {
        const QJsonObject object = QJsonDocument::fromJson(mimeData->data(MimeType)).object();
        payload.strOperation = object.value(QStringLiteral("operation")).toString();
        payload.iSourceType = object.value(QStringLiteral("sourceType")).toInt();
        for (const QJsonValue& value : object.value(QStringLiteral("files")).toArray()) {
            const QJsonObject file = value.toObject();
            const QString path = file.value(QStringLiteral("filePath")).toString();
            if (!path.isEmpty())
                payload.listFiles.append({path, file.value(QStringLiteral("fileName")).toString()});
        }
        const bool bKnown = (payload.iSourceType == SourceLocal || payload.iSourceType == SourceMachine) &&
                            (payload.strOperation == QLatin1String("copy") || payload.IsCut());
        if (!bKnown || payload.listFiles.isEmpty())
            return std::nullopt;
        return payload;
    }
    payload.strOperation = QStringLiteral("copy");
    for (const QUrl& url : mimeData->urls()) {
        if (!url.isLocalFile())
            return std::nullopt; // a web link is nothing a panel can take
        const QString path = url.toLocalFile();
        payload.listFiles.append({path, QFileInfo(path).fileName()});
    }
    if (payload.listFiles.isEmpty())
        return std::nullopt;
    return payload;
}
