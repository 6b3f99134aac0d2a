#pragma once

#include "TanslateInfo.h"

#include <QCoreApplication>
#include <QFont>
#include <QIcon>
#include <QRect>

class QPainter;

// Draws one cell of the progress column: a bar with the speed beside it while a transfer
// runs, or the outcome text (with a restart icon after a failure or a cancel). Works on any QPainter,
// so the drawing can be checked in an image.
class TransProgressPainter final
{
    Q_DECLARE_TR_FUNCTIONS(TransProgressPainter)

public:
    TransProgressPainter();

    static int BarWidth(const QRect& cell);
    static QRect BarRect(const QRect& cell);
    static int FillWidth(const QRect& cell, const TanslateInfo& info);
    static QRect SpeedTextRect(const QRect& cell);
    static QRect StateTextRect(const QRect& cell);
    static QRect RestartIconRect(const QRect& cell);

    void Paint(QPainter* painter, const QRect& cell, const TanslateInfo& info, const QString& strSpeed,
               const QFont& font) const;

private:
    void PaintProgress(QPainter* painter, const QRect& cell, const TanslateInfo& info, const QString& strSpeed) const;

    QIcon m_iconRestart;
};
