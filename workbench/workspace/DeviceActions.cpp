#include "DeviceActions.h"

#include "device/DeviceBindDialog.h"
#include "device/DeviceUnbindDialog.h"
#include "toolpage/ToolPage.h"

DeviceActions::DeviceActions(QWidget* window, ToolPage* toolPage)
    : QObject(window), m_pWindow(window), m_pToolPage(toolPage)
{
    SetMachine(QString());
}

void DeviceActions::SetMachine(const QString& sn)
{
    // Binding needs the serial number of a machine that is connected right now.
    m_strSn = sn;
    m_pToolPage->SetEnabled(ToolPage::ActionBindDevice, !sn.isEmpty());
    m_pToolPage->SetEnabled(ToolPage::ActionUnbindDevice, !sn.isEmpty());
    if (sn.isEmpty() && m_pDialog)
        m_pDialog->reject();
}

void DeviceActions::Open(int action)
{
    if (m_pDialog || m_strSn.isEmpty())
        return;
    if (action == ToolPage::ActionBindDevice)
        m_pDialog = new DeviceBindDialog(m_strSn, m_pWindow);
    else
        m_pDialog = new DeviceUnbindDialog(m_strSn, m_pWindow);
    m_pDialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_pDialog, &DeviceVerifyDialog::SignalAppendLog, this, &DeviceActions::SignalAppendLog);
    // The tool button stays pressed while its dialog is open.
    connect(m_pDialog, &QDialog::finished, this, [this, action]() { m_pToolPage->SetChecked(action, false); });
    m_pToolPage->SetChecked(action, true);
    m_pDialog->open();
}
