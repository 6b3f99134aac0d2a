// Times the file panel on big folders: a local folder of 100,000 files listed into a
// shown panel (with the longest stall of the GUI thread meanwhile) and sorted by name,
// compared with the same sort comparing names through the collator inside lessThan,
// and a machine folder of 20,000 entries listed from cnc-sim (run as a child process)
// into rows, also timed from its reply on. Prints one "name=value" line per figure,
// the speed-up last.

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "StallRecorder.h"
#include "filepanel/FileItemRoles.h"
#include "filepanel/FileSelectPanel.h"
#include "filepanel/FileSortProxyModel.h"

#include <QApplication>
#include <QCollator>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

namespace {
// The straightforward comparison: read the roles and run the collator on every call.
class CollatorCompareProxy : public QSortFilterProxyModel
{
public:
    explicit CollatorCompareProxy(const QLocale& locale) : m_collator(locale) { m_collator.setNumericMode(true); }

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override
    {
        const auto classOf = [](const QModelIndex& index) {
            if (index.data(FileItemRole::QuickAccess).toBool()) {
                return 0;
            }
            return index.data(FileItemRole::Kind).toInt() == FileItemKind::File ? 2 : 1;
        };
        const int classLeft = classOf(left);
        const int classRight = classOf(right);
        if (classLeft != classRight) {
            return classLeft < classRight;
        }
        if (classLeft == 0) {
            const int kindLeft = left.data(FileItemRole::Kind).toInt();
            const int kindRight = right.data(FileItemRole::Kind).toInt();
            if (kindLeft != kindRight) {
                return kindLeft < kindRight;
            }
        }
        return m_collator.compare(left.data(sortRole()).toString(), right.data(sortRole()).toString()) < 0;
    }

private:
    QCollator m_collator;
};

void Print(const char* name, double value)
{
    std::printf("%s=%.1f\n", name, value);
    std::fflush(stdout);
}

QString RandomName(QRandomGenerator& random, int i)
{
    static const char* const stems[] = {"part", "Part", "program", "fixture_", "plate-", "程序", "test", "a", "B"};
    static const char* const suffixes[] = {".nc", ".NC", ".tap", ".txt", ".ngc", "", ".mpf"};
    return QStringLiteral("%1%2_%3%4")
        .arg(QLatin1String(stems[random.bounded(int(std::size(stems)))]))
        .arg(random.bounded(100000))
        .arg(i)
        .arg(QLatin1String(suffixes[random.bounded(int(std::size(suffixes)))]));
}

// Lists folder in a fresh local panel, shown as a user would see it; reports the time
// to rows and the longest stretch the event loop was kept from running meanwhile.
void BenchLocalListing(FileSelectPanel& panel, const QString& folder)
{
    panel.resize(1024, 768);
    panel.show();
    StallRecorder stalls;
    QSignalSpy spy(&panel, &FileSelectPanel::SignalListingFinished);
    QElapsedTimer timer;
    timer.start();
    stalls.Start();
    auto* edit = panel.findChild<QLineEdit*>(QStringLiteral("pathLineEdit"));
    edit->setText(folder);
    panel.SlotPathEditReturnPressed();
    spy.wait(120000);
    const double elapsed = timer.nsecsElapsed() / 1e6;
    const qint64 longestStall = stalls.LongestMs();
    Print("local_list_100000_ms", elapsed);
    Print("local_100k_max_stall_ms", double(longestStall));
}

// Starts cnc-sim on free loopback ports serving root; returns its FTP port, 0 on failure.
quint16 StartSimulator(QProcess& simulator, const QString& root)
{
    simulator.setProgram(QStringLiteral(KORV_CNC_SIM_PATH));
    simulator.setArguments(
        {"--root", root, "--ftp-port", "0", "--info-port", "0", "--sn-port", "0", "--discovery-port", "0"});
    simulator.start();
    QByteArray output;
    while (simulator.waitForReadyRead(10000)) {
        output += simulator.readAllStandardOutput();
        const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("ftp=(\\d+)")).match(output);
        if (match.hasMatch()) {
            return match.captured(1).toUShort();
        }
    }
    return 0;
}

