#pragma once

#include "GcodeDiff.h"

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;
class QTableWidget;

// Two programs side by side with the lines that differ marked, and the G-code options that
// leave out what does not change the cut. Reads both files once when it opens.
class ProgramCompareDialog final : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProgramCompareDialog)

public:
    enum Column
    {
        ColumnLeftLine,
        ColumnLeftText,
        ColumnRightLine,
        ColumnRightText,
        ColumnCount,
    };

    ProgramCompareDialog(const QString& leftTitle, const QString& leftPath, const QString& rightTitle,
                         const QString& rightPath, QWidget* parent = nullptr);

    QTableWidget* Table() const { return m_pTable; }
    int ChangedCount() const { return m_iChanged; }
    void SetOptions(const GcodeDiffOptions& options);

private:
    void Refresh();
    GcodeDiffOptions Options() const;

    QStringList m_listLeft;
    QStringList m_listRight;
    QCheckBox* m_pIgnoreSpace;
    QCheckBox* m_pIgnoreComments;
    QCheckBox* m_pIgnoreNumbers;
    QLabel* m_pSummary;
    QTableWidget* m_pTable;
    int m_iChanged = 0;
};
