#include "OverwriteQuestion.h"

#include <QCoreApplication>
#include <QLocale>

namespace {
// Past this many files the question lists the first ones and counts the rest.
constexpr int MaxListed = 8;

QString NameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}
} // namespace

QString OverwriteQuestion::Describe(qint64 size, const QDateTime& time)
{
    const QString sizeText = size < 0 ? QStringLiteral("?") : QLocale::c().formattedDataSize(size);
    const QString timeText =
        time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")) : QStringLiteral("?");
    return QStringLiteral("%1, %2").arg(sizeText, timeText);
}

QString OverwriteQuestion::Text(const QList<OverwriteEntry>& entries)
{
    QStringList names;
    QStringList details;
    for (const OverwriteEntry& entry : entries) {
        names.append(NameOf(entry.strTarget));
        if (details.size() == MaxListed)
            continue;
        details.append(QCoreApplication::translate("OverwriteQuestion", "%1（%2）\n    新：%3\n    旧：%4")
                           .arg(NameOf(entry.strTarget),
                                entry.bUpload ? QCoreApplication::translate("OverwriteQuestion", "机床")
                                              : QCoreApplication::translate("OverwriteQuestion", "本地"),
                                Describe(entry.nNewSize, entry.newTime), Describe(entry.nOldSize, entry.oldTime)));
    }
    if (entries.size() > MaxListed)
        details.append(
            QCoreApplication::translate("OverwriteQuestion", "……另有 %1 个文件").arg(entries.size() - MaxListed));
    return QCoreApplication::translate("OverwriteQuestion", "目标路径已包含同名文件：%1，是否覆盖？")
               .arg(names.join(QStringLiteral("、"))) +
           QStringLiteral("\n\n") + details.join(QLatin1Char('\n'));
}
