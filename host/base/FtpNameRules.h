#pragma once

#include "KorvBaseExport.h"
#include "MachineRecords.h"

#include <QList>
#include <QString>

// What file names a machine's controller takes, from that machine's settings (keys
// "Ftp/NameRules/<ip>/MaxLength", ".../AllowedCharacters", ".../CaseInsensitive", ".../EightDotThree").
// Names are checked before anything is sent, so a refusal names the rule instead of
// leaving the user with the controller's bare 550.
struct KORVBASE_EXPORT FtpNameRules
{
    int maxLength = 0;         // characters of the name, 0: no limit
    QString allowedCharacters; // a regular-expression character class body ("A-Z0-9_."), empty: any
    bool bCaseInsensitive = false;
    bool bEightDotThree = false; // a name of at most 8 characters, optionally a dot and at most 3 more

    static FtpNameRules Load(const QString& ip);
    static void Save(const QString& ip, const FtpNameRules& rules);
    // Empty when the name passes, else a message naming the rule it breaks.
    QString Violation(const QString& name) const;
    // With bCaseInsensitive: a message when the folder holds another entry whose name differs
    // from `name` only in case ("PROG.NC" beside "prog.nc").
    QString Collision(const QString& name, const QList<FtpFileInfo>& entries) const;
    // Whether names beyond the target's own need the folder's listing to be chosen safely.
    bool Restricts() const
    {
        return maxLength > 0 || !allowedCharacters.isEmpty() || bCaseInsensitive || bEightDotThree;
    }
};
