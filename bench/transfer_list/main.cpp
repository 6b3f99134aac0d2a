// Cost of one progress report in a transfer list of 1,000 rows, against a reference of two
// plain item writes per report on a bare model shown in a plain table, measured in the same run.
#include "transfer/TransList.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QStandardItemModel>
#include <QTableView>
#include <cstdio>

namespace {
constexpr int RowCount = 1000;
constexpr int ReportCount = 100000;
// Painting is part of the cost: let the view repaint as often as a busy GUI thread would.
constexpr int ReportsPerEventPass = 1000;

void QuietMessages(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

double MeasureTransList(int* pResets)
{
    qint64 iNow = QDateTime(QDate(2024, 1, 1), QTime(8, 0)).toMSecsSinceEpoch();
    TransList list;
    list.SetClock([&iNow] { return iNow; });
    list.resize(900, 240);
    list.show();
    QObject::connect(list.Model(), &QAbstractItemModel::modelReset, [pResets] { ++*pResets; });
    QObject::connect(list.Model(), &QAbstractItemModel::layoutChanged, [pResets] { ++*pResets; });

    QStringList keys;
    QList<TanslateInfo> infos;
    for (int row = 0; row < RowCount; ++row) {
        TanslateInfo info;
        info.totalSize = 1e9;
        info.fileName = QStringLiteral("D:/CAM/output/part_%1.nc").arg(row);
        info.machinePath = QStringLiteral("/home/varnok/nc/part_%1.nc").arg(row);
        info.direction = row % 2;
        keys << QStringLiteral("ftp://127.0.0.1:21/home/varnok/nc/part_%1.nc*Upload").arg(row);
        infos << info;
        list.SlotUpdateTransfer(info, keys.last());
    }
    QCoreApplication::processEvents();

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < ReportCount; ++i) {
        const int row = i % RowCount;
        TanslateInfo& info = infos[row];
        info.doneSize += 40000 + (i % 7) * 1000;
        iNow += 100;
        list.SlotUpdateTransfer(info, keys.at(row));
        if ((i + 1) % ReportsPerEventPass == 0)
            QCoreApplication::processEvents();
    }
    return timer.nsecsElapsed() / 1000.0 / ReportCount;
}

double MeasureReference()
{
    QStandardItemModel model(RowCount, 4);
    for (int row = 0; row < RowCount; ++row)
        for (int column = 0; column < 4; ++column)
            model.setItem(row, column, new QStandardItem(QStringLiteral("0 s")));
    QTableView view;
    view.setModel(&model);
    view.resize(900, 240);
    view.show();
    QCoreApplication::processEvents();

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < ReportCount; ++i) {
        const int row = i % RowCount;
        model.item(row, 1)->setData(QString::number(i), Qt::UserRole + 1);
        model.item(row, 3)->setText(QString::number(i % 60) + QStringLiteral(" s"));
        if ((i + 1) % ReportsPerEventPass == 0)
            QCoreApplication::processEvents();
    }
    return timer.nsecsElapsed() / 1000.0 / ReportCount;
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(QuietMessages);
    QApplication app(argc, argv);

    const double reference = MeasureReference();
    int iResets = 0;
    const double perReport = MeasureTransList(&iResets);
    std::printf("rows=%d reports=%d\n", RowCount, ReportCount);
    std::printf("reference_us_per_report=%.2f (two item writes on a bare model)\n", reference);
    std::printf("ratio_to_reference=%.2f\n", perReport / reference);
    std::printf("model_resets_during_updates=%d\n", iResets);
    std::printf("us_per_report=%.2f\n", perReport);
    return iResets == 0 ? 0 : 1;
}
