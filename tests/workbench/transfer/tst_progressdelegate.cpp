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
    void waitingStateDrawsLikeRunning();
    void speedTextSitsRightOfBar();
    void narrowCellDrawsNoSpeedText();
    void failedShowsRedTextAndRestartIcon();
    void succeededShowsGreenTextWithoutIcon();
    void unknownStateDrawsNothing();
    void rowsAreAtLeast24High();
    void delegateDrawsReportOfItsIndex();
};

void ProgressDelegateTest::barFillFollowsProgress_data()
{
    QTest::addColumn<double>("done");
    QTest::addColumn<double>("total");
    QTest::addColumn<int>("fill");
    const int bar = TransProgressPainter::BarWidth(Cell);
    QCOMPARE(bar, 160);
    QTest::newRow("nothing yet") << 0.0 << 100.0 << 0;
    QTest::newRow("quarter") << 25.0 << 100.0 << 40;
    QTest::newRow("truncated third") << 1.0 << 3.0 << 53;
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
    QVERIFY2(qAbs(green + grey - 160) <= 3, qPrintable(QStringLiteral("bar %1").arg(green + grey)));
    // The bar starts 10 pixels in and is 12 pixels high from 6 pixels down.
    QVERIFY(!IsPainted(image.pixel(8, 12)));
    QVERIFY(!IsPainted(image.pixel(90, 4)));
    QVERIFY(IsPainted(image.pixel(90, 7)));
    QVERIFY(!IsPainted(image.pixel(90, 19)));
}

void ProgressDelegateTest::waitingStateDrawsLikeRunning()
{
    QCOMPARE(Paint(Info(TanslateInfo::StateWaiting, 30, 60)), Paint(Info(TanslateInfo::StateRunning, 30, 60)));
}

void ProgressDelegateTest::speedTextSitsRightOfBar()
{
    const QImage image = Paint(Info(TanslateInfo::StateRunning, 1, 2));
    const QRect text = TransProgressPainter::SpeedTextRect(Cell);
    QCOMPARE(text, QRect(10 + 160 + 15, 0, 400 - 5 - 185, 24));
    int left = 0;
    int right = 0;
    QVERIFY(CountIn(image, text, IsDarkText, &left, &right) > 20);
    QVERIFY(left <= text.left() + 3);
    QVERIFY(right < text.left() + 120);
    // Nothing dark between the bar and the text.
    QCOMPARE(CountIn(image, QRect(171, 0, 13, 24), IsDarkText), 0);
}

void ProgressDelegateTest::narrowCellDrawsNoSpeedText()
{
    const QRect narrow(0, 0, 30, 24);
    QVERIFY(TransProgressPainter::SpeedTextRect(narrow).width() <= 0);
    const QImage image = Paint(Info(TanslateInfo::StateRunning, 1, 2), QStringLiteral("1.43 MB/s"), narrow);
    QCOMPARE(CountIn(image, image.rect(), IsDarkText), 0);
}

void ProgressDelegateTest::failedShowsRedTextAndRestartIcon()
{
    const QImage image = Paint(Info(TanslateInfo::StateFailed));
    const QRect text = TransProgressPainter::StateTextRect(Cell);
    QCOMPARE(text, QRect(10, 0, 120, 24));
    int left = 0;
    int right = 0;
    QVERIFY(CountIn(image, text, IsRedText, &left, &right) > 20);
    QVERIFY2(qAbs((left + right) / 2 - text.center().x()) <= 3, "failure text is centred");
    const QRect icon = TransProgressPainter::RestartIconRect(Cell);
    QCOMPARE(icon, QRect(140, 0, 24, 24));
    QVERIFY(CountIn(image, icon, IsPainted) > 0);
    QCOMPARE(CountIn(image, QRect(165, 0, 235, 24), IsPainted), 0);
    QCOMPARE(CountOnBarLine(image, QColor(217, 217, 217)), 0);
}

void ProgressDelegateTest::succeededShowsGreenTextWithoutIcon()
{
    const QImage image = Paint(Info(TanslateInfo::StateSucceeded, 100, 100));
    int left = 0;
    int right = 0;
    QVERIFY(CountIn(image, TransProgressPainter::StateTextRect(Cell), IsGreenText, &left, &right) > 20);
    QVERIFY(qAbs((left + right) / 2 - 70) <= 3);
    QCOMPARE(CountIn(image, QRect(131, 0, 269, 24), IsPainted), 0);
}

void ProgressDelegateTest::unknownStateDrawsNothing()
{
    const QImage image = Paint(Info(7, 50, 100));
    QCOMPARE(CountIn(image, image.rect(), IsPainted), 0);
}

void ProgressDelegateTest::rowsAreAtLeast24High()
{
    CProgressDelegate delegate;
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), QStringLiteral("Xg"));
    QStyleOptionViewItem option;
    option.font = QFont();
    option.font.setPixelSize(6);
    QCOMPARE(delegate.sizeHint(option, model.index(0, 0)).height(), 24);
    option.font.setPixelSize(40);
    QVERIFY(delegate.sizeHint(option, model.index(0, 0)).height() > 24);
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
