#include "MachineConnection.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

// Connecting elsewhere ends the working connection first; the log says so before the attempt,
// so that a mistyped address does not make the machine vanish without a word.
class TestMachineConnectionSwitch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8()); }

    void endOfTheWorkingConnectionIsLoggedFirst()
    {
        MachineConnection connection;
        connection.AcceptProvenMachine(QStringLiteral("127.0.0.1"), QStringLiteral("PB01TEST"));
        QCOMPARE(connection.GetState(), MachineConnection::State::Connected);
        QSignalSpy log(&connection, &MachineConnection::SignalAppendLog);
        QSignalSpy offline(&connection, &MachineConnection::SignalOffline);
        // Nothing listens on this loopback address: the attempt fails.
        connection.Connect(QStringLiteral("127.0.0.2"), QString(), true);
        QVERIFY(log.size() >= 2);
        const QString ending = log.at(0).at(0).toString();
        QVERIFY2(ending.contains(QStringLiteral("127.0.0.1")) && ending.contains(QStringLiteral("127.0.0.2")),
                 qPrintable(ending));
        QCOMPARE(offline.size(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(connection.GetState(), MachineConnection::State::Disconnected, 15000);
        // A failed attempt ends nothing that worked: no second line of that kind.
        log.clear();
        connection.Connect(QStringLiteral("127.0.0.2"), QString(), true);
        QVERIFY(!log.isEmpty());
        QVERIFY(!log.at(0).at(0).toString().contains(QStringLiteral("127.0.0.1")));
        QTRY_COMPARE_WITH_TIMEOUT(connection.GetState(), MachineConnection::State::Disconnected, 15000);
    }

private:
    QTemporaryDir m_configDir;
};

QTEST_MAIN(TestMachineConnectionSwitch)
#include "tst_MachineConnectionSwitch.moc"
