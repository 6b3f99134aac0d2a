#include "SimGCodeProgram.h"

#include <QHash>
#include <QRegularExpression>
#include <cmath>

const SimAxes SimGCodeProgram::kTravelMin = {-400, -300, -120, -120, -1e9};
const SimAxes SimGCodeProgram::kTravelMax = {0, 0, 0, 120, 1e9};

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kMaxArcStep = kPi / 36; // 5 degrees per straight piece
const char kAxisLetters[] = {'X', 'Y', 'Z', 'A', 'C'};

QString stripComments(const QString& line)
{
    QString out;
    int depth = 0;
    for (const QChar c : line) {
        if (c == QLatin1Char(';') && depth == 0)
            break;
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')') && depth > 0)
            --depth;
        else if (depth == 0)
            out += c;
    }
    return out.trimmed().toUpper();
}

double distance(const SimAxes& a, const SimAxes& b)
{
    return std::sqrt(std::pow(b[0] - a[0], 2) + std::pow(b[1] - a[1], 2) + std::pow(b[2] - a[2], 2));
}

double rotaryTravel(const SimAxes& a, const SimAxes& b)
{
    return std::max(std::abs(b[3] - a[3]), std::abs(b[4] - a[4]));
}

} // namespace

SimGCodeProgram::SimGCodeProgram(const QString& name, const QString& text, const Start& start)
    : m_strName(name), m_pos(start.position), m_offset(start.workOffset), m_nTool(start.tool)
{
    QString normalised = text;
    normalised.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_listLines = normalised.split(QLatin1Char('\n'));
    if (!m_listLines.isEmpty() && m_listLines.last().isEmpty())
        m_listLines.removeLast();
    for (int i = 0; i < m_listLines.size(); ++i) {
        if (!ParseLine(i + 1, m_listLines.at(i)))
            break;
    }
}

bool SimGCodeProgram::Fail(int lineNo, const QString& why)
{
    SimStep step;
    step.kind = SimStep::Fault;
    step.line = lineNo;
    step.from = step.to = m_pos;
    step.tool = m_nTool;
    step.fault = why;
    m_listSteps << step;
    return false;
}

void SimGCodeProgram::AddTimed(SimStep::Kind kind, int lineNo, double seconds)
{
    SimStep step;
    step.kind = kind;
    step.line = lineNo;
    step.from = step.to = m_pos;
    step.seconds = seconds;
    step.feed = 0;
    step.spindle = m_bSpindleOn ? m_nSpindle : 0;
    step.tool = m_nTool;
    m_listSteps << step;
}

bool SimGCodeProgram::AddMove(int lineNo, const SimAxes& target, bool rapid)
{
    for (int axis = 0; axis < 5; ++axis) {
        if (target[axis] < kTravelMin[axis] - 1e-9 || target[axis] > kTravelMax[axis] + 1e-9)
            return Fail(lineNo,
                        QStringLiteral("%1 %2 beyond travel").arg(QLatin1Char(kAxisLetters[axis])).arg(target[axis]));
    }
    const double feed = rapid ? kRapidFeed : m_dFeed;
    if (feed <= 0)
        return Fail(lineNo, QStringLiteral("feed move without F"));
    const double linear = distance(m_pos, target);
    // A purely rotary move takes its feed in degrees per minute.
    const double travel = linear > 1e-9 ? linear : rotaryTravel(m_pos, target);
    SimStep step;
    step.kind = SimStep::Move;
    step.line = lineNo;
    step.from = m_pos;
    step.to = target;
    step.seconds = travel / feed * 60.0;
    step.feed = int(std::lround(feed));
    step.spindle = m_bSpindleOn ? m_nSpindle : 0;
    step.tool = m_nTool;
    step.cutting = !rapid;
    m_pos = target;
    if (step.seconds > 0)
        m_listSteps << step;
    return true;
}

bool SimGCodeProgram::AddArc(int lineNo, const SimAxes& target, bool clockwise, double i, double j, double r, bool hasR)
{
    double cx;
    double cy;
    const double dx = target[0] - m_pos[0];
    const double dy = target[1] - m_pos[1];
    if (hasR) {
        const double chord = std::hypot(dx, dy);
        if (chord < 1e-9 || std::abs(r) < chord / 2 - 1e-6)
            return Fail(lineNo, QStringLiteral("arc radius too small"));
        const double h = std::sqrt(std::max(0.0, r * r - chord * chord / 4));
        // The centre lies left of the chord for a short counter-clockwise arc; a
        // negative R asks for the long way round.
        const double side = ((clockwise ? -1 : 1) * (r > 0 ? 1 : -1));
        cx = m_pos[0] + dx / 2 - side * h * dy / chord;
        cy = m_pos[1] + dy / 2 + side * h * dx / chord;
    } else {
        cx = m_pos[0] + i;
        cy = m_pos[1] + j;
    }
    const double radius = std::hypot(m_pos[0] - cx, m_pos[1] - cy);
    if (radius < 1e-9 || std::abs(radius - std::hypot(target[0] - cx, target[1] - cy)) > 0.01 * std::max(1.0, radius))
        return Fail(lineNo, QStringLiteral("arc end not on the circle"));
    const double a0 = std::atan2(m_pos[1] - cy, m_pos[0] - cx);
    double sweep = std::atan2(target[1] - cy, target[0] - cx) - a0;
    if (clockwise && sweep >= -1e-9)
        sweep -= 2 * kPi;
    if (!clockwise && sweep <= 1e-9)
        sweep += 2 * kPi;
    const int pieces = std::max(1, int(std::ceil(std::abs(sweep) / kMaxArcStep)));
    const SimAxes start = m_pos;
    for (int k = 1; k <= pieces; ++k) {
        const double t = double(k) / pieces;
        SimAxes point = target;
        if (k < pieces) {
            point[0] = cx + radius * std::cos(a0 + sweep * t);
            point[1] = cy + radius * std::sin(a0 + sweep * t);
            for (int axis = 2; axis < 5; ++axis)
                point[axis] = start[axis] + (target[axis] - start[axis]) * t;
        }
        if (!AddMove(lineNo, point, false))
            return false;
    }
    return true;
}

