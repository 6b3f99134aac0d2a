#include "SimMachine.h"

#include "SimOptions.h"
#include "SimPathJail.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>

namespace {

constexpr double kAmbient = 24.0;
constexpr double kTempTimeConstant = 90.0;
constexpr int kLinesBefore = 3;
constexpr int kLinesWindow = 12;

QJsonObject pose(const SimAxes& axes)
{
    return {{"x", axes[0]}, {"y", axes[1]}, {"z", axes[2]}, {"a", axes[3]}, {"b", 0.0}, {"c", axes[4]}};
}

QJsonObject tool(int no, int type, double diameter, double length)
{
    return {{"toolNo", no},
            {"toolType", type},
            {"toolDiameter", diameter},
            {"toolLengthOffset", length},
            {"toolRadiusOffset", diameter / 2}};
}

QJsonObject netInterface(const QString& mac, const QString& ip, const QString& mask)
{
    return {{"mac", mac}, {"ip", ip}, {"mask", mask}};
}

} // namespace

SimMachine::SimMachine(const SimOptions& options) : m_options(options)
{
    m_tools = {tool(1, 1, 6.0, 52.318), tool(2, 1, 3.175, 47.902), tool(3, 2, 4.0, 50.115),
               tool(4, 3, 2.5, 44.760), tool(5, 4, 6.0, 41.230),   tool(6, 1, 1.0, 38.504)};
    if (!options.runProgram.isEmpty()) {
        QString error;
        StartProgram(options.runProgram, &error);
    }
}

SimMachine::Status SimMachine::CurrentStatus() const
{
    if (m_dClock < m_options.bootSeconds)
        return Offline;
    if (m_options.forbid)
        return Forbidden;
    if (m_dErrorLeft > 0 || !m_strAlarm.isEmpty())
        return Error;
    return m_bRunning ? Running : Waiting;
}

QString SimMachine::RunningProgramFile() const
{
    return CurrentStatus() == Running ? m_strProgramFile : QString();
}

bool SimMachine::StartProgram(const QString& virtualPath, QString* error)
{
    if (!LoadProgram(virtualPath, error))
        return false;
    m_bRunning = true;
    return true;
}

bool SimMachine::Refuse(const QString& reason, QString* error) const
{
    *error = reason;
    return false;
}

bool SimMachine::LoadProgram(const QString& virtualPath, QString* error)
{
    if (m_options.forbid)
        return Refuse(QStringLiteral("interlock open"), error);
    if (CurrentStatus() == Running)
        return Refuse(QStringLiteral("a program is running"), error);
    const SimPathJail jail(m_options.rootDir);
    QString path;
    QFile file;
    if (jail.Resolve(QStringLiteral("/"), virtualPath, &path))
        file.setFileName(jail.LocalPath(path));
    if (file.fileName().isEmpty() || !jail.IsInside(file.fileName()) || !file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot open %1").arg(virtualPath);
        return false;
    }
    // A machine answers at once whatever it runs; parsing a program of hundreds of megabytes
    // would hold the simulator's only thread for a minute. Its first megabytes are simulated.
    constexpr qint64 SimulatedBytes = 2 * 1024 * 1024;
    QByteArray text = file.read(SimulatedBytes);
    if (!file.atEnd() && text.contains('\n'))
        text.truncate(text.lastIndexOf('\n') + 1);
    m_strProgramText = QString::fromUtf8(text);
    m_strProgramFile = QFileInfo(file.fileName()).absoluteFilePath();
    m_program = SimGCodeProgram(QFileInfo(path).fileName(), m_strProgramText, {});
    Rewind();
    m_dErrorLeft = 0;
    m_strFault.clear();
    return true;
}

void SimMachine::Rewind()
{
    SimGCodeProgram::Start start;
    start.position = m_pos;
    start.workOffset = m_workOffset;
    start.tool = m_nTool;
    m_program = SimGCodeProgram(m_program.Name(), m_strProgramText, start);
    m_bRunning = false;
    m_bFinished = false;
    m_bPaused = false;
    m_iStep = 0;
    m_dStepElapsed = 0;
    m_dProgramElapsed = 0;
}

bool SimMachine::Start(QString* error)
{
    m_bOperatorHeld = true;
    const Status status = CurrentStatus();
    if (status != Waiting)
        return Refuse(QStringLiteral("cannot start in state %1").arg(int(status)), error);
    if (m_program.Steps().isEmpty())
        return Refuse(QStringLiteral("no program loaded"), error);
    if (m_bFinished)
        Rewind();
    m_bRunning = true;
    m_bPaused = false;
    return true;
}

bool SimMachine::Stop(QString* error)
{
    m_bOperatorHeld = true;
    if (CurrentStatus() == Offline)
        return Refuse(QStringLiteral("controller starting"), error);
    if (m_bRunning) {
        m_bRunning = false;
        m_bPaused = true;
        m_nSpindle = 0;
        m_nFeed = 0;
    }
    return true;
}

