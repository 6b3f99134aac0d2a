#pragma once

#include <QList>
#include <QStringList>

// What a compare leaves out, so that an operator sees the edits that change the cut and not
// the ones a control makes on its own (renumbered blocks, re-spaced words).
struct GcodeDiffOptions
{
    bool bIgnoreWhiteSpace = false;
    // "( ... )" and everything after ";".
    bool bIgnoreComments = false;
    // The N number at the start of a block.
    bool bIgnoreBlockNumbers = false;
};

// One row of a side-by-side compare: a line on either side or both; -1 where a side has none.
struct GcodeDiffRow
{
    enum Kind
    {
        Same,
        Changed,
        LeftOnly,
        RightOnly,
    };
    Kind eKind = Same;
    int iLeft = -1;
    int iRight = -1;
};

// A line compare of two programs. Lines removed and added at the same place are paired as
// changed rows; the rest of either run stands alone.
class GcodeDiff final
{
public:
    static QList<GcodeDiffRow> Compare(const QStringList& left, const QStringList& right,
                                       const GcodeDiffOptions& options);
    // The rows that differ.
    static int ChangedCount(const QList<GcodeDiffRow>& rows);
    // The line as the options compare it.
    static QString Normalised(const QString& line, const GcodeDiffOptions& options);
};
