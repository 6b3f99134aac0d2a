#pragma once

#include "KorvBaseExport.h"

#include <atomic>

// True while the workbench has a transfer of the connected machine running; set by the workbench
// alone, read by anyone that must keep off the machine meanwhile.
KORVBASE_EXPORT extern std::atomic<bool> g_bTranslating;

// Names of the machine's network interfaces, as discovery replies report them.
KORVBASE_EXPORT extern const char* const g_strInterfaceEth;
KORVBASE_EXPORT extern const char* const g_strInterfaceWlan;
KORVBASE_EXPORT extern const char* const g_strInterfaceUsb;

// Keys of the host's settings cache.
KORVBASE_EXPORT extern const char* const g_strSettingNoRemindMachineVersion;
KORVBASE_EXPORT extern const char* const g_strSettingAutoConnectLastMachine;
KORVBASE_EXPORT extern const char* const g_strSettingLastConnectMachineSN;

// FTP settings of the host (setting type 1 of CamBaseTextHelper); see FtpSettings for defaults.
KORVBASE_EXPORT extern const char* const g_strSettingFtpUser;
KORVBASE_EXPORT extern const char* const g_strSettingFtpPassword;
KORVBASE_EXPORT extern const char* const g_strSettingFtpPortMapping;
KORVBASE_EXPORT extern const char* const g_strSettingFtpConnectTimeoutMs;
KORVBASE_EXPORT extern const char* const g_strSettingFtpResponseTimeoutMs;
// Transfers run at once per machine; the rest wait their turn (int, default 5).
KORVBASE_EXPORT extern const char* const g_strSettingFtpMaxTransfers;
// Per machine, the key followed by "/" and the machine's IP: the encoding of file names on its
// FTP service ("UTF-8" by default, "GBK", "Shift_JIS").
KORVBASE_EXPORT extern const char* const g_strSettingFtpNameEncoding;
// This installation's short id, carried by its temporary names on the machines (see FtpTemporaryName).
KORVBASE_EXPORT extern const char* const g_strSettingFtpTemporaryMarker;
