#include "LocalTrash.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

bool LocalTrash::Move(const QString& path, QString* error)
{
    // Without the data folder Qt 6.4 reports success and drops the file into "./files" of
    // the working folder instead of the trash.
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (dataFolder.isEmpty() || !QDir().mkpath(dataFolder)) {
        *error = QStringLiteral("no data folder for the trash: %1").arg(dataFolder);
        return false;
    }
    QFile file(path);
    if (!file.moveToTrash()) {
        *error = QStringLiteral("%1 %2").arg(int(file.error())).arg(file.errorString());
        return false;
    }
    return true;
}
