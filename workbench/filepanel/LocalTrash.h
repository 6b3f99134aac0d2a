#pragma once

#include <QString>

// The user's recycle bin (the freedesktop trash on Linux).
class LocalTrash final
{
public:
    LocalTrash() = delete;

    // Moves a file or folder into the trash, where it can be restored from. False, with the
    // reason, when it could not: then it stays where it was and is never deleted outright.
    static bool Move(const QString& path, QString* error);
};
