#include "HistoryStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// The kept program copies on disk: what retention drops, that equal copies share one file, and
// that a store it cannot use is reported and left alone.
class TestHistoryStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    // Adds `bytes` as a version of `path`, saved `minute` minutes after a fixed start.
    static HistoryVersion Keep(HistoryStore& store, const QString& path, const QByteArray& bytes, int minute)
    {
        const QString incoming = store.IncomingFolder() + QStringLiteral("/fetched");
        QFile file(incoming);
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        file.close();
        HistoryVersion version;
        version.strMachinePath = path;
        version.time = QDateTime(QDate(2026, 1, 1), QTime(8, 0)).addSecs(60 * minute);
        version.nSize = bytes.size();
        version.strHash = HistoryStore::StoreContent(store.Folder(), incoming);
        [&] { QVERIFY(store.Add(version)); }();
        return version;
    }

    static QByteArray Content(const HistoryStore& store, const HistoryVersion& version)
    {
        QFile file(store.ContentPath(version.strHash));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static int ContentFiles(const HistoryStore& store)
    {
        return int(QDir(store.Folder() + QStringLiteral("/content")).entryList(QDir::Files).size());
    }

private Q_SLOTS:
    void retentionDropsTheOldestBeyondCountThenSize()
    {
        HistoryStore store(m_dir.filePath(QStringLiteral("count")));
        QVERIFY(store.Open());
        for (int i = 0; i < 5; ++i)
            Keep(store, QStringLiteral("/a.nc"), QByteArray(100, char('a' + i)), i);
        Keep(store, QStringLiteral("/b.nc"), QByteArray(300, 'z'), 10);

        QVERIFY(store.Prune(3, 1 << 20));
        QList<HistoryVersion> a = store.Versions(QStringLiteral("/a.nc"));
        QCOMPARE(a.size(), 3);
        QCOMPARE(Content(store, a.first()), QByteArray(100, 'e'));
        QCOMPARE(Content(store, a.last()), QByteArray(100, 'c'));
        QCOMPARE(ContentFiles(store), 4);

        // 600 bytes kept, 450 allowed: the two oldest go, whichever program they belong to.
        QVERIFY(store.Prune(3, 450));
        a = store.Versions(QStringLiteral("/a.nc"));
        QCOMPARE(a.size(), 1);
        QCOMPARE(Content(store, a.first()), QByteArray(100, 'e'));
        QCOMPARE(store.Versions(QStringLiteral("/b.nc")).size(), 1);
        QCOMPARE(ContentFiles(store), 2);
        QCOMPARE(store.Programs().size(), 2);
    }

    void equalCopiesShareOneFileUntilTheLastGoes()
    {
        HistoryStore store(m_dir.filePath(QStringLiteral("same")));
        QVERIFY(store.Open());
        const HistoryVersion first = Keep(store, QStringLiteral("/p.nc"), "G0 X1\n", 0);
        const HistoryVersion second = Keep(store, QStringLiteral("/q.nc"), "G0 X1\n", 1);
        QCOMPARE(first.strHash, second.strHash);
        QCOMPARE(ContentFiles(store), 1);
        QVERIFY(QDir(store.IncomingFolder()).isEmpty());
        // The total counts the shared copy once: both versions fit in its size.
        QVERIFY(store.Prune(1, 6));
        QCOMPARE(store.Programs().size(), 2);
        QVERIFY(store.Prune(1, 0));
        QCOMPARE(store.Programs().size(), 0);
        QCOMPARE(ContentFiles(store), 0);
    }

    void damagedOrHeldStoreIsReportedAndLeftAlone()
    {
        const QString folder = m_dir.filePath(QStringLiteral("damaged"));
        QDir().mkpath(folder);
        const QByteArray garbage(4096, '\x5a');
        {
            QFile index(folder + QStringLiteral("/index.sqlite"));
            QVERIFY(index.open(QIODevice::WriteOnly));
            index.write(garbage);
        }
        {
            HistoryStore damaged(folder);
            QVERIFY(!damaged.Open());
            QVERIFY(damaged.ErrorText().contains(QStringLiteral("损坏")));
        }
        QFile index(folder + QStringLiteral("/index.sqlite"));
        QVERIFY(index.open(QIODevice::ReadOnly));
        QCOMPARE(index.readAll(), garbage);

        // A second workbench on the same machine's history is turned away while the first holds it.
        HistoryStore first(m_dir.filePath(QStringLiteral("held")));
        QVERIFY(first.Open());
        Keep(first, QStringLiteral("/a.nc"), "G1 X2\n", 0);
        HistoryStore second(first.Folder());
        QVERIFY(!second.Open());
        QVERIFY(second.ErrorText().contains(QStringLiteral("另一个")));
        QCOMPARE(first.Versions(QStringLiteral("/a.nc")).size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestHistoryStore)
#include "tst_HistoryStore.moc"
