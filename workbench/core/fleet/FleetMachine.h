#pragma once

#include "MachineRecords.h"

#include <QDateTime>
#include <QString>

// What the workbench knows of one machine of the shop: where it is, whether it answers, and
// its last real-time record.
struct FleetMachine
{
    // The record's status codes, and one more for a machine that does not answer.
    static constexpr int StatusUnreachable = -1;

    QString strIp;
    QString strSn;
    bool bReachable = false;
    // The workbench's current machine: its own connection feeds the record.
    bool bConnected = false;
    StructRealTimeData record;
    QDateTime lastHeard;   // invalid until the first record
    QDateTime stateSince;  // when Status() last changed from a state heard before
    QString strSendResult; // the last send to this machine, in one line

    static constexpr int StatusRunning = 1;

    int Status() const { return bReachable ? record.status : StatusUnreachable; }
    // The program a change must not touch; empty unless the machine is known to run one.
    QString RunningProgram() const { return Status() == StatusRunning ? record.program.name : QString(); }
};
