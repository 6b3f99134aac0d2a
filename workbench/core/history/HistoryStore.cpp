#include "HistoryStore.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace {
const QString IndexName = QStringLiteral("index.sqlite");
const QString ContentName = QStringLiteral("content");

// Texts are marked where they are written, so that lupdate finds them.
QString Translate(const char* text)
{
    return QCoreApplication::translate("HistoryStore", text);
}

HistoryVersion ReadVersion(const QSqlQuery& query)
{
    HistoryVersion version;
    version.nId = query.value(0).toLongLong();
    version.strMachinePath = query.value(1).toString();
    version.time = QDateTime::fromMSecsSinceEpoch(query.value(2).toLongLong());
    version.nSize = query.value(3).toLongLong();
    version.strHash = query.value(4).toString();
    version.eCause = HistoryCause(query.value(5).toInt());
    version.strBy = query.value(6).toString();
    return version;
}

const char* const VersionColumns = "id, path, saved, size, hash, cause, replaced_by";
} // namespace

HistoryStore::HistoryStore(QString folder)
    : m_strFolder(std::move(folder)), m_strConnection(QUuid::createUuid().toString(QUuid::WithoutBraces))
{}

HistoryStore::~HistoryStore()
{
    if (QSqlDatabase::contains(m_strConnection)) {
        QSqlDatabase::database(m_strConnection, false).close();
        QSqlDatabase::removeDatabase(m_strConnection);
    }
}

QString HistoryStore::IncomingFolder() const
{
    return m_strFolder + QStringLiteral("/incoming");
}

QString HistoryStore::ContentPath(const QString& hash) const
{
    return QStringLiteral("%1/%2/%3").arg(m_strFolder, ContentName, hash);
}

bool HistoryStore::Fail(const QString& text)
{
    m_strError = text;
    m_bOpen = false;
    return false;
}

bool HistoryStore::Open()
{
    if (!QDir().mkpath(m_strFolder + QLatin1Char('/') + ContentName) || !QDir().mkpath(IncomingFolder()))
        return Fail(Translate(QT_TRANSLATE_NOOP("HistoryStore", "无法创建历史版本文件夹：%1")).arg(m_strFolder));
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_strConnection);
    db.setDatabaseName(m_strFolder + QLatin1Char('/') + IndexName);
    // A store held by another workbench answers at once instead of stalling the window.
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    if (!db.open())
        return Fail(
            Translate(QT_TRANSLATE_NOOP("HistoryStore", "无法打开历史版本记录：%1")).arg(db.lastError().text()));
    QSqlQuery query(db);
    // Held for as long as the store is open, so that a second workbench cannot interleave its writes.
    query.exec(QStringLiteral("PRAGMA locking_mode = EXCLUSIVE"));
    if (!query.exec(QStringLiteral("BEGIN EXCLUSIVE"))) {
        const QString reason = query.lastError().text();
        if (reason.contains(QLatin1String("locked"), Qt::CaseInsensitive))
            return Fail(Translate(QT_TRANSLATE_NOOP("HistoryStore", "历史版本记录正被另一个运行中的工作台使用：%1"))
                            .arg(m_strFolder));
        return Fail(Translate(QT_TRANSLATE_NOOP("HistoryStore", "历史版本记录已损坏，未作任何改动：%1（%2）"))
                        .arg(m_strFolder, reason));
    }
    const bool bChecked = query.exec(QStringLiteral("PRAGMA quick_check")) && query.next() &&
                          query.value(0).toString() == QLatin1String("ok");
    const bool bReady =
        bChecked &&
        query.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS versions (id INTEGER PRIMARY KEY "
                                  "AUTOINCREMENT, path TEXT NOT NULL, saved INTEGER NOT NULL, size INTEGER "
                                  "NOT NULL, hash TEXT NOT NULL, cause INTEGER NOT NULL, replaced_by TEXT "
                                  "NOT NULL)")) &&
        query.exec(QStringLiteral("CREATE INDEX IF NOT EXISTS versions_path ON versions (path)"));
    if (!bReady) {
        const QString reason = query.lastError().text();
        query.exec(QStringLiteral("ROLLBACK"));
        return Fail(Translate(QT_TRANSLATE_NOOP("HistoryStore", "历史版本记录已损坏，未作任何改动：%1（%2）"))
                        .arg(m_strFolder, reason));
    }
    query.exec(QStringLiteral("COMMIT"));
    m_bOpen = true;
    m_strError.clear();
    return true;
}