bool SimMachine::Reset(QString* error)
{
    m_bOperatorHeld = true;
    if (CurrentStatus() == Offline)
        return Refuse(QStringLiteral("controller starting"), error);
    m_strAlarm.clear();
    m_strFault.clear();
    m_dErrorLeft = 0;
    m_nSpindle = 0;
    m_nFeed = 0;
    Rewind();
    return true;
}

void SimMachine::StartNextAutorunProgram()
{
    const QStringList programs =
        QDir(m_options.rootDir)
            .entryList({"*.nc", "*.ngc", "*.tap", "*.mpf", "*.NC"}, QDir::Files | QDir::Readable, QDir::Name);
    if (programs.isEmpty())
        return;
    QString error;
    StartProgram(programs.at(m_iAutorun++ % programs.size()), &error);
}

void SimMachine::Advance(double seconds)
{
    seconds *= m_options.timeScale;
    m_dClock += seconds;
    if (m_dErrorLeft > 0)
        m_dErrorLeft = std::max(0.0, m_dErrorLeft - seconds);
    m_velocity = {};
    m_bCutting = false;
    m_bChangingTool = false;

    const Status status = CurrentStatus();
    if (status == Waiting && m_options.autorun && !m_bOperatorHeld) {
        m_dIdle += seconds;
        if (m_dIdle >= m_options.idleSeconds) {
            m_dIdle = 0;
            StartNextAutorunProgram();
        }
    }
    if (CurrentStatus() == Running) {
        m_dRunSeconds += seconds;
        if (m_options.alarmAfter >= 0 && !m_bAlarmRaised && m_dRunSeconds >= m_options.alarmAfter) {
            m_bAlarmRaised = true;
            m_strAlarm = QStringLiteral("X轴伺服报警：跟随误差过大");
            m_bRunning = false;
            m_bPaused = true;
            m_nSpindle = 0;
            m_nFeed = 0;
        }
    }
    if (CurrentStatus() == Running) {
        double left = seconds;
        const QList<SimStep>& steps = m_program.Steps();
        while (m_iStep < steps.size()) {
            const SimStep& step = steps.at(m_iStep);
            m_nSpindle = step.spindle;
            m_nFeed = step.feed;
            if (step.kind == SimStep::Fault) {
                m_strFault = QStringLiteral("line %1: %2").arg(step.line).arg(step.fault);
                m_bRunning = false;
                m_nSpindle = 0;
                m_dErrorLeft = kErrorHoldSeconds;
                break;
            }
            const double take = std::min(left, step.seconds - m_dStepElapsed);
            m_dStepElapsed += take;
            m_dProgramElapsed += take;
            left -= take;
            const double t = step.seconds > 0 ? m_dStepElapsed / step.seconds : 1.0;
            for (int axis = 0; axis < 5; ++axis) {
                m_pos[axis] = step.from[axis] + (step.to[axis] - step.from[axis]) * t;
                if (step.seconds > 0)
                    m_velocity[axis] = (step.to[axis] - step.from[axis]) / step.seconds * 60.0;
            }
            m_bCutting = step.cutting;
            m_bChangingTool = step.kind == SimStep::ToolChange && m_dStepElapsed < step.seconds;
            if (m_dStepElapsed < step.seconds)
                break;
            m_nTool = step.tool;
            ++m_iStep;
            m_dStepElapsed = 0;
            if (left <= 0)
                break;
        }
        if (m_bRunning && m_iStep >= steps.size()) {
            m_bRunning = false;
            m_bFinished = true;
            m_nSpindle = 0;
            m_nFeed = 0;
        }
    }
    const double target = kAmbient + m_nSpindle / 1000.0 * 1.4;
    m_dSpindleTemp += (target - m_dSpindleTemp) * (1.0 - std::exp(-seconds / kTempTimeConstant));
}

int SimMachine::CurrentLine() const
{
    const QList<SimStep>& steps = m_program.Steps();
    if (steps.isEmpty())
        return 0;
    if (m_iStep < steps.size())
        return steps.at(m_iStep).line;
    return m_bFinished ? int(m_program.Lines().size()) : steps.last().line;
}

double SimMachine::SecondsLeft() const
{
    if (!m_bRunning)
        return 0;
    double left = -m_dStepElapsed;
    for (int i = m_iStep; i < m_program.Steps().size(); ++i)
        left += m_program.Steps().at(i).seconds;
    return std::max(0.0, left);
}

QJsonObject SimMachine::ToolJson() const
{
    QJsonObject info{
        {"toolNo", -1},        {"toolType", 0},          {"toolLengthOffset", 0.0}, {"toolRadiusOffset", 0.0},
        {"toolDiameter", 0.0}, {"bInPos", QJsonArray{0}}};
    if (m_bChangingTool)
        return info; // the spindle is empty while the changer swaps
    for (const QJsonValue& value : m_tools) {
        if (value.toObject().value(QLatin1String("toolNo")).toInt() == m_nTool) {
            info = value.toObject();
            info.insert(QStringLiteral("bInPos"), QJsonArray{1});
            break;
        }
    }
    return info;
}

