#include "CamBaseTextHelper.h"
#include "KorvLanguage.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

// The English interface: switching languages, and a catalogue that covers every text of the sources.
class TestKorvLanguage : public QObject
{
    Q_OBJECT

private slots:
    void switchesBetweenChineseAndEnglish();
    void everyTextOfTheSourcesHasAnEnglishTranslation();
};

void TestKorvLanguage::switchesBetweenChineseAndEnglish()
{
    CamBaseTextHelper* helper = CamBaseTextHelper::instance();
    // Nothing applied yet: the texts as written.
    QVERIFY(helper->AppInChineseEnvironment());
    QCOMPARE(QCoreApplication::translate("TransList", "等待中"), QStringLiteral("等待中"));

    QVERIFY(KorvLanguage::Apply(QStringLiteral("en")));
    QVERIFY(!helper->AppInChineseEnvironment());
    QCOMPARE(QCoreApplication::translate("TransList", "等待中"), QStringLiteral("Waiting"));
    QCOMPARE(QCoreApplication::translate("MachineStatusWidget", "%1时%2分%3秒"), QStringLiteral("%1 h %2 min %3 s"));

    QVERIFY(KorvLanguage::Apply(QStringLiteral("zh")));
    QVERIFY(helper->AppInChineseEnvironment());
    QCOMPARE(QCoreApplication::translate("TransList", "等待中"), QStringLiteral("等待中"));
    QVERIFY(!KorvLanguage::Apply(QStringLiteral("fr")));
    QCOMPARE(KorvLanguage::Current(), QStringLiteral("zh"));
}

// Runs lupdate over the sources into a copy of the catalogue, so a text added without a
// translation, a translation left in Chinese, or one that lost a placeholder fails here.
void TestKorvLanguage::everyTextOfTheSourcesHasAnEnglishTranslation()
{
    const QString source = qEnvironmentVariable("KORV_SOURCE_DIR");
    QVERIFY(!source.isEmpty());
    QTemporaryDir dir;
    const QString ts = dir.filePath(QStringLiteral("korv_en.ts"));
    QVERIFY(QFile::copy(source + QStringLiteral("/translations/korv_en.ts"), ts));
    QProcess lupdate;
    lupdate.setWorkingDirectory(source);
    lupdate.start(QStringLiteral(LUPDATE_EXE), {"-locations", "none", "-no-obsolete", "host", "workbench", "-ts", ts});
    QVERIFY(lupdate.waitForFinished(60000));
    QCOMPARE(lupdate.exitCode(), 0);

    QFile file(ts);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    const QRegularExpression chinese(QStringLiteral("[\\x{4e00}-\\x{9fff}]"));
    const QRegularExpression placeholder(QStringLiteral("%\\d"));
    const auto placeholders = [&placeholder](const QString& text) {
        QSet<QString> found;
        for (const QRegularExpressionMatch& match : placeholder.globalMatch(text))
            found.insert(match.captured());
        return found;
    };
    QStringList problems;
    QString context;
    QString sourceText;
    int messages = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            sourceText = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            ++messages;
            const bool unfinished = xml.attributes().value(QLatin1String("type")) == QLatin1String("unfinished");
            const QString translation = xml.readElementText();
            const QString where = context + QStringLiteral(": ") + sourceText;
            if (unfinished || translation.isEmpty())
                problems << QStringLiteral("untranslated ") + where;
            else if (translation.contains(chinese))
                problems << QStringLiteral("Chinese left in ") + where;
            else if (placeholders(translation) != placeholders(sourceText))
                problems << QStringLiteral("placeholders differ in ") + where;
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QVERIFY(messages > 200);
    QVERIFY2(problems.isEmpty(), qPrintable(QStringLiteral("run the update_translations target and translate:\n") +
                                            problems.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TestKorvLanguage)
#include "tst_KorvLanguage.moc"
