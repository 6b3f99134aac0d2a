#include "CamBaseToolBitHelper.h"

#include "CamBaseTextHelper.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

CamBaseToolBitHelper* CamBaseToolBitHelper::instance()
{
    static CamBaseToolBitHelper helper;
    return &helper;
}

CamBaseToolBitHelper::CamBaseToolBitHelper()
{
    Reload();
}

void CamBaseToolBitHelper::Reload()
{
    QFile file(CamBaseTextHelper::instance()->GetLocalResourcePath() + QStringLiteral("/ToolBit/ToolBitTypes.json"));
    if (!file.exists())
        file.setFileName(QStringLiteral(":/korvbase/ToolBitTypes.json"));
    QByteArray data;
    if (file.open(QIODevice::ReadOnly))
        data = file.readAll();
    const QJsonObject root = QJsonDocument::fromJson(data).object();
    auto readTable = [&root](const QString& key) {
        QMap<int, ToolBit> table;
        for (const QJsonValue& value : root.value(key).toArray()) {
            const QJsonObject entry = value.toObject();
            const QString name = entry.value(QStringLiteral("name")).toString();
            table.insert(entry.value(QStringLiteral("type")).toInt(),
                         {name, entry.value(QStringLiteral("name_en")).toString(name),
                          entry.value(QStringLiteral("image")).toString()});
        }
        return table;
    };
    m_mapDefault = readTable(QStringLiteral("default"));
    m_mapPb01 = readTable(QStringLiteral("PB01"));
}

void CamBaseToolBitHelper::SetConnectMachineType(bool bPb01)
{
    m_bPb01 = bPb01;
}

CamBaseToolBitHelper::ToolBit CamBaseToolBitHelper::Find(int type) const
{
    if (m_bPb01 && m_mapPb01.contains(type))
        return m_mapPb01.value(type);
    return m_mapDefault.value(type);
}

QString CamBaseToolBitHelper::GetToolNameByType(int type) const
{
    const ToolBit tool = Find(type);
    return CamBaseTextHelper::instance()->AppInChineseEnvironment() ? tool.name : tool.nameEnglish;
}

QString CamBaseToolBitHelper::GetToolManagementShowImageByType(int type) const
{
    const QString image = Find(type).image;
    if (image.isEmpty())
        return {};
    const QString path = CamBaseTextHelper::instance()->GetLocalResourcePath() + QLatin1Char('/') + image;
    return QFile::exists(path) ? path : QString();
}
