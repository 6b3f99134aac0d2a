#include "CommonDefine.h"

void RegisterWorkbenchMetaTypes()
{
    RegisterMachineRecordMetaTypes();
    qRegisterMetaType<OperationType>("OperationType");
}

namespace {
[[maybe_unused]] const bool g_bWorkbenchTypesRegistered = (RegisterWorkbenchMetaTypes(), true);
} // namespace
