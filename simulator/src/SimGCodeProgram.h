#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <array>

// Machine axes in the order X, Y, Z, A, C (millimetres and degrees).
using SimAxes = std::array<double, 5>;

// One timed piece of a program: a straight move (arcs are split into short ones), a
// dwell, a tool change, or the line where the program cannot go on.
struct SimStep
{
    enum Kind
    {
        Move,
        Dwell,
        ToolChange,
        Fault
    };
    Kind kind = Move;
    int line = 0; // 1-based source line
    SimAxes from{};
    SimAxes to{};
    double seconds = 0;
    int feed = 0;    // mm/min shown while the step runs
    int spindle = 0; // rpm while the step runs
    int tool = -1;   // tool in the spindle once the step is done
    bool cutting = false;
    QString fault;
};

// Turns G-code text into timed steps in machine coordinates. Understands G0-G4, G17,
// G20/G21, G28, G40-G49, G53-G59, G61/G64, G80, G90/G91, G94, M0-M9, M30, F, S, T and
// the axes X Y Z A C; anything else, or a move beyond the travel, ends the program
// with a fault step on that line.
class SimGCodeProgram
{
public:
    struct Start
    {
        SimAxes position{};
        SimAxes workOffset{};
        int tool = -1;
    };

    static constexpr double kRapidFeed = 6000;
    static constexpr double kToolChangeSeconds = 4;
    static constexpr double kSpindleStartSeconds = 1.5;
    static const SimAxes kTravelMin;
    static const SimAxes kTravelMax;

    SimGCodeProgram() = default;
    SimGCodeProgram(const QString& name, const QString& text, const Start& start);

    const QString& Name() const { return m_strName; }
    const QStringList& Lines() const { return m_listLines; }
    const QList<SimStep>& Steps() const { return m_listSteps; }

private:
    bool ParseLine(int lineNo, const QString& line);
    bool AddMove(int lineNo, const SimAxes& target, bool rapid);
    bool AddArc(int lineNo, const SimAxes& target, bool clockwise, double i, double j, double r, bool hasR);
    void AddTimed(SimStep::Kind kind, int lineNo, double seconds);
    bool Fail(int lineNo, const QString& why);

    QString m_strName;
    QStringList m_listLines;
    QList<SimStep> m_listSteps;

    // Modal state while parsing.
    SimAxes m_pos{};
    SimAxes m_offset{};
    int m_nMotion = 0;
    bool m_bAbsolute = true;
    double m_dUnit = 1.0;
    double m_dFeed = 0;
    int m_nSpindle = 0;
    bool m_bSpindleOn = false;
    int m_nTool = -1;
    int m_nNextTool = -1;
};
