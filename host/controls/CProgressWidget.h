#pragma once

#include "KorvControlsExport.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <functional>

class QTimer;

// What a busy indicator was asked to do; handed to the test responder.
struct StructProgressRequest
{
    enum EnumAction
    {
        Create,
        Free,
    };
    EnumAction eAction = Create;
    QString strTitle;
    QString strText;
    bool bImmediately = false; // Free only
};

using ProgressResponder = std::function<void(const StructProgressRequest&)>;

// A small busy indicator (spinner, title, text) over the active window. It never blocks the event
// loop: CreateAutoWidget shows it and returns at once, FreeAutoWidget closes and deletes it.
class KORVCONTROLS_EXPORT CProgressWidget : public QWidget
{
    Q_OBJECT

public:
    // A quick job would only flash the indicator; unless freed immediately it stays this long.
    static constexpr int MinimumVisibleMs = 400;

    static QPointer<CProgressWidget> CreateAutoWidget(QString title, QString text);
    // Safe on a null pointer, on a widget already being freed, and on one already destroyed.
    static void FreeAutoWidget(QPointer<CProgressWidget> widget, bool bImmediately = false);

    // While installed, indicators are created but never shown, and each create and free is reported.
    static void SetTestResponder(ProgressResponder responder);

    QString Title() const { return m_strTitle; }
    QString Text() const { return m_strText; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CProgressWidget(QWidget* parent, const QString& title, const QString& text);

    QString m_strTitle;
    QString m_strText;
    QTimer* m_pSpinTimer = nullptr;
    QElapsedTimer m_elapsedShown;
    int m_iAngle = 0;
    bool m_bFreeing = false;
};
