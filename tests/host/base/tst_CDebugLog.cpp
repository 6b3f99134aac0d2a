#include "TestTempDir.h"

#include <CDebugLog.h>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QtConcurrent>

class TestCDebugLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("KORV_CONFIG_DIR", m_dir.Path().toUtf8()); }
    void linesFromManyThreadsStayWhole();

private:
    TestTempDir m_dir;
};

void TestCDebugLog::linesFromManyThreadsStayWhole()
{
    const int threads = 4;
    const int perThread = 250;
    QList<int> workers{0, 1, 2, 3};
    QtConcurrent::blockingMap(workers, [](int worker) {
        for (int i = 0; i < perThread; ++i)
            CDebugLog::AddLog(QStringLiteral("工作线程 %1 行 %2").arg(worker).arg(i));
    });
    QFile file(CDebugLog::LogFilePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), threads * perThread);
    const QRegularExpression shape(QStringLiteral(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} 工作线程 \d 行 \d+$)"));
    for (const QString& line : lines)
        QVERIFY2(shape.match(line).hasMatch(), qPrintable(line));
}

QTEST_GUILESS_MAIN(TestCDebugLog)
#include "tst_CDebugLog.moc"
