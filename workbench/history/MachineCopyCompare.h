#pragma once

#include "MachineEndpoint.h"

#include <QString>
#include <functional>

class MachineFileService;
class QWidget;

// Compares a local file with the machine's current copy of a program: the copy is fetched
// through the funnel (nothing is written on the machine) and lives as long as the dialog.
class MachineCopyCompare final
{
public:
    // `closed` runs once the dialog closed, or once the copy could not be fetched.
    static void Open(QWidget* parent, MachineFileService* files, const MachineEndpoint& endpoint,
                     const QString& leftTitle, const QString& leftPath, const QString& machinePath,
                     std::function<void()> closed = {});
};
