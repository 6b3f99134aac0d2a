#pragma once

#include "GcodeDiff.h"
#include "ProgramCompareModel.h"

#include <QDialog>
#include <QFutureWatcher>

class QCheckBox;
class QLabel;
class QTableView;

// Two programs side by side with the lines that differ marked, and the G-code options that
// leave out what does not change the cut. The files are read and compared on the work pool, so
// that a program of many megabytes never holds the window; they are read once, when it opens.
class ProgramCompareDialog final : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProgramCompareDialog)

public:
    ProgramCompareDialog(const QString& leftTitle, const QString& leftPath, const QString& rightTitle,
                         const QString& rightPath, QWidget* parent = nullptr);

    QTableView* Table() const { return m_pTable; }
    bool IsComparing() const { return m_bComparing; }
    int ChangedCount() const { return m_pModel->Comparison().iChanged; }
    void SetOptions(const GcodeDiffOptions& options);

private:
    void Compare();
    void ShowComparison();
    GcodeDiffOptions Options() const;

    QString m_strLeftPath;
    QString m_strRightPath;
    bool m_bRead = false;
    // Until its result is shown: the future ends on the pool before the window hears of it.
    bool m_bComparing = false;
    // An option changed while a compare ran: compare again when it ends.
    bool m_bCompareAgain = false;
    QFutureWatcher<ProgramComparison> m_watcher;
    QCheckBox* m_pIgnoreSpace;
    QCheckBox* m_pIgnoreComments;
    QCheckBox* m_pIgnoreNumbers;
    QLabel* m_pSummary;
    ProgramCompareModel* m_pModel;
    QTableView* m_pTable;
};
