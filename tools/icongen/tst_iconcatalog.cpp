#include "IconCatalog.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

// The generator must draw exactly the images the workbench's resource file names, and the
// committed images must be the generator's current output.
class TestIconCatalog : public QObject
{
    Q_OBJECT

private:
    static QString resourceDir() { return qEnvironmentVariable("KORV_SOURCE_DIR") + "/workbench/resources"; }

    static QStringList qrcFiles()
    {
        QFile qrc(resourceDir() + "/CamPluginFile.qrc");
        if (!qrc.open(QIODevice::ReadOnly))
            return {};
        QXmlStreamReader xml(&qrc);
        QStringList files;
        while (xml.readNextStartElement() || !xml.atEnd()) {
            if (xml.isStartElement() && xml.name() == QLatin1String("file"))
                files.append(xml.readElementText());
        }
        return files;
    }

private slots:
    void coversTheResourceFileExactly()
    {
        QStringList expected = qrcFiles();
        QVERIFY(!expected.isEmpty());
        QStringList drawn = IconCatalog().paths();
        expected.sort();
        drawn.sort();
        QCOMPARE(drawn, expected);
    }

    void committedImagesMatchTheGenerator()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QStringList written = IconCatalog().writeAll(dir.path());
        for (const QString& file : written) {
            const QString relative = QDir(dir.path()).relativeFilePath(file);
            QImageReader fresh(file);
            QImageReader committed(resourceDir() + '/' + relative);
            QCOMPARE(committed.imageCount(), fresh.imageCount());
            for (QImage a = fresh.read(), b = committed.read(); !a.isNull() || !b.isNull();
                 a = fresh.read(), b = committed.read()) {
                if (a.convertToFormat(QImage::Format_ARGB32) != b.convertToFormat(QImage::Format_ARGB32))
                    QFAIL(qPrintable(relative + " differs from the generator's output; run korv-icons"));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestIconCatalog)
#include "tst_iconcatalog.moc"
