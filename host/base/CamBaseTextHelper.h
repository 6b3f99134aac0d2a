#pragma once

#include "KorvBaseExport.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMutex>
#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <memory>

class QSettings;

// Settings, paths and text services of the host. Safe to call from any thread
// (FTP tasks read their settings from thread-pool tasks).
//
// Settings of type SettingTypeLocal live in an INI file, KorvPaths::SettingsFile()
// (under KORV_CONFIG_DIR when set). FTP keys read by the FTP tasks (type 1):
//   "Ftp/User"              string, default "anonymous"
//   "Ftp/Password"          string, default "korv@"
//   "Ftp/PortMapping"       int, the port used when a task URL names port 21 (or none); default 21
//   "Ftp/ConnectTimeoutMs"  int, TCP connect, greeting and login together; default 5000
//   "Ftp/ResponseTimeoutMs" int, longest wait for a server reply or a stalled transfer; default 15000
//   "Ftp/NameEncoding/<ip>" string, file-name encoding of that machine: UTF-8 (default), GBK, Shift_JIS
// Other machine service ports (MachinePortMap):
//   "PortMap/30001", "PortMap/5002", "PortMap/30002"  int, the port used instead of the well-known one
class KORVBASE_EXPORT CamBaseTextHelper
{
public:
    enum SettingType
    {
        SettingTypeSession = 0, // kept in memory for this run only
        SettingTypeLocal = 1,   // persisted in the settings INI file
    };

    static CamBaseTextHelper* instance();

    QVariant GetLocalSettingCache(int type, const QString& key, QVariant defaultValue = QVariant());
    // bSyncNow writes the INI file at once; otherwise it is written on the next sync or at exit.
    void SetLocalSettingCache(int type, const QString& key, const QVariant& value, bool bSyncNow);

    // KorvPaths::ConfigDir() + "/test.ini": optional test overrides such as "TimerInterval".
    QString GetLocalTestIniFilePath() const;
    // KORV_RESOURCE_DIR when set, else "<application dir>/resources" when that exists (a build
    // tree), else the installed data folder relative to the application.
    QString GetLocalResourcePath() const;
    // Follows the language the host applied with KorvLanguage (Chinese until it chose).
    bool AppInChineseEnvironment() const;
    // The root element's children become keys; elements with children become objects,
    // repeated names become arrays, leaves become strings, attributes become "@name" keys.
    QJsonObject ConvertXmlToJson(const QByteArray& xml) const;

private:
    CamBaseTextHelper();
    ~CamBaseTextHelper();
    Q_DISABLE_COPY_MOVE(CamBaseTextHelper)

    QSettings& Settings();

    QMutex m_mutex;
    QVariantMap m_mapSession;
    std::unique_ptr<QSettings> m_pSettings;
};
