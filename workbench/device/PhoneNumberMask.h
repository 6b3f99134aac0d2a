#pragma once

#include <QString>

// A phone number as the debug log may show it: all but the last four digits starred.
QString MaskPhoneNumber(const QString& number);
