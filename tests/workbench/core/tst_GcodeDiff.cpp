#include "GcodeDiff.h"

#include <QtTest>

Q_DECLARE_METATYPE(GcodeDiffOptions)

// The line compare of two programs and the differences its options leave out.
class TestGcodeDiff : public QObject
{
    Q_OBJECT

private:
    static QList<GcodeDiffRow::Kind> Kinds(const QList<GcodeDiffRow>& rows)
    {
        QList<GcodeDiffRow::Kind> kinds;
        for (const GcodeDiffRow& row : rows)
            kinds.append(row.eKind);
        return kinds;
    }

private Q_SLOTS:
    void marksChangedLinesAndKeepsTheRestAligned()
    {
        const QStringList machine = {"%", "O1000", "G90 G54", "S8000 M3", "G1 X10 F300", "G1 Y10", "M30"};
        const QStringList office = {"%", "O1000", "G90 G54", "G0 Z5", "S8000 M3", "G1 X10 F450", "M30"};
        const QList<GcodeDiffRow> rows = GcodeDiff::Compare(machine, office, {});
        using K = GcodeDiffRow::Kind;
        QCOMPARE(Kinds(rows),
                 QList<K>({K::Same, K::Same, K::Same, K::RightOnly, K::Same, K::Changed, K::LeftOnly, K::Same}));
        // The changed row pairs the feed the operator edited with the one that would replace it.
        QCOMPARE(machine.at(rows.at(5).iLeft), QStringLiteral("G1 X10 F300"));
        QCOMPARE(office.at(rows.at(5).iRight), QStringLiteral("G1 X10 F450"));
        QCOMPARE(GcodeDiff::ChangedCount(rows), 3);
        QCOMPARE(GcodeDiff::ChangedCount(GcodeDiff::Compare(machine, machine, {})), 0);
        QCOMPARE(GcodeDiff::ChangedCount(GcodeDiff::Compare({}, office, {})), office.size());
    }

    void optionsLeaveOutWhatTheySay_data()
    {
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<QStringList>("right");
        QTest::addColumn<GcodeDiffOptions>("options");
        QTest::addColumn<int>("changed");
        const QStringList spaced = {"G1  X10 Y5 ", "G0\tZ5\r"};
        const QStringList tight = {"G1X10Y5", "G0Z5"};
        QTest::newRow("white space counts") << spaced << tight << GcodeDiffOptions{} << 2;
        QTest::newRow("white space ignored") << spaced << tight << GcodeDiffOptions{true, false, false} << 0;
        const QStringList commented = {"G1 X10 (ROUGH PASS)", "G0 Z5 ; retract", "(TOOL 3)"};
        const QStringList bare = {"G1 X10 ", "G0 Z5 ", ""};
        QTest::newRow("comments count") << commented << bare << GcodeDiffOptions{} << 3;
        QTest::newRow("comments ignored") << commented << bare << GcodeDiffOptions{false, true, false} << 0;
        // A comment is left out, not the code after it.
        QTest::newRow("code after a comment counts")
            << QStringList{"(A) G1 X1"} << QStringList{"(A) G1 X2"} << GcodeDiffOptions{false, true, false} << 1;
        const QStringList numbered = {"N10 G0 X0", "N20 G1 X5", "N30 M30"};
        const QStringList renumbered = {"N100 G0 X0", "N110 G1 X6", "N120 M30"};
        QTest::newRow("block numbers count") << numbered << renumbered << GcodeDiffOptions{} << 3;
        QTest::newRow("block numbers ignored") << numbered << renumbered << GcodeDiffOptions{false, false, true} << 1;
        QTest::newRow("all together") << QStringList{"N5 G1  X1 (a)"} << QStringList{"N6 G1 X1;b"}
                                      << GcodeDiffOptions{true, true, true} << 0;
    }

    void optionsLeaveOutWhatTheySay()
    {
        QFETCH(QStringList, left);
        QFETCH(QStringList, right);
        QFETCH(GcodeDiffOptions, options);
        QFETCH(int, changed);
        QCOMPARE(GcodeDiff::ChangedCount(GcodeDiff::Compare(left, right, options)), changed);
    }
};

QTEST_GUILESS_MAIN(TestGcodeDiff)
#include "tst_GcodeDiff.moc"
