#include "CamBaseTextHelper.h"

#include "KorvLanguage.h"
#include "KorvPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QMutexLocker>
#include <QSettings>
#include <QXmlStreamReader>

namespace {
void InsertJsonValue(QJsonObject& object, const QString& key, const QJsonValue& value)
{
    if (!object.contains(key)) {
        object.insert(key, value);
        return;
    }
    QJsonValue existing = object.value(key);
    QJsonArray array = existing.isArray() ? existing.toArray() : QJsonArray{existing};
    array.append(value);
    object.insert(key, array);
}

// Reads the element the reader stands on; returns a string for a leaf, an object otherwise.
QJsonValue ReadElement(QXmlStreamReader& reader)
{
    QJsonObject object;
    for (const QXmlStreamAttribute& attribute : reader.attributes())
        object.insert(QLatin1Char('@') + attribute.name().toString(), attribute.value().toString());
    QString text;
    bool bHasChildren = false;
    while (reader.readNext() != QXmlStreamReader::Invalid) {
        if (reader.isEndElement())
            break;
        if (reader.isStartElement()) {
            bHasChildren = true;
            const QString name = reader.name().toString();
            InsertJsonValue(object, name, ReadElement(reader));
        } else if (reader.isCharacters()) {
            text += reader.text();
        }
    }
    if (!bHasChildren && object.isEmpty())
        return text.trimmed();
    return object;
}
} // namespace

CamBaseTextHelper* CamBaseTextHelper::instance()
{
    static CamBaseTextHelper helper;
    return &helper;
}

CamBaseTextHelper::CamBaseTextHelper() = default;
CamBaseTextHelper::~CamBaseTextHelper() = default;

QSettings& CamBaseTextHelper::Settings()
{
    // Re-opened when KORV_CONFIG_DIR moved, so each test can have its own folder.
    const QString path = KorvPaths::SettingsFile();
    if (!m_pSettings || m_pSettings->fileName() != path)
        m_pSettings = std::make_unique<QSettings>(path, QSettings::IniFormat);
    return *m_pSettings;
}

QVariant CamBaseTextHelper::GetLocalSettingCache(int type, const QString& key, QVariant defaultValue)
{
    QMutexLocker locker(&m_mutex);
    if (type == SettingTypeSession)
        return m_mapSession.value(key, defaultValue);
    return Settings().value(key, defaultValue);
}

void CamBaseTextHelper::SetLocalSettingCache(int type, const QString& key, const QVariant& value, bool bSyncNow)
{
    QMutexLocker locker(&m_mutex);
    if (type == SettingTypeSession) {
        m_mapSession.insert(key, value);
        return;
    }
    QSettings& settings = Settings();
    settings.setValue(key, value);
    if (bSyncNow)
        settings.sync();
}

QString CamBaseTextHelper::GetLocalTestIniFilePath() const
{
    return KorvPaths::ConfigDir() + QStringLiteral("/test.ini");
}

QString CamBaseTextHelper::GetLocalResourcePath() const
{
    const QString dir = qEnvironmentVariable("KORV_RESOURCE_DIR");
    if (!dir.isEmpty())
        return dir;
    // A build tree keeps the resources beside the executable, an installed tree in its data folder.
    const QString appDir = QCoreApplication::applicationDirPath();
    const QString beside = appDir + QStringLiteral("/resources");
    if (QFileInfo(beside).isDir())
        return beside;
    return QDir::cleanPath(appDir + QStringLiteral("/" KORV_RESOURCEDIR_FROM_BINDIR));
}

bool CamBaseTextHelper::AppInChineseEnvironment() const
{
    return KorvLanguage::Current() == QLatin1String("zh");
}

QJsonObject CamBaseTextHelper::ConvertXmlToJson(const QByteArray& xml) const
{
    QXmlStreamReader reader(xml);
    while (!reader.atEnd() && !reader.isStartElement())
        reader.readNext();
    if (!reader.isStartElement())
        return {};
    const QJsonValue root = ReadElement(reader);
    if (reader.hasError())
        return {};
    return root.toObject();
}