bool SimGCodeProgram::ParseLine(int lineNo, const QString& line)
{
    static const QRegularExpression word(QStringLiteral("([A-Z])\\s*([-+]?(?:\\d+\\.?\\d*|\\.\\d+))"));
    const QString code = stripComments(line);
    if (code.isEmpty() || code.startsWith(QLatin1Char('%')))
        return true;

    QList<int> gCodes;
    QList<int> mCodes;
    QHash<QChar, double> values;
    qsizetype consumed = 0;
    for (auto it = word.globalMatch(code); it.hasNext();) {
        const auto match = it.next();
        if (!code.mid(consumed, match.capturedStart() - consumed).trimmed().isEmpty())
            return Fail(lineNo, QStringLiteral("unreadable text"));
        consumed = match.capturedEnd();
        const QChar letter = match.captured(1).at(0);
        const double value = match.captured(2).toDouble();
        if (letter == QLatin1Char('G'))
            gCodes << int(std::lround(value * 10)); // G40.1 and the like stay apart from G40
        else if (letter == QLatin1Char('M'))
            mCodes << int(std::lround(value));
        else
            values.insert(letter, value);
    }
    if (!code.mid(consumed).trimmed().isEmpty())
        return Fail(lineNo, QStringLiteral("unreadable text"));
    if (values.contains(QLatin1Char('B')))
        return Fail(lineNo, QStringLiteral("this machine has no B axis"));

    bool machineCoordinates = false;
    bool home = false;
    bool dwell = false;
    for (int g : gCodes) {
        switch (g) {
        case 0:
        case 10:
        case 20:
        case 30:
            m_nMotion = g / 10;
            break;
        case 40:
            dwell = true;
            break;
        case 170:
        case 400:
        case 410:
        case 420:
        case 430:
        case 490:
        case 610:
        case 640:
        case 800:
        case 940:
            break;
        case 200:
            m_dUnit = 25.4;
            break;
        case 210:
            m_dUnit = 1.0;
            break;
        case 280:
            home = true;
            break;
        case 530:
            machineCoordinates = true;
            break;
        case 540:
        case 550:
        case 560:
        case 570:
        case 580:
        case 590:
            break; // one work offset on this machine
        case 900:
            m_bAbsolute = true;
            break;
        case 910:
            m_bAbsolute = false;
            break;
        default:
            return Fail(
                lineNo,
                QStringLiteral("unsupported G%1").arg(g % 10 ? QString::number(g / 10.0) : QString::number(g / 10)));
        }
    }
    if (values.contains(QLatin1Char('F')))
        m_dFeed = values.value(QLatin1Char('F')) * m_dUnit;
    if (values.contains(QLatin1Char('S')))
        m_nSpindle = int(std::lround(values.value(QLatin1Char('S'))));
    if (values.contains(QLatin1Char('T')))
        m_nNextTool = int(std::lround(values.value(QLatin1Char('T'))));

    bool end = false;
    for (int m : mCodes) {
        switch (m) {
        case 0:
        case 1:
        case 7:
        case 8:
        case 9:
            break;
        case 2:
        case 30:
            end = true;
            break;
        case 3:
        case 4:
            if (!m_bSpindleOn) {
                m_bSpindleOn = true;
                AddTimed(SimStep::Dwell, lineNo, kSpindleStartSeconds);
            }
            break;
        case 5:
            m_bSpindleOn = false;
            break;
        case 6:
            if (m_nNextTool < 0)
                return Fail(lineNo, QStringLiteral("tool change without T"));
            m_nTool = m_nNextTool;
            AddTimed(SimStep::ToolChange, lineNo, kToolChangeSeconds);
            break;
        default:
            return Fail(lineNo, QStringLiteral("unsupported M%1").arg(m));
        }
    }

    if (dwell) {
        AddTimed(SimStep::Dwell, lineNo, values.value(QLatin1Char('P'), values.value(QLatin1Char('X'))));
        return !end;
    }
    if (home) {
        SimAxes target = m_pos;
        target[0] = target[1] = target[2] = 0;
        return AddMove(lineNo, target, true) && !end;
    }
    SimAxes target = m_pos;
    bool moves = false;
    for (int axis = 0; axis < 5; ++axis) {
        const QChar letter = QLatin1Char(kAxisLetters[axis]);
        if (!values.contains(letter))
            continue;
        moves = true;
        const double value = values.value(letter) * (axis < 3 ? m_dUnit : 1.0);
        if (!m_bAbsolute && !machineCoordinates)
            target[axis] = m_pos[axis] + value;
        else
            target[axis] = value + (machineCoordinates ? 0.0 : m_offset[axis]);
    }
    if (moves) {
        bool ok;
        if (m_nMotion <= 1) {
            ok = AddMove(lineNo, target, m_nMotion == 0);
        } else {
            ok = AddArc(lineNo, target, m_nMotion == 2, values.value(QLatin1Char('I')) * m_dUnit,
                        values.value(QLatin1Char('J')) * m_dUnit, values.value(QLatin1Char('R')) * m_dUnit,
                        values.contains(QLatin1Char('R')));
        }
        if (!ok)
            return false;
    }
    return !end;
}