QJsonArray SimMachine::Loads() const
{
    // Percent of rated load: main spindle, X, Y, Z, A, B, C. A little ripple keeps
    // the gauges alive, as on a real machine.
    const double ripple = std::sin(m_dClock * 3.1) * 1.5;
    auto axis = [this, ripple](int i, double rated) {
        const double load = std::abs(m_velocity[i]) / rated * 35.0 + (m_bCutting ? 12.0 : 2.0);
        return std::round(std::clamp(load + ripple, 0.0, 150.0) * 10) / 10;
    };
    const double spindle = m_nSpindle > 0 ? 8.0 + (m_bCutting ? 30.0 + m_nFeed / 100.0 : 0.0) + ripple : 0.0;
    return {std::round(std::max(0.0, spindle) * 10) / 10,
            axis(0, 6000),
            axis(1, 6000),
            axis(2, 6000),
            axis(3, 7200),
            0.0,
            axis(4, 7200)};
}

QJsonObject SimMachine::RealTimeData() const
{
    const QStringList& lines = m_program.Lines();
    const int curLine = CurrentLine();
    const int startLine = lines.isEmpty() ? 0 : std::max(1, curLine - kLinesBefore);
    const int endLine = lines.isEmpty() ? 0 : std::min(int(lines.size()), startLine + kLinesWindow - 1);
    QJsonArray window;
    for (int i = startLine; i >= 1 && i <= endLine; ++i)
        window.append(lines.at(i - 1));

    SimAxes work = m_pos;
    SimAxes toGo{};
    const QList<SimStep>& steps = m_program.Steps();
    for (int axis = 0; axis < 5; ++axis) {
        work[axis] -= m_workOffset[axis];
        if (m_bRunning && m_iStep < steps.size())
            toGo[axis] = steps.at(m_iStep).to[axis] - m_pos[axis];
    }
    const Status status = CurrentStatus();
    const QJsonObject program{
        {"curLine", curLine},
        {"totalLine", int(lines.size())},
        {"name", m_program.Name()},
        {"timeUsed", int(m_dProgramElapsed)},
        {"timeLeft", int(std::ceil(SecondsLeft()))},
        {"isFinish", m_bFinished ? 1 : 0},
        {"currentLines", QJsonObject{{"startLine", startLine}, {"endLine", endLine}, {"lines", window}}},
    };
    return {
        {"sn", m_options.serialNumber},
        {"mode", m_program.Name().isEmpty() ? 0 : 1},
        {"status", int(status)},
        {"program", program},
        {"MCS", pose(m_pos)},
        {"WCS", pose(work)},
        {"csType", 1},
        {"G53DTG", pose(toGo)},
        {"G5xDTG", pose(toGo)},
        {"load", Loads()},
        {"feed", status == Running ? m_nFeed : 0},
        {"feedRate", 100},
        {"spindleSpeed", status == Running ? m_nSpindle : 0},
        {"spindleRate", 100},
        {"spindleTemp", std::round(m_dSpindleTemp * 10) / 10},
        {"toolInfo", ToolJson()},
        {"originOffset", QJsonObject{{"index", "G54"}, {"offset", pose(m_workOffset)}}},
        {"runTime", int(m_dClock)},
        {"alarm", !m_strAlarm.isEmpty() ? m_strAlarm : (status == Error ? m_strFault : QString())},
    };
}

QJsonObject SimMachine::MachineInfo(const QString& reportedIp) const
{
    QJsonObject net{{"eth", netInterface(QString(), QString(), QString())},
                    {"wlan", netInterface(QString(), QString(), QString())},
                    {"usb", netInterface(QString(), QString(), QString())}};
    net.insert(m_options.interfaceName,
               netInterface(QStringLiteral("02:4b:56:00:10:01"), reportedIp, QStringLiteral("255.255.255.0")));
    const QJsonObject system{
        {"Sn", m_options.serialNumber},
        {"SysVer", m_options.sysVersion},
        {"FwVer", m_options.fwVersion},
        {"ProbeSendVer", "1.0.3"},
        {"ProbeRecvVer", "1.0.5"},
        {"CameraVer", "0.9.8"},
        {"TotalRunTime", 1260 + int(m_dClock / 3600)},
        {"TotalMachineTime", 845},
        {"Mqtt", 1},
    };
    return {{"system", system}, {"Net", net}};
}

bool SimMachine::SetTools(const QJsonArray& tools)
{
    for (const QJsonValue& value : tools) {
        if (!value.isObject() || !value.toObject().value(QLatin1String("toolNo")).isDouble())
            return false;
    }
    m_tools = tools;
    return true;
}
