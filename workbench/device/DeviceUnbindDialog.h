#pragma once

#include "DeviceVerifyDialog.h"

// "解绑设备": releases the connected machine from the phone number it is bound to.
class DeviceUnbindDialog : public DeviceVerifyDialog
{
    Q_OBJECT
public:
    explicit DeviceUnbindDialog(const QString& sn, QWidget* parent = nullptr);
};
