#pragma once

#include "KorvBaseExport.h"

#include <atomic>

// True while a host transfer task moves data; the GUI thread reads and clears it.
KORVBASE_EXPORT extern std::atomic<bool> g_bTranslating;

// Names of the machine's network interfaces, as discovery replies report them.
KORVBASE_EXPORT extern const char* const g_strInterfaceEth;
KORVBASE_EXPORT extern const char* const g_strInterfaceWlan;
KORVBASE_EXPORT extern const char* const g_strInterfaceUsb;

// Keys of the host's settings cache.
KORVBASE_EXPORT extern const char* const g_strSettingNoRemindMachineVersion;
KORVBASE_EXPORT extern const char* const g_strSettingAutoConnectLastMachine;
KORVBASE_EXPORT extern const char* const g_strSettingLastConnectMachineSN;
