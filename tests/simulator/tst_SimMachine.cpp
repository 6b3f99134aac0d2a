#include "SimMachine.h"
#include "SimOptions.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
void writeProgram(const std::unique_ptr<QTemporaryDir>& dir, const QString& name, const QByteArray& text)
{
    QFile file(dir->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

int status(const SimMachine& machine)
{
    return machine.RealTimeData().value("status").toInt();
}
} // namespace

class tst_SimMachine : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void runningProgramMovesAndFinishes();
    void faultGivesErrorThenWaiting();
    void bootAndForbidStates();
    void operatorCommands();

private:
    std::unique_ptr<QTemporaryDir> m_pDir;
    SimOptions m_options;
};

void tst_SimMachine::init()
{
    m_pDir = std::make_unique<QTemporaryDir>();
    m_options = SimOptions();
    m_options.rootDir = m_pDir->path();
    writeProgram(m_pDir, "part.nc", "G90 G21\nG0 X0 Y0 Z50\nS10000 M3\nG1 X60 Y80 Z0 F600\nG0 Z20\nM5\nM30\n");
}

void tst_SimMachine::runningProgramMovesAndFinishes()
{
    SimMachine machine(m_options);
    QCOMPARE(status(machine), int(SimMachine::Waiting));
    QString error;
    QVERIFY(machine.StartProgram("part.nc", &error));
    machine.Advance(0.5);
    QCOMPARE(status(machine), int(SimMachine::Running));
    // From machine home: 2.55 s rapid to X0 Y0 Z50, 1.5 s spin-up, then 2.95 s of the 11.2 s cut.
    machine.Advance(6.5);
    QJsonObject data = machine.RealTimeData();
    const QJsonObject wcs = data.value("WCS").toObject();
    QVERIFY(wcs.value("x").toDouble() > 0 && wcs.value("x").toDouble() < 60);
    QCOMPARE(data.value("MCS").toObject().value("x").toDouble(), wcs.value("x").toDouble() - 200);
    QCOMPARE(data.value("spindleSpeed").toInt(), 10000);
    const QJsonObject program = data.value("program").toObject();
    QCOMPARE(program.value("curLine").toInt(), 4);
    QCOMPARE(program.value("timeUsed").toInt(), 7);

    machine.Advance(60);
    data = machine.RealTimeData();
    QCOMPARE(status(machine), int(SimMachine::Waiting));
    QCOMPARE(data.value("program").toObject().value("isFinish").toInt(), 1);
    QCOMPARE(data.value("program").toObject().value("timeLeft").toInt(), 0);
    QCOMPARE(data.value("WCS").toObject().value("z").toDouble(), 20.0);
}

void tst_SimMachine::faultGivesErrorThenWaiting()
{
    writeProgram(m_pDir, "bad.nc", "G0 X0\nG0 X500\n");
    SimMachine machine(m_options);
    QString error;
    QVERIFY(machine.StartProgram("bad.nc", &error));
    machine.Advance(30);
    QCOMPARE(status(machine), int(SimMachine::Error));
    QVERIFY(machine.LastFault().startsWith("line 2:"));
    machine.Advance(SimMachine::kErrorHoldSeconds);
    QCOMPARE(status(machine), int(SimMachine::Waiting));
}

void tst_SimMachine::bootAndForbidStates()
{
    m_options.bootSeconds = 5;
    m_options.runProgram = "part.nc";
    SimMachine booting(m_options);
    booting.Advance(1);
    QCOMPARE(status(booting), int(SimMachine::Offline));
    QCOMPARE(booting.RealTimeData().value("MCS").toObject().value("z").toDouble(), 0.0);
    booting.Advance(5);
    QCOMPARE(status(booting), int(SimMachine::Running));

    m_options.bootSeconds = 0;
    m_options.forbid = true;
    SimMachine forbidden(m_options);
    forbidden.Advance(1);
    QCOMPARE(status(forbidden), int(SimMachine::Forbidden));
    QString error;
    QVERIFY(!forbidden.StartProgram("part.nc", &error));
}

void tst_SimMachine::operatorCommands()
{
    SimMachine machine(m_options);
    QString error;
    QVERIFY(!machine.Start(&error));
    QCOMPARE(error, QString("no program loaded"));

    QVERIFY(machine.LoadProgram("part.nc", &error));
    machine.Advance(1);
    QCOMPARE(status(machine), int(SimMachine::Waiting));
    QCOMPARE(machine.RealTimeData().value("mode").toInt(), 1);
    QVERIFY(machine.Start(&error));
    machine.Advance(5);
    QCOMPARE(status(machine), int(SimMachine::Running));
    QVERIFY(!machine.Start(&error));
    QVERIFY(!machine.LoadProgram("part.nc", &error));

    // Stop keeps the position and the place in the program; start resumes from there.
    QVERIFY(machine.Stop(&error));
    const QJsonObject stopped = machine.RealTimeData();
    machine.Advance(3);
    QCOMPARE(status(machine), int(SimMachine::Waiting));
    QCOMPARE(machine.RealTimeData().value("MCS"), stopped.value("MCS"));
    QCOMPARE(machine.RealTimeData().value("spindleSpeed").toInt(), 0);
    const int line = stopped.value("program").toObject().value("curLine").toInt();
    QVERIFY(machine.Start(&error));
    machine.Advance(0.1);
    QCOMPARE(machine.RealTimeData().value("program").toObject().value("curLine").toInt(), line);
}

QTEST_GUILESS_MAIN(tst_SimMachine)
#include "tst_SimMachine.moc"
