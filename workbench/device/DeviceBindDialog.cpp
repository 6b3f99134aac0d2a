#include "DeviceBindDialog.h"

#include "CNetLoginTask.h"

DeviceBindDialog::DeviceBindDialog(const QString& sn, QWidget* parent)
    : DeviceVerifyDialog(
          {tr("绑定设备"), tr("绑定"), tr("设备绑定成功"), tr("设备绑定失败"), CNetLoginTask::RequestBindDevice}, sn,
          parent)
{
    setObjectName(QStringLiteral("DeviceBindDialog"));
}
