#include "KorvLanguage.h"

#include <QCoreApplication>
#include <QLocale>
#include <QPointer>
#include <QTranslator>
#include <atomic>

namespace {
std::atomic<bool> g_bEnglish{false};
QPointer<QTranslator> g_pTranslator;
} // namespace

QString KorvLanguage::SystemLanguage()
{
    // uiLanguages follows LANGUAGE, LC_ALL, LC_MESSAGES and LANG, in that order.
    const QStringList languages = QLocale::system().uiLanguages();
    const bool bChinese = !languages.isEmpty() && languages.first().startsWith(QLatin1String("zh"));
    return bChinese ? QStringLiteral("zh") : QStringLiteral("en");
}

bool KorvLanguage::IsSupported(const QString& language)
{
    return language == QLatin1String("zh") || language == QLatin1String("en");
}

bool KorvLanguage::Apply(const QString& language)
{
    if (!IsSupported(language) || !QCoreApplication::instance())
        return false;
    if (g_pTranslator) {
        QCoreApplication::removeTranslator(g_pTranslator);
        delete g_pTranslator;
    }
    const bool bEnglish = language == QLatin1String("en");
    if (bEnglish) {
        auto* translator = new QTranslator(QCoreApplication::instance());
        if (!translator->load(QStringLiteral(":/i18n/korv_en.qm"))) {
            delete translator;
            return false;
        }
        QCoreApplication::installTranslator(translator);
        g_pTranslator = translator;
    }
    g_bEnglish = bEnglish;
    return true;
}

QString KorvLanguage::Current()
{
    return g_bEnglish ? QStringLiteral("en") : QStringLiteral("zh");
}
