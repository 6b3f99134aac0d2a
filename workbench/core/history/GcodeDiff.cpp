#include "GcodeDiff.h"

#include <QRegularExpression>
#include <algorithm>
#include <vector>

namespace {
// Past this many differences the rest counts as changed: a full compare would take too long
// for programs that have little in common anyway.
constexpr int MaxEdits = 2000;

// The pairs of equal lines of a shortest edit script (Myers), in order.
void EqualPairs(const QStringList& a, const QStringList& b, QList<QPair<int, int>>& out)
{
    const int n = int(a.size());
    const int m = int(b.size());
    const int max = qMin(n + m, MaxEdits);
    const int offset = max + 1;
    std::vector<int> v(2 * max + 3, 0);
    std::vector<std::vector<int>> trace;
    int found = -1;
    for (int d = 0; d <= max && found < 0; ++d) {
        trace.push_back(v);
        for (int k = -d; k <= d; k += 2) {
            int x = (k == -d || (k != d && v[k - 1 + offset] < v[k + 1 + offset])) ? v[k + 1 + offset]
                                                                                   : v[k - 1 + offset] + 1;
            int y = x - k;
            while (x < n && y < m && a[x] == b[y]) {
                ++x;
                ++y;
            }
            v[k + offset] = x;
            if (x >= n && y >= m) {
                found = d;
                break;
            }
        }
    }
    if (found < 0)
        return; // too different: no line is paired
    int x = n;
    int y = m;
    QList<QPair<int, int>> reversed;
    for (int d = found; d > 0; --d) {
        const std::vector<int>& prev = trace[d];
        const int k = x - y;
        const int prevK = (k == -d || (k != d && prev[k - 1 + offset] < prev[k + 1 + offset])) ? k + 1 : k - 1;
        const int prevX = prev[prevK + offset];
        const int prevY = prevX - prevK;
        while (x > prevX && y > prevY) {
            reversed.append({--x, --y});
        }
        x = prevX;
        y = prevY;
    }
    while (x > 0 && y > 0)
        reversed.append({--x, --y});
    for (auto it = reversed.crbegin(); it != reversed.crend(); ++it)
        out.append(*it);
}

void AppendRun(QList<GcodeDiffRow>& rows, int leftFrom, int leftTo, int rightFrom, int rightTo)
{
    while (leftFrom < leftTo || rightFrom < rightTo) {
        GcodeDiffRow row;
        if (leftFrom < leftTo && rightFrom < rightTo)
            row = {GcodeDiffRow::Changed, leftFrom++, rightFrom++};
        else if (leftFrom < leftTo)
            row = {GcodeDiffRow::LeftOnly, leftFrom++, -1};
        else
            row = {GcodeDiffRow::RightOnly, -1, rightFrom++};
        rows.append(row);
    }
}
} // namespace

QString GcodeDiff::Normalised(const QString& line, const GcodeDiffOptions& options)
{
    QString text = line;
    if (text.endsWith(QLatin1Char('\r')))
        text.chop(1);
    if (options.bIgnoreComments) {
        static const QRegularExpression comment(QStringLiteral("\\([^)]*\\)?|;.*$"));
        text.remove(comment);
    }
    if (options.bIgnoreBlockNumbers) {
        static const QRegularExpression blockNumber(QStringLiteral("^\\s*[Nn]\\d+"));
        text.remove(blockNumber);
    }
    if (options.bIgnoreWhiteSpace) {
        static const QRegularExpression space(QStringLiteral("\\s+"));
        text.remove(space);
    }
    return text;
}

QList<GcodeDiffRow> GcodeDiff::Compare(const QStringList& left, const QStringList& right,
                                       const GcodeDiffOptions& options)
{
    QStringList a;
    QStringList b;
    for (const QString& line : left)
        a.append(Normalised(line, options));
    for (const QString& line : right)
        b.append(Normalised(line, options));
    QList<QPair<int, int>> equal;
    EqualPairs(a, b, equal);
    QList<GcodeDiffRow> rows;
    int x = 0;
    int y = 0;
    for (const auto& [i, j] : std::as_const(equal)) {
        AppendRun(rows, x, i, y, j);
        rows.append({GcodeDiffRow::Same, i, j});
        x = i + 1;
        y = j + 1;
    }
    AppendRun(rows, x, int(a.size()), y, int(b.size()));
    return rows;
}

int GcodeDiff::ChangedCount(const QList<GcodeDiffRow>& rows)
{
    return int(std::count_if(rows.cbegin(), rows.cend(),
                             [](const GcodeDiffRow& row) { return row.eKind != GcodeDiffRow::Same; }));
}
