#include "MachinePath.h"

QString MachinePath::Name(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString MachinePath::Folder(const QString& path)
{
    const int cut = path.lastIndexOf(QLatin1Char('/'));
    return cut <= 0 ? QStringLiteral("/") : path.left(cut);
}
