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

bool Near(QRgb pixel, const QColor& colour, int tolerance = 12)
{
    return qAbs(qRed(pixel) - colour.red()) <= tolerance && qAbs(qGreen(pixel) - colour.green()) <= tolerance &&
           qAbs(qBlue(pixel) - colour.blue()) <= tolerance;
}

// Pixels along the bar's middle line, left of the speed text, that have the given colour.
int CountOnBarLine(const QImage& image, const QColor& colour)
{
    int count = 0;
    for (int x = 0; x < TransProgressPainter::SpeedTextRect(Cell).left(); ++x)
        count += Near(image.pixel(x, Cell.top() + 12), colour) ? 1 : 0;
    return count;
}

// Pixels in the rectangle for which the predicate holds, and their horizontal extent.
template <typename Pred>
int CountIn(const QImage& image, const QRect& rect, Pred pred, int* left = nullptr, int* right = nullptr)
{
    int count = 0;
    int minX = INT_MAX;
    int maxX = INT_MIN;
    const QRect r = rect.intersected(image.rect());
    for (int y = r.top(); y <= r.bottom(); ++y) {
        for (int x = r.left(); x <= r.right(); ++x) {
            if (pred(image.pixel(x, y))) {
                ++count;
                minX = qMin(minX, x);
                maxX = qMax(maxX, x);
            }
        }
    }
    if (left)
        *left = minX;
    if (right)
        *right = maxX;
    return count;
}

bool IsDarkText(QRgb p)
{
    return qRed(p) < 150 && qAbs(qRed(p) - qGreen(p)) < 20 && qAbs(qRed(p) - qBlue(p)) < 20;
}
bool IsRedText(QRgb p)
{
    return qRed(p) > qGreen(p) + 60;
}
bool IsGreenText(QRgb p)
{
    return qGreen(p) > qRed(p) + 40;
}
bool IsPainted(QRgb p)
{
    return p != Background;
}
} // namespace

class ProgressDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barFillFollowsProgress_data();
    void barFillFollowsProgress();
    void finishedStatesShowTextNotBar_data();
    void finishedStatesShowTextNotBar();
    void narrowCellDrawsNoSpeedText();
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
    const QImage image = Paint(info);
    const int green = CountOnBarLine(image, QColor(3, 151, 96));
    const int grey = CountOnBarLine(image, QColor(217, 217, 217));
    // Rounded, antialiased ends blur a pixel or two on each side.
    QVERIFY2(qAbs(green - fill) <= 2, qPrintable(QStringLiteral("green %1, expected %2").arg(green).arg(fill)));
    QVERIFY2(qAbs(green + grey - TransProgressPainter::BarWidth(Cell)) <= 3, qPrintable(QString::number(green + grey)));
    // The speed sits right of the bar, with nothing dark between them.
    const QRect text = TransProgressPainter::SpeedTextRect(Cell);
    QVERIFY(CountIn(image, text, IsDarkText) > 20);
    QCOMPARE(CountIn(image, QRect(0, 0, text.left() - 1, Cell.height()), IsDarkText), 0);
    // Waiting looks like running.
    QCOMPARE(Paint(Info(TanslateInfo::StateWaiting, done, total)), image);
}

void ProgressDelegateTest::finishedStatesShowTextNotBar_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("red");
    QTest::addColumn<bool>("restartIcon");
    QTest::newRow("failed") << int(TanslateInfo::StateFailed) << true << true;
    QTest::newRow("succeeded") << int(TanslateInfo::StateSucceeded) << false << false;
}

void ProgressDelegateTest::finishedStatesShowTextNotBar()
{
    QFETCH(int, state);
    QFETCH(bool, red);
    QFETCH(bool, restartIcon);
    const QImage image = Paint(Info(state, 100, 100));
    const QRect text = TransProgressPainter::StateTextRect(Cell);
    int left = 0;
    int right = 0;
    QVERIFY(CountIn(image, text, red ? IsRedText : IsGreenText, &left, &right) > 20);
    QVERIFY2(qAbs((left + right) / 2 - text.center().x()) <= 3, "the state text is centred");
    const QRect icon = TransProgressPainter::RestartIconRect(Cell);
    QCOMPARE(CountIn(image, icon, IsPainted) > 0, restartIcon);
    QCOMPARE(CountIn(image, QRect(icon.right() + 1, 0, Cell.width(), Cell.height()), IsPainted), 0);
    // A state the painter does not know draws nothing at all.
    QCOMPARE(CountIn(Paint(Info(7, 50, 100)), Cell, IsPainted), 0);
}

void ProgressDelegateTest::narrowCellDrawsNoSpeedText()
{
    const QRect narrow(0, 0, 30, 24);
    QVERIFY(TransProgressPainter::SpeedTextRect(narrow).width() <= 0);
    const QImage image = Paint(Info(TanslateInfo::StateRunning, 1, 2), QStringLiteral("1.43 MB/s"), narrow);
    QCOMPARE(CountIn(image, image.rect(), IsDarkText), 0);
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
