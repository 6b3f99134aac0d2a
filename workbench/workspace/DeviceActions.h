#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>

class DeviceVerifyDialog;
class ToolPage;
class QWidget;

// The tool page's bind and unbind buttons: enabled while a machine is connected, each opening
// its dialog once; a lost machine closes the dialog.
class DeviceActions final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DeviceActions)

public:
    DeviceActions(QWidget* window, ToolPage* toolPage);

    void SetMachine(const QString& sn);
    void Open(int action);

Q_SIGNALS:
    void SignalAppendLog(const QString& text, const QColor& color);

private:
    QWidget* m_pWindow;
    ToolPage* m_pToolPage;
    QString m_strSn;
    QPointer<DeviceVerifyDialog> m_pDialog;
};