QString HistoryStore::StoreContent(const QString& folder, const QString& file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return QString();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&source))
        return QString();
    source.close();
    const QString name = QString::fromLatin1(hash.result().toHex());
    const QString target = QStringLiteral("%1/%2/%3").arg(folder, ContentName, name);
    // Equal content is kept once: the copy already there stands for this one too.
    if (QFile::exists(target)) {
        QFile::remove(file);
        return name;
    }
    return QFile::rename(file, target) ? name : QString();
}

bool HistoryStore::Add(HistoryVersion& version)
{
    if (!m_bOpen || !QFile::exists(ContentPath(version.strHash)))
        return false;
    QSqlQuery query(QSqlDatabase::database(m_strConnection, false));
    query.prepare(QStringLiteral("INSERT INTO versions (path, saved, size, hash, cause, replaced_by) VALUES (?, ?, ?, "
                                 "?, ?, ?)"));
    query.addBindValue(version.strMachinePath);
    query.addBindValue(version.time.toMSecsSinceEpoch());
    query.addBindValue(version.nSize);
    query.addBindValue(version.strHash);
    query.addBindValue(int(version.eCause));
    // A null text would bind as NULL.
    query.addBindValue(version.strBy.isNull() ? QStringLiteral("") : version.strBy);
    if (!query.exec()) {
        m_strError = query.lastError().text();
        return false;
    }
    version.nId = query.lastInsertId().toLongLong();
    return true;
}

QList<HistoryVersion> HistoryStore::Versions(const QString& machinePath) const
{
    QList<HistoryVersion> versions;
    if (!m_bOpen)
        return versions;
    QSqlQuery query(QSqlDatabase::database(m_strConnection, false));
    query.prepare(QStringLiteral("SELECT %1 FROM versions WHERE path = ? ORDER BY saved DESC, id DESC")
                      .arg(QLatin1String(VersionColumns)));
    query.addBindValue(machinePath);
    query.exec();
    while (query.next())
        versions.append(ReadVersion(query));
    return versions;
}

QList<HistoryVersion> HistoryStore::Programs() const
{
    QList<HistoryVersion> programs;
    if (!m_bOpen)
        return programs;
    QSqlQuery query(QSqlDatabase::database(m_strConnection, false));
    query.exec(QStringLiteral("SELECT %1 FROM versions v WHERE id = (SELECT id FROM versions w WHERE w.path = v.path "
                              "ORDER BY saved DESC, id DESC LIMIT 1) ORDER BY path")
                   .arg(QLatin1String(VersionColumns)));
    while (query.next())
        programs.append(ReadVersion(query));
    return programs;
}

bool HistoryStore::RemoveVersion(qint64 id, const QString& hash)
{
    QSqlQuery query(QSqlDatabase::database(m_strConnection, false));
    query.prepare(QStringLiteral("DELETE FROM versions WHERE id = ?"));
    query.addBindValue(id);
    if (!query.exec())
        return false;
    query.prepare(QStringLiteral("SELECT COUNT(*) FROM versions WHERE hash = ?"));
    query.addBindValue(hash);
    if (query.exec() && query.next() && query.value(0).toInt() == 0)
        QFile::remove(ContentPath(hash));
    return true;
}

qint64 HistoryStore::TotalBytes() const
{
    QSqlQuery query(QSqlDatabase::database(m_strConnection, false));
    query.exec(QStringLiteral("SELECT COALESCE(SUM(size), 0) FROM (SELECT hash, MAX(size) AS size FROM versions "
                              "GROUP BY hash)"));
    return query.next() ? query.value(0).toLongLong() : 0;
}

bool HistoryStore::Prune(int keepPerProgram, qint64 totalBytes)
{
    if (!m_bOpen)
        return false;
    QSqlQuery query(QSqlDatabase::database(m_strConnection, false));
    QList<QPair<qint64, QString>> surplus;
    query.prepare(QStringLiteral("SELECT id, hash FROM (SELECT id, hash, ROW_NUMBER() OVER (PARTITION BY path ORDER BY "
                                 "saved DESC, id DESC) AS rank FROM versions) WHERE rank > ?"));
    query.addBindValue(keepPerProgram);
    if (!query.exec())
        return false;
    while (query.next())
        surplus.append({query.value(0).toLongLong(), query.value(1).toString()});
    for (const auto& [id, hash] : std::as_const(surplus)) {
        if (!RemoveVersion(id, hash))
            return false;
    }
    while (TotalBytes() > totalBytes) {
        if (!query.exec(QStringLiteral("SELECT id, hash FROM versions ORDER BY saved, id LIMIT 1")) || !query.next())
            return false;
        if (!RemoveVersion(query.value(0).toLongLong(), query.value(1).toString()))
            return false;
    }
    return true;
}
