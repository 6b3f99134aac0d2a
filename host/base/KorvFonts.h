#pragma once

#include "KorvBaseExport.h"

#include <QFont>

// The host's fonts, named by weight and pixel size.
KORVBASE_EXPORT extern QFont FontCn_13;
KORVBASE_EXPORT extern QFont FontCn_14;
KORVBASE_EXPORT extern QFont FontCn_15;
KORVBASE_EXPORT extern QFont FontCnMedium_11;
KORVBASE_EXPORT extern QFont FontCnMedium_12;
KORVBASE_EXPORT extern QFont FontCnMedium_13;
KORVBASE_EXPORT extern QFont FontCnMedium_14;
KORVBASE_EXPORT extern QFont FontCnMedium_15;
KORVBASE_EXPORT extern QFont FontCnMedium_16;
KORVBASE_EXPORT extern QFont FontCnBold_11;
KORVBASE_EXPORT extern QFont FontCnBold_12;
KORVBASE_EXPORT extern QFont FontCnBold_13;
KORVBASE_EXPORT extern QFont FontCnBold_14;
KORVBASE_EXPORT extern QFont FontCnBold_15;
KORVBASE_EXPORT extern QFont FontCnBold_16;
KORVBASE_EXPORT extern QFont FontCnBold_20;
