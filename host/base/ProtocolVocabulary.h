#pragma once

// Message names and JSON keys of the machine's request/response protocol
// (docs/protocol.md). Requests end in "Req", replies in "Res", acknowledgements in "Ack".
namespace Protocol {

inline constexpr char MsgUploadFileReq[] = "UploadFileReq";
inline constexpr char MsgUploadFileAck[] = "UploadFileAck";
inline constexpr char MsgDownloadFileReq[] = "DownloadFileReq";
inline constexpr char MsgDownloadFileRes[] = "DownloadFileRes";
inline constexpr char MsgDownloadFileAck[] = "DownloadFileAck";
inline constexpr char MsgUploadToolsReq[] = "UploadToolsReq";
inline constexpr char MsgUploadToolsRes[] = "UploadToolsRes";
inline constexpr char MsgDownloadToolsReq[] = "DownloadToolsReq";
inline constexpr char MsgDownloadToolsRes[] = "DownloadToolsRes";
inline constexpr char MsgGetMachineInfoReq[] = "GetMachineInfoReq";
inline constexpr char MsgGetMachineInfoRes[] = "GetMachineInfoRes";
inline constexpr char MsgRealTimeDataReq[] = "RealTimeDataReq";
inline constexpr char MsgRealTimeDataRes[] = "RealTimeDataRes";

// Envelope.
inline constexpr char KeyType[] = "type";
inline constexpr char KeyAction[] = "action";
inline constexpr char KeyCode[] = "code";
inline constexpr char KeyMsg[] = "msg";
inline constexpr char KeyData[] = "data";
inline constexpr char KeyHash[] = "hash";
inline constexpr char KeyTotalSize[] = "totalSize";
inline constexpr char KeyEncoding[] = "encoding";
inline constexpr char KeyTools[] = "tools";

// Machine information: "system" and "Net" with "eth", "wlan", "usb".
inline constexpr char KeySystem[] = "system";
inline constexpr char KeySn[] = "Sn";
inline constexpr char KeySysVer[] = "SysVer";
inline constexpr char KeyFwVer[] = "FwVer";
inline constexpr char KeyProbeSendVer[] = "ProbeSendVer";
inline constexpr char KeyProbeRecvVer[] = "ProbeRecvVer";
inline constexpr char KeyCameraVer[] = "CameraVer";
inline constexpr char KeyTotalRunTime[] = "TotalRunTime";
inline constexpr char KeyTotalMachineTime[] = "TotalMachineTime";
inline constexpr char KeyMqtt[] = "Mqtt";
inline constexpr char KeyNet[] = "Net";
inline constexpr char KeyEth[] = "eth";
inline constexpr char KeyWlan[] = "wlan";
inline constexpr char KeyUsb[] = "usb";
inline constexpr char KeyMac[] = "mac";
inline constexpr char KeyIp[] = "ip";
inline constexpr char KeyMask[] = "mask";

// Real-time data.
inline constexpr char KeyRtSn[] = "sn";
inline constexpr char KeyMode[] = "mode";
inline constexpr char KeyStatus[] = "status";
inline constexpr char KeyProgram[] = "program";
inline constexpr char KeyCurLine[] = "curLine";
inline constexpr char KeyTotalLine[] = "totalLine";
inline constexpr char KeyName[] = "name";
inline constexpr char KeyTimeUsed[] = "timeUsed";
inline constexpr char KeyTimeLeft[] = "timeLeft";
inline constexpr char KeyIsFinish[] = "isFinish";
inline constexpr char KeyCurrentLines[] = "currentLines";
inline constexpr char KeyStartLine[] = "startLine";
inline constexpr char KeyEndLine[] = "endLine";
inline constexpr char KeyLines[] = "lines";
inline constexpr char KeyMCS[] = "MCS";
inline constexpr char KeyWCS[] = "WCS";
inline constexpr char KeyCsType[] = "csType";
inline constexpr char KeyG53DTG[] = "G53DTG";
inline constexpr char KeyG5xDTG[] = "G5xDTG";
inline constexpr char KeyLoad[] = "load";
inline constexpr char KeyFeed[] = "feed";
inline constexpr char KeyFeedRate[] = "feedRate";
inline constexpr char KeySpindleSpeed[] = "spindleSpeed";
inline constexpr char KeySpindleRate[] = "spindleRate";
inline constexpr char KeySpindleTemp[] = "spindleTemp";
inline constexpr char KeyToolInfo[] = "toolInfo";
inline constexpr char KeyToolNo[] = "toolNo";
inline constexpr char KeyToolType[] = "toolType";
inline constexpr char KeyToolLengthOffset[] = "toolLengthOffset";
inline constexpr char KeyToolRadiusOffset[] = "toolRadiusOffset";
inline constexpr char KeyToolDiameter[] = "toolDiameter";
inline constexpr char KeyBInPos[] = "bInPos";
inline constexpr char KeyOriginOffset[] = "originOffset";
inline constexpr char KeyIndex[] = "index";
inline constexpr char KeyOffset[] = "offset";
inline constexpr char KeyRunTime[] = "runTime";
inline constexpr char KeyAlarm[] = "alarm";

// Machine commands; each reply carries "code" and "msg" only.
inline constexpr char MsgStartProgramReq[] = "StartProgramReq";
inline constexpr char MsgStartProgramRes[] = "StartProgramRes";
inline constexpr char MsgStopProgramReq[] = "StopProgramReq";
inline constexpr char MsgStopProgramRes[] = "StopProgramRes";
inline constexpr char MsgResetMachineReq[] = "ResetMachineReq";
inline constexpr char MsgResetMachineRes[] = "ResetMachineRes";
inline constexpr char MsgLoadProgramReq[] = "LoadProgramReq";
inline constexpr char MsgLoadProgramRes[] = "LoadProgramRes";

} // namespace Protocol