bool BenchMachineListing(int entryCount)
{
    QTemporaryDir root;
    for (int i = 0; i < entryCount; ++i) {
        if (i % 20 == 0) {
            QDir(root.path()).mkdir(QStringLiteral("folder%1").arg(i));
            continue;
        }
        QFile file(root.filePath(QStringLiteral("O%1.nc").arg(i)));
        if (!file.open(QIODevice::WriteOnly)) {
            return false;
        }
    }
    QProcess simulator;
    const quint16 port = StartSimulator(simulator, root.path());
    if (port == 0) {
        std::fprintf(stderr, "cnc-sim did not start: %s\n", simulator.readAllStandardError().constData());
        return false;
    }
    // The panel addresses the machine on port 21; the host's mapping sends it to the simulator.
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                        QString::fromLatin1(g_strSettingFtpPortMapping), port, true);
    FileSelectPanel panel(false);
    panel.SetMachineIp(QStringLiteral("127.0.0.1"));
    QSignalSpy spy(&panel, &FileSelectPanel::SignalListingFinished);
    QElapsedTimer timer;
    timer.start();
    panel.RefreshPanel();
    // The reply is in when the panel drops its loading row; the request's own rows went
    // before this connection was made.
    QElapsedTimer sinceReply;
    QObject::connect(panel.SortModel()->sourceModel(), &QAbstractItemModel::rowsAboutToBeRemoved, &panel,
                     [&sinceReply] {
                         if (!sinceReply.isValid()) {
                             sinceReply.start();
                         }
                     });
    const bool bListed = spy.wait(60000) && spy.last().at(1).toBool();
    const double elapsed = timer.nsecsElapsed() / 1e6;
    const double shown = sinceReply.isValid() ? sinceReply.nsecsElapsed() / 1e6 : -1;
    simulator.kill();
    simulator.waitForFinished();
    if (!bListed || panel.SortModel()->rowCount() != entryCount) {
        std::fprintf(stderr, "machine listing failed or incomplete (%d rows)\n", panel.SortModel()->rowCount());
        return false;
    }
    Print("machine_list_20000_ms", elapsed);
    Print("machine_20k_show_ms", shown);
    return true;
}

double TimeSort(QSortFilterProxyModel& proxy)
{
    QElapsedTimer timer;
    timer.start();
    proxy.sort(0, Qt::AscendingOrder);
    return timer.nsecsElapsed() / 1e6;
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    // Private settings, so the port mapping never lands in a user's configuration.
    QTemporaryDir config;
    qputenv("KORV_CONFIG_DIR", config.path().toUtf8());
    QApplication app(argc, argv);
    const int fileCount = 100000;

    QTemporaryDir folder;
    QRandomGenerator random(20240601);
    for (int i = 0; i < fileCount; ++i) {
        QFile file(folder.filePath(RandomName(random, i)));
        if (!file.open(QIODevice::WriteOnly)) {
            std::fprintf(stderr, "cannot create %s\n", qPrintable(file.fileName()));
            return 1;
        }
        file.write("G0\n", random.bounded(4));
    }

    FileSelectPanel panel(true);
    BenchLocalListing(panel, folder.path());
    QAbstractItemModel* rows = panel.SortModel()->sourceModel();
    if (rows->rowCount() < fileCount) {
        std::fprintf(stderr, "listed %d rows, expected %d\n", rows->rowCount(), fileCount);
        return 1;
    }

    // Both sorts run on the same rows, each with fresh proxies, nothing shown; the
    // best of three runs of each, interleaved, so that load from elsewhere hits both.
    const QLocale locale = QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale();
    double ourMs = 1e12;
    double referenceMs = 1e12;
    FileSortProxyModel ours;
    CollatorCompareProxy reference(locale);
    for (int round = 0; round < 3; ++round) {
        FileSortProxyModel oursRound;
        oursRound.setSourceModel(rows);
        oursRound.SetSortRole(FileItemRole::Name);
        ourMs = std::min(ourMs, TimeSort(oursRound));
        CollatorCompareProxy referenceRound(locale);
        referenceRound.setSourceModel(rows);
        referenceRound.setSortRole(FileItemRole::Name);
        referenceMs = std::min(referenceMs, TimeSort(referenceRound));
    }
    ours.setSourceModel(rows);
    ours.SetSortRole(FileItemRole::Name);
    ours.sort(0);
    reference.setSourceModel(rows);
    reference.setSortRole(FileItemRole::Name);
    reference.sort(0);
    Print("sort_name_100000_ms", ourMs);
    Print("sort_name_100000_reference_collator_compare_ms", referenceMs);

    // The same order from both, or the figures mean nothing.
    for (int row = 0; row < ours.rowCount(); ++row) {
        if (ours.index(row, 0).data(FileItemRole::Name) != reference.index(row, 0).data(FileItemRole::Name)) {
            std::fprintf(stderr, "orders differ at row %d\n", row);
            return 1;
        }
    }
    if (!BenchMachineListing(20000)) {
        return 1;
    }
    std::printf("sort_speedup=%.1f\n", referenceMs / ourMs);
    return 0;
}
