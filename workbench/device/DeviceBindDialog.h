#pragma once

#include "DeviceVerifyDialog.h"

// "绑定设备": binds the connected machine's serial number to the user's phone number.
class DeviceBindDialog : public DeviceVerifyDialog
{
    Q_OBJECT
public:
    explicit DeviceBindDialog(const QString& sn, QWidget* parent = nullptr);
};
