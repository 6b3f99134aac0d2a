// Compares UploadToFtp, DownloadToLocal and ListFtpDirectory with the curl command-line tool
// against the same pure-ftpd on loopback, alternating, and prints medians and ratios; then
// times many small uploads to the machine simulator, one task each, as a user's programs go.
#include "CncSimServer.h"
#include "TestFtpServer.h"
#include "TestTempDir.h"

#include <CamBaseTextHelper.h>
#include <DownloadToLocal.h>
#include <KorvBaseGlobals.h>
#include <ListFtpDirectory.h>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStorageInfo>
#include <UploadToFtp.h>
#include <algorithm>
#include <cstdio>

namespace {
double Median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    const qsizetype n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Per pair, curl's seconds over ours: the disk under the server drifts from one pair to the next,
// so each ratio is taken within its own pair and the median of those is the figure.
QString PairRatios(const QList<double>& ours, const QList<double>& curl)
{
    QList<double> ratios;
    for (qsizetype i = 0; i < ours.size(); ++i)
        ratios << curl.at(i) / ours.at(i);
    const auto [low, high] = std::minmax_element(ratios.cbegin(), ratios.cend());
    return QStringLiteral("%1 (pairs %2 to %3)")
        .arg(Median(ratios), 0, 'f', 2)
        .arg(*low, 0, 'f', 2)
        .arg(*high, 0, 'f', 2);
}

// Seconds from start to the task's end; exits on failure, since a failed run measures nothing.
double RunTask(FtpTaskThread* task, int* entries = nullptr)
{
    QEventLoop loop;
    bool bOk = false;
    QString message;
    QObject::connect(task, &FtpTaskThread::SignalTaskFinished, &loop, [&](bool ok, const QString& text) {
        bOk = ok;
        message = text;
        loop.quit();
    });
    if (auto* listing = qobject_cast<ListFtpDirectory*>(task)) {
        QObject::connect(listing, &ListFtpDirectory::SignalListFileFinished, &loop,
                         [entries](bool, const QList<FtpFileInfo>& list) { *entries = int(list.size()); });
    }
    QElapsedTimer clock;
    clock.start();
    task->start();
    loop.exec();
    const double seconds = clock.nsecsElapsed() / 1e9;
    task->wait();
    delete task;
    if (!bOk) {
        std::fprintf(stderr, "task failed: %s\n", qPrintable(message));
        std::exit(1);
    }
    return seconds;
}

double RunCurl(const QStringList& arguments)
{
    QProcess curl;
    QElapsedTimer clock;
    clock.start();
    curl.start(QStringLiteral("curl"), QStringList{QStringLiteral("-s"), QStringLiteral("-S")} + arguments);
    if (!curl.waitForFinished(-1) || curl.exitCode() != 0) {
        std::fprintf(stderr, "curl failed: %s\n", curl.readAllStandardError().constData());
        std::exit(1);
    }
    return clock.nsecsElapsed() / 1e9;
}

bool WriteRandomFile(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray block(8 * 1024 * 1024, Qt::Uninitialized);
    QRandomGenerator generator(7);
    for (qint64 written = 0; written < size; written += block.size()) {
        generator.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        const qint64 chunk = qMin<qint64>(block.size(), size - written);
        if (file.write(block.constData(), chunk) != chunk)
            return false;
    }
    return true;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"size-mib", "Size of the transferred file in MiB.", "n", "1024"});
    parser.addOption({"runs", "Interleaved pairs of each transfer and listing.", "n", "5"});
    parser.addOption({"entries", "Entries of the listed folder.", "n", "20000"});
    parser.addOption({"small-files", "Uploads of 20 KiB to the simulator.", "n", "500"});
    parser.process(app);
    const qint64 size = parser.value("size-mib").toLongLong() * 1024 * 1024;
    const int runs = qMax(1, parser.value("runs").toInt());
    const int entryCount = parser.value("entries").toInt();
    const int smallFiles = qMax(1, parser.value("small-files").toInt());

    // Files in memory where there is room for the file, its upload and its download: on the shared
    // disk the pairs of one run differed threefold, and that was the disk, not the clients.
    const QStorageInfo memory(QStringLiteral("/dev/shm"));
    if (qEnvironmentVariableIsEmpty("TMPDIR") && memory.isValid() && !memory.isReadOnly() &&
        memory.bytesAvailable() > 4 * size)
        qputenv("TMPDIR", "/dev/shm");
    TestTempDir config;
    TestTempDir local;
    qputenv("KORV_CONFIG_DIR", config.Path().toUtf8());
    auto server = TestFtpServer::Create(FtpServerKind::PureFtpd);
    if (!server->Start()) {
        std::fprintf(stderr, "pure-ftpd: %s\n", qPrintable(server->ErrorString()));
        return 1;
    }
    CamBaseTextHelper* settings = CamBaseTextHelper::instance();
    settings->SetLocalSettingCache(1, g_strSettingFtpUser, server->User(), false);
    settings->SetLocalSettingCache(1, g_strSettingFtpPassword, server->Password(), false);
    settings->SetLocalSettingCache(1, g_strSettingFtpPortMapping, server->Port(), false);
    const QString curlBase =
        QStringLiteral("ftp://%1:%2@127.0.0.1:%3").arg(server->User(), server->Password()).arg(server->Port());
    const QString ourBase = QStringLiteral("ftp://127.0.0.1:21");

    const QString source = local.FilePath(QStringLiteral("source.bin"));
    if (!WriteRandomFile(source, size) || !server->MakeDir(QStringLiteral("/bench")) ||
        !server->WriteFile(QStringLiteral("/bench/down.bin"), QByteArray())) {
        std::fprintf(stderr, "cannot prepare the files\n");
        return 1;
    }
    QFile::remove(server->LocalPath(QStringLiteral("/bench/down.bin")));
    QFile::copy(source, server->LocalPath(QStringLiteral("/bench/down.bin")));
    const QString ourTarget = local.FilePath(QStringLiteral("ours.bin"));
    const QString curlTarget = local.FilePath(QStringLiteral("curl.bin"));

    QList<double> ourUp, curlUp, ourDown, curlDown;
    for (int run = 0; run < runs; ++run) {
        // Alternate who goes first so that page-cache warm-up favours neither.
        const bool bOursFirst = run % 2 == 0;
        for (int turn = 0; turn < 2; ++turn) {
            // Each upload starts without its old copy on the server, as every upload here is a new
            // file: replacing one would time how the machine's memory frees the old gigabyte.
            if ((turn == 0) == bOursFirst) {
                QFile::remove(server->LocalPath(QStringLiteral("/bench/up_ours.bin")));
                ourUp << RunTask(new UploadToFtp(ourBase + "/bench/up_ours.bin", QString(), source));
                QFile::remove(ourTarget);
                ourDown << RunTask(new DownloadToLocal(ourBase + "/bench/down.bin", QString(), ourTarget));
            } else {
                QFile::remove(server->LocalPath(QStringLiteral("/bench/up_curl.bin")));
                curlUp << RunCurl({"-T", source, curlBase + "/bench/up_curl.bin"});
                QFile::remove(curlTarget);
                curlDown << RunCurl({"-o", curlTarget, curlBase + "/bench/down.bin"});
            }
        }
        std::printf("run %d: upload ours %.3f s curl %.3f s, download ours %.3f s curl %.3f s\n", run + 1, ourUp.last(),
                    curlUp.last(), ourDown.last(), curlDown.last());
        std::fflush(stdout);
    }
    if (QFile(ourTarget).size() != size || QFile(server->LocalPath("/bench/up_ours.bin")).size() != size) {
        std::fprintf(stderr, "transferred sizes differ from %lld\n", size);
        return 1;
    }

    server->MakeDir(QStringLiteral("/list"));
    for (int i = 0; i < entryCount; ++i) {
        QFile file(server->LocalPath(QStringLiteral("/list/program_%1.nc").arg(i, 6, 10, QLatin1Char('0'))));
        file.open(QIODevice::WriteOnly);
    }
    QList<double> ourList, curlList;
    int listed = 0;
    for (int run = 0; run < runs; ++run) {
        ourList << RunTask(new ListFtpDirectory(ourBase + "/list/", QString(), QStringLiteral("/list/")), &listed);
        curlList << RunCurl({"-o", "/dev/null", curlBase + "/list/"});
    }
    if (listed != entryCount) {
        std::fprintf(stderr, "listed %d of %d entries\n", listed, entryCount);
        return 1;
    }

    CncSimServer sim;
    if (!sim.Start()) {
        std::fprintf(stderr, "cnc-sim: %s\n", qPrintable(sim.ErrorString()));
        return 1;
    }
    settings->SetLocalSettingCache(1, g_strSettingFtpUser, sim.User(), false);
    settings->SetLocalSettingCache(1, g_strSettingFtpPassword, sim.Password(), false);
    settings->SetLocalSettingCache(1, g_strSettingFtpPortMapping, sim.Port(), false);
    const QString smallSource = local.FilePath(QStringLiteral("small.nc"));
    if (!WriteRandomFile(smallSource, 20 * 1024)) {
        std::fprintf(stderr, "cannot prepare the small file\n");
        return 1;
    }
    QList<double> smallMs;
    for (int i = 0; i < smallFiles; ++i)
        smallMs << 1000 * RunTask(
                              new UploadToFtp(ourBase + QStringLiteral("/small_%1.nc").arg(i), QString(), smallSource));

    const double mib = double(size) / (1024 * 1024);
    const double upOurs = mib / Median(ourUp), upCurl = mib / Median(curlUp);
    const double downOurs = mib / Median(ourDown), downCurl = mib / Median(curlDown);
    std::printf("file %.0f MiB, %d runs each, pure-ftpd on 127.0.0.1\n", mib, runs);
    std::printf("upload median: ours %.1f MiB/s, curl %.1f MiB/s\n", upOurs, upCurl);
    std::printf("download median: ours %.1f MiB/s, curl %.1f MiB/s\n", downOurs, downCurl);
    std::printf("listing %d entries median: ours %.3f s (MLSD + parse), curl %.3f s (LIST)\n", entryCount,
                Median(ourList), Median(curlList));
    std::printf("listing ratio=%.2f\n", Median(curlList) / Median(ourList));
    std::printf("%d uploads of 20 KiB to cnc-sim, one task each\n", smallFiles);
    std::printf("small_files median_ms=%.3f max_ms=%.1f\n", Median(smallMs),
                *std::max_element(smallMs.cbegin(), smallMs.cend()));
    std::printf("ratio upload=%s download=%s\n", qPrintable(PairRatios(ourUp, curlUp)),
                qPrintable(PairRatios(ourDown, curlDown)));
    return 0;
}
