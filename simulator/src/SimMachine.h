#pragma once

#include "SimGCodeProgram.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

struct SimOptions;

// The simulated machine: runs a program from its root and moves through time in
// whatever steps Advance() is given, so tests can drive it without waiting.
// States as the workbench shows them: 0 offline (starting up), 1 running, 2 error,
// 3 waiting, 4 forbidden (interlock open).
class SimMachine
{
public:
    enum Status
    {
        Offline = 0,
        Running = 1,
        Error = 2,
        Waiting = 3,
        Forbidden = 4
    };

    static constexpr double kErrorHoldSeconds = 8;

    explicit SimMachine(const SimOptions& options);

    void Advance(double seconds);
    // Loads and starts a program given by its path inside the root.
    bool StartProgram(const QString& virtualPath, QString* error);

    // Operator commands. Any of them takes the machine out of autorun: from then on
    // only the operator starts programs. False with the reason when refused.
    // Loads a program without starting it.
    bool LoadProgram(const QString& virtualPath, QString* error);
    // Runs the loaded program from its first line, or resumes a stopped one.
    bool Start(QString* error);
    // Halts motion where it is; a later start resumes.
    bool Stop(QString* error);
    // Clears an error or alarm and rewinds the program to its first line.
    bool Reset(QString* error);
    const QString& Alarm() const { return m_strAlarm; }

    Status CurrentStatus() const;
    // The local file of the program running now; empty when none runs.
    QString RunningProgramFile() const;
    const SimAxes& MachinePosition() const { return m_pos; }
    const QString& LastFault() const { return m_strFault; }

    QJsonObject RealTimeData() const;
    QJsonObject MachineInfo(const QString& reportedIp) const;
    QJsonArray Tools() const { return m_tools; }
    // Replaces the tool table; false when an entry lacks a tool number.
    bool SetTools(const QJsonArray& tools);

private:
    void StartNextAutorunProgram();
    // Reparses the program from the current position, ready to run from line one.
    void Rewind();
    bool Refuse(const QString& reason, QString* error) const;
    int CurrentLine() const;
    double SecondsLeft() const;
    QJsonObject ToolJson() const;
    QJsonArray Loads() const;

    const SimOptions& m_options;
    QJsonArray m_tools;
    SimGCodeProgram m_program;
    bool m_bRunning = false;
    bool m_bFinished = false;
    int m_iStep = 0;
    double m_dStepElapsed = 0;
    double m_dProgramElapsed = 0;
    double m_dClock = 0;
    double m_dErrorLeft = 0;
    double m_dIdle = 0;
    int m_iAutorun = 0;
    QString m_strFault;
    QString m_strProgramText;
    QString m_strProgramFile;
    QString m_strAlarm; // latched until a reset
    bool m_bAlarmRaised = false;
    bool m_bPaused = false;
    bool m_bOperatorHeld = false;
    double m_dRunSeconds = 0; // time spent running, for the alarm fault switch
    SimAxes m_pos{};
    SimAxes m_velocity{}; // units per minute, for the loads
    SimAxes m_workOffset = {-200, -150, -100, 0, 0};
    int m_nTool = 1;
    int m_nSpindle = 0;
    int m_nFeed = 0;
    bool m_bCutting = false;
    bool m_bChangingTool = false;
    double m_dSpindleTemp = 24.0;
};
