#pragma once

#include "KorvBaseGlobals.h"
#include "MachineRecords.h"
#include "ProtocolVocabulary.h"

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>

// What an upload request is part of: a plain copy, or the upload half of a cut
// (whose local source is deleted once the upload succeeded).
enum OperationType
{
    OperationCopy = 1,
    OperationCut = 2,
};
Q_DECLARE_METATYPE(OperationType)

// Machine program files, by suffix without the dot; tested with case-sensitive containment.
inline const QStringList MachineFileSuffixList = {
    QStringLiteral("nc"),   QStringLiteral("ngc"),   QStringLiteral("tap"), QStringLiteral("mpf"),
    QStringLiteral("txt"),  QStringLiteral("znc"),   QStringLiteral("zv"),  QStringLiteral("zngc"),
    QStringLiteral("zsnc"), QStringLiteral("zconf"), QStringLiteral("tar")};

// Preference among the machine's network links when one machine answers on several.
inline const QMap<QString, int> InterfaceRankMap = {{QString::fromLatin1(g_strInterfaceUsb), 3},
                                                    {QString::fromLatin1(g_strInterfaceEth), 2},
                                                    {QString::fromLatin1(g_strInterfaceWlan), 1}};

inline constexpr char IconArrowRightGreen[] = ":/icon/filepanel/ico_arrow_right_green.png";
inline constexpr char IconArrowLeftBlue[] = ":/icon/filepanel/ico_arrow_left_blue.png";

// Registers every type that the workbench's queued signals carry; safe to call more than once.
void RegisterWorkbenchMetaTypes();
