#pragma once

#include "KorvBaseExport.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QVariant>

// The host's signal hub between workbenches. GUI thread only.
class KORVBASE_EXPORT CamBaseSignalHelper : public QObject
{
    Q_OBJECT

public:
    static CamBaseSignalHelper* instance();

signals:
    void signalFilePluginAppendLog(QString text, QColor color);
    void signalConnectSuccessToFile(const QString& ip, const QString& sn);
    void signalJumpFileToUploadGCode(QVariant fileData, QString filePath, QString modelName);

private:
    CamBaseSignalHelper() = default;
    Q_DISABLE_COPY_MOVE(CamBaseSignalHelper)
};
