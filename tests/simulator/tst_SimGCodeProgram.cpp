#include "SimGCodeProgram.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <cmath>

namespace {
SimGCodeProgram::Start origin()
{
    SimGCodeProgram::Start start;
    start.position = {-200, -150, -50, 0, 0};
    start.workOffset = {-200, -150, -100, 0, 0};
    start.tool = 1;
    return start;
}

double totalSeconds(const SimGCodeProgram& program)
{
    double total = 0;
    for (const SimStep& step : program.Steps())
        total += step.seconds;
    return total;
}
} // namespace

class tst_SimGCodeProgram : public QObject
{
    Q_OBJECT
private slots:
    void feedMoveTiming();
    void workOffsetIncrementalAndInch();
    void arcsEndOnTheirTarget_data();
    void arcsEndOnTheirTarget();
    void spindleAndToolChange();
    void faults_data();
    void faults();
    void endsAtM30();
    void demoProgramsRunToTheirEnd();
};

void tst_SimGCodeProgram::feedMoveTiming()
{
    const SimGCodeProgram program("a.nc", "G90 G21\nG1 X30 Y40 Z50 F600\nG0 Z60\n", origin());
    QCOMPARE(program.Steps().size(), 2);
    const SimStep& cut = program.Steps().at(0);
    QVERIFY(cut.cutting);
    // From (0,0,50) work to (30,40,50): 50 mm at 600 mm/min.
    QCOMPARE(cut.seconds, 5.0);
    QCOMPARE(QList<double>({cut.to[0], cut.to[1]}), QList<double>({-170.0, -110.0}));
    QCOMPARE(program.Steps().at(1).feed, int(SimGCodeProgram::kRapidFeed));
    QVERIFY(!program.Steps().at(1).cutting);
}

void tst_SimGCodeProgram::workOffsetIncrementalAndInch()
{
    const SimGCodeProgram program("a.nc", "G20 G91 G1 X1 F10\nG21 G90 G53 G0 X-1 Y-2 Z-3\nG1 A90 F900\n", origin());
    QCOMPARE(program.Steps().size(), 3);
    QCOMPARE(program.Steps().at(0).to[0], -200 + 25.4);
    QCOMPARE(program.Steps().at(0).seconds, 6.0); // 25.4 mm at 254 mm/min
    QCOMPARE(program.Steps().at(1).to[2], -3.0);  // machine coordinates
    QCOMPARE(program.Steps().at(2).to[3], 90.0);
    QCOMPARE(program.Steps().at(2).seconds, 6.0); // rotary only: degrees per minute
}

void tst_SimGCodeProgram::arcsEndOnTheirTarget_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<double>("length");
    QTest::newRow("G2-IJ-half-circle") << "G0 X-10 Y0\nG2 X10 Y0 I10 J0 F600\n" << M_PI * 10;
    QTest::newRow("G3-R-quarter") << "G0 X10 Y0\nG3 X0 Y10 R10 F600\n" << M_PI * 5;
    QTest::newRow("G2-R-negative-long-way") << "G0 X10 Y0\nG2 X0 Y10 R-10 F600\n" << M_PI * 15;
}

void tst_SimGCodeProgram::arcsEndOnTheirTarget()
{
    QFETCH(QString, code);
    QFETCH(double, length);
    const SimGCodeProgram program("arc.nc", code, origin());
    QVERIFY(program.Steps().size() > 3);
    const SimStep& last = program.Steps().last();
    QCOMPARE(last.kind, SimStep::Move);
    double seconds = 0;
    for (const SimStep& step : program.Steps().mid(1)) {
        // Every piece stays on the circle about the centre.
        QVERIFY(std::abs(std::hypot(step.to[0] + 200, step.to[1] + 150) - 10) < 1e-6);
        seconds += step.seconds;
    }
    // The chords are slightly shorter than the arc.
    QVERIFY2(std::abs(seconds - length / 600 * 60) < 0.01 * seconds, qPrintable(QString::number(seconds)));
}

void tst_SimGCodeProgram::spindleAndToolChange()
{
    const SimGCodeProgram program("t.nc", "T3 M6\nS12000 M3\nG1 X1 F100\nM5\nG0 Z10\n", origin());
    QCOMPARE(program.Steps().size(), 4);
    QCOMPARE(program.Steps().at(0).kind, SimStep::ToolChange);
    QCOMPARE(program.Steps().at(0).tool, 3);
    QCOMPARE(program.Steps().at(0).seconds, SimGCodeProgram::kToolChangeSeconds);
    QCOMPARE(program.Steps().at(1).kind, SimStep::Dwell); // spin-up
    QCOMPARE(program.Steps().at(2).spindle, 12000);
    QCOMPARE(program.Steps().at(3).spindle, 0);
}

void tst_SimGCodeProgram::faults_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("fault");
    QTest::newRow("unknown-G") << "G0 X0\nG81 X1 Z-2 R1\n" << 2 << "unsupported G81";
    QTest::newRow("unknown-M") << "M98 P100\n" << 1 << "unsupported M98";
    QTest::newRow("beyond-travel") << "G0 X0\nG0 X250\n" << 2 << "X 50 beyond travel";
    QTest::newRow("no-feed") << "G1 X5\n" << 1 << "feed move without F";
    QTest::newRow("b-axis") << "G0 B10\n" << 1 << "this machine has no B axis";
    QTest::newRow("garbage") << "G0 X0\n#1=5\n" << 2 << "unreadable text";
    QTest::newRow("M6-without-T") << "M6\n" << 1 << "tool change without T";
    QTest::newRow("arc-off-circle") << "G2 X50 Y0 I1 J0 F100\n" << 1 << "arc end not on the circle";
}

void tst_SimGCodeProgram::faults()
{
    QFETCH(QString, code);
    QFETCH(int, line);
    QFETCH(QString, fault);
    const SimGCodeProgram program("f.nc", code, origin());
    QVERIFY(!program.Steps().isEmpty());
    QCOMPARE(program.Steps().last().kind, SimStep::Fault);
    QCOMPARE(program.Steps().last().line, line);
    QCOMPARE(program.Steps().last().fault, fault);
}

void tst_SimGCodeProgram::endsAtM30()
{
    const SimGCodeProgram program("e.nc", "%\nO1000 (part)\nN10 G0 X1 ; comment\nM30\nG0 X2\n%\n", origin());
    QCOMPARE(program.Lines().size(), 6);
    QCOMPARE(program.Steps().size(), 1);
    QVERIFY(totalSeconds(program) > 0);
}

void tst_SimGCodeProgram::demoProgramsRunToTheirEnd()
{
    const QDir demo(qEnvironmentVariable("KORV_SOURCE_DIR") + "/simulator/demo");
    const QFileInfoList programs = demo.entryInfoList(QDir::Files);
    QVERIFY(programs.size() >= 3);
    for (const QFileInfo& info : programs) {
        QFile file(info.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        SimGCodeProgram::Start home; // machine home, as after power-on
        home.workOffset = {-200, -150, -100, 0, 0};
        const SimGCodeProgram program(info.fileName(), QString::fromUtf8(file.readAll()), home);
        QVERIFY2(!program.Steps().isEmpty(), qPrintable(info.fileName()));
        QVERIFY2(program.Steps().last().kind != SimStep::Fault,
                 qPrintable(info.fileName() + ": " + program.Steps().last().fault));
        QVERIFY(totalSeconds(program) > 10);
    }
}

QTEST_GUILESS_MAIN(tst_SimGCodeProgram)
#include "tst_SimGCodeProgram.moc"
