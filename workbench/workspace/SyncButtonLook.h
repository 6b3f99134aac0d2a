#pragma once

#include <QObject>
#include <QPointer>

class QAbstractButton;
class QMovie;

// The look of the folder-synchronisation button in its three states: idle, running (an
// animation playing on the button) and finished.
class SyncButtonLook final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SyncButtonLook)

public:
    SyncButtonLook(QAbstractButton* button, QObject* parent = nullptr);

    void SetState(int state);
    int State() const { return m_iState; }
    bool IsAnimating() const;

private:
    QPointer<QAbstractButton> m_pButton;
    QMovie* m_pMovie;
    int m_iState = 0;
};
