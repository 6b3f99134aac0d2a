#include "BenchSupport.h"

#include <CamBaseTextHelper.h>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

namespace BenchSupport {
void PrepareEnvironment(const QTemporaryDir& configDir)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("KORV_CONFIG_DIR", configDir.path().toUtf8());
}

Size ParseSize(const QCoreApplication& app, const QString& filesHelp, int defaultFiles)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QCommandLineParser parser;
    parser.addOptions(
        {{"files", filesHelp, "N", QString::number(defaultFiles)}, {"kib", "Size of each file (20).", "N", "20"}});
    parser.process(app);
    return {parser.value("files").toInt(), parser.value("kib").toInt() * 1024};
}

void SetSetting(const char* key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, true);
}

void Fail(const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    std::exit(1);
}

std::unique_ptr<TestFtpServer> StartSimulator()
{
    auto server = TestFtpServer::Create(FtpServerKind::CncSim);
    if (!server->Start())
        Fail(server->ErrorString());
    return server;
}

QStringList WriteRandomFiles(const QString& folder, int count, int bytes)
{
    QStringList names;
    for (int i = 0; i < count; ++i) {
        names.append(QStringLiteral("prog_%1.nc").arg(i, 4, 10, QLatin1Char('0')));
        QFile file(QDir(folder).filePath(names.last()));
        QByteArray data(bytes, Qt::Uninitialized);
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(data.data()), data.size() / 4);
        if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
            Fail(QStringLiteral("cannot write ") + file.fileName());
    }
    return names;
}

int CountFiles(const QString& folder)
{
    return int(QDir(folder).entryList(QDir::Files).size());
}

double TimeProcess(const QString& program, const QStringList& arguments, const QString& workDir)
{
    QProcess process;
    process.setWorkingDirectory(workDir);
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        Fail(program + QStringLiteral(" failed: ") + QString::fromLocal8Bit(process.readAllStandardError()));
    return clock.nsecsElapsed() / 1e9;
}
} // namespace BenchSupport
