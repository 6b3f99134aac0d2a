#include "TestTempDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TestTempDir::TestTempDir() : m_dir(QDir::tempPath() + QStringLiteral("/korv-test-XXXXXX")) {}

QString TestTempDir::CreateFile(const QString& relative, const QByteArray& data) const
{
    const QString path = FilePath(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        return {};
    return path;
}

QString TestTempDir::CreateDir(const QString& relative) const
{
    const QString path = FilePath(relative);
    return QDir().mkpath(path) ? path : QString();
}
