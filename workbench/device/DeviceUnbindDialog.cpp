#include "DeviceUnbindDialog.h"

#include "CNetLoginTask.h"

DeviceUnbindDialog::DeviceUnbindDialog(const QString& sn, QWidget* parent)
    : DeviceVerifyDialog(
          {tr("解绑设备"), tr("解绑"), tr("设备解绑成功"), tr("设备解绑失败"), CNetLoginTask::RequestUnbindDevice}, sn,
          parent)
{
    setObjectName(QStringLiteral("DeviceUnbindDialog"));
}
