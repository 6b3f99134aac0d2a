#pragma once

#include "KorvView3DExport.h"
#include "MachineModel.h"

#include <optional>

// Reads the machine model file (an INI text; the format is in docs/machine-model.md).
// Any mistake rejects the whole file, with the line and the reason in the error text.
class KORVVIEW3D_EXPORT MachineModelReader
{
public:
    static std::optional<MachineModel> ReadFile(const QString& path, QString* error);
    static std::optional<MachineModel> Parse(const QString& text, QString* error);
};
