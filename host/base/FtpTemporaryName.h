#pragma once

#include "FtpNameRules.h"
#include "KorvBaseExport.h"

#include <QString>
#include <QStringList>

// The names an upload is written under before it replaces its target, and under which an old
// program is set aside: within the machine's name rules, unlike every name in the folder and,
// where the rules leave room, carrying this installation's marker, so that a clean-up of
// leftovers touches only files that are ours.
class KORVBASE_EXPORT FtpTemporaryName
{
public:
    // A new name beside `targetName` in a folder holding `existing` (compared without regard to
    // case). The preferred form is hidden: ".<target>.<marker><token>.part"; tighter rules get
    // "<marker><token>.tmp", then shorter forms, in upper case where lower case is not allowed.
    // Without rules the caller need not list the folder: the target's name, the marker and six
    // random characters do not meet another file's name.
    static QString Make(const QString& targetName, const FtpNameRules& rules, const QString& marker,
                        const QStringList& existing = {});
    // Whether `name` is a temporary name made with `marker`.
    static bool IsOurs(const QString& name, const QString& marker);
    // This installation's marker: four lower-case letters and digits, made and stored in the host
    // settings on first use. GUI thread.
    static QString InstallationMarker();
};
