#include "KorvBaseGlobals.h"

std::atomic<bool> g_bTranslating{false};

const char* const g_strInterfaceEth = "eth";
const char* const g_strInterfaceWlan = "wlan";
const char* const g_strInterfaceUsb = "usb";

const char* const g_strSettingNoRemindMachineVersion = "Machine/NoRemindMachineVersion";
const char* const g_strSettingAutoConnectLastMachine = "Machine/AutoConnectLastMachine";
const char* const g_strSettingLastConnectMachineSN = "Machine/LastConnectMachineSN";

const char* const g_strSettingFtpUser = "Ftp/User";
const char* const g_strSettingFtpPassword = "Ftp/Password";
const char* const g_strSettingFtpPortMapping = "Ftp/PortMapping";
const char* const g_strSettingFtpConnectTimeoutMs = "Ftp/ConnectTimeoutMs";
const char* const g_strSettingFtpResponseTimeoutMs = "Ftp/ResponseTimeoutMs";
const char* const g_strSettingFtpMaxTransfers = "Ftp/MaxTransfersPerMachine";
const char* const g_strSettingFtpNameEncoding = "Ftp/NameEncoding";
const char* const g_strSettingFtpTemporaryMarker = "Ftp/TemporaryNameMarker";
