#pragma once

#include "KorvBaseExport.h"

#include <QMap>
#include <QString>

// Names and pictures of tool types. The table is "ToolBit/ToolBitTypes.json" under the
// resource path when present, else the copy built into the library: a "default" list of
// {type, name, image} and a "PB01" list whose entries replace the defaults for machines of
// that family. Image paths are relative to the resource path. GUI thread only.
class KORVBASE_EXPORT CamBaseToolBitHelper
{
public:
    static CamBaseToolBitHelper* instance();

    // True for the PB01 family of machines.
    void SetConnectMachineType(bool bPb01);
    QString GetToolNameByType(int type) const;
    // Absolute path of the tool's picture, or empty when the type or the file is unknown.
    QString GetToolManagementShowImageByType(int type) const;
    // Reads the table again (the resource path may have changed).
    void Reload();

private:
    struct ToolBit
    {
        QString name;
        QString nameEnglish; // "name_en" of the data file; the Chinese name when it has none
        QString image;
    };

    CamBaseToolBitHelper();
    Q_DISABLE_COPY_MOVE(CamBaseToolBitHelper)
    ToolBit Find(int type) const;

    bool m_bPb01 = false;
    QMap<int, ToolBit> m_mapDefault;
    QMap<int, ToolBit> m_mapPb01;
};
