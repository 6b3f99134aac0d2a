#include "KorvFonts.h"
#include "transfer/CProgressDelegate.h"
#include "transfer/TransProgressPainter.h"

#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QTest>

namespace {
const QRgb Background = qRgb(255, 255, 255);
const QRect Cell(0, 0, 400, 24);

TanslateInfo Info(int state, double done = 0, double total = 0)
{
    TanslateInfo info;
    info.state = state;
    info.doneSize = done;
    info.totalSize = total;
    info.fileName = QStringLiteral("a.nc");
    return info;
}

QImage Paint(const TanslateInfo& info, const QString& strSpeed = QStringLiteral("1.43 MB/s"), QRect cell = Cell)
{
    QImage image(cell.size(), QImage::Format_RGB32);
    image.fill(Background);
    QPainter painter(&image);
    TransProgressPainter().Paint(&painter, cell, info, strSpeed, FontCnMedium_15);
    return image;
}

bool IsPainted(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != Background)
                return true;
        }
    }
    return false;
}
} // namespace

class ProgressDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barFillFollowsProgress_data();
    void barFillFollowsProgress();
    void unknownStateDrawsNothing();
    void delegateDrawsReportOfItsIndex();
};

void ProgressDelegateTest::barFillFollowsProgress_data()
{
    QTest::addColumn<double>("done");
    QTest::addColumn<double>("total");
    QTest::addColumn<int>("fill");
    const int bar = TransProgressPainter::BarWidth(Cell);
    QTest::newRow("nothing yet") << 0.0 << 100.0 << 0;
    QTest::newRow("quarter") << 25.0 << 100.0 << bar / 4;
    QTest::newRow("truncated third") << 1.0 << 3.0 << bar / 3;
    QTest::newRow("complete") << 100.0 << 100.0 << bar;
    QTest::newRow("done beyond total") << 150.0 << 100.0 << 0;
    QTest::newRow("unknown total") << 10.0 << 0.0 << 0;
}

void ProgressDelegateTest::barFillFollowsProgress()
{
    QFETCH(double, done);
    QFETCH(double, total);
    QFETCH(int, fill);
    const TanslateInfo info = Info(TanslateInfo::StateRunning, done, total);
    QCOMPARE(TransProgressPainter::FillWidth(Cell, info), fill);
    // Waiting looks like running.
    QCOMPARE(Paint(Info(TanslateInfo::StateWaiting, done, total)), Paint(info));
}

void ProgressDelegateTest::unknownStateDrawsNothing()
{
    QVERIFY(IsPainted(Paint(Info(TanslateInfo::StateFailed, 100, 100))));
    QVERIFY(!IsPainted(Paint(Info(7, 50, 100))));
}

void ProgressDelegateTest::delegateDrawsReportOfItsIndex()
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), QVariant::fromValue(Info(TanslateInfo::StateRunning, 1, 4)),
                  CProgressDelegate::InfoRole);
    model.setData(model.index(0, 0), QStringLiteral("2.00 KB/s"), CProgressDelegate::SpeedTextRole);
    model.setData(model.index(0, 0), FontCnMedium_15, Qt::FontRole);
    QImage image(Cell.size(), QImage::Format_RGB32);
    image.fill(Background);
    {
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = Cell;
        CProgressDelegate().paint(&painter, option, model.index(0, 0));
    }
    QCOMPARE(image, Paint(Info(TanslateInfo::StateRunning, 1, 4), QStringLiteral("2.00 KB/s")));
}

QTEST_MAIN(ProgressDelegateTest)
#include "tst_progressdelegate.moc"
