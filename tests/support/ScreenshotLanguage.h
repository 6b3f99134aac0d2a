#pragma once

#include "KorvLanguage.h"

#include <QtTest>

// Pictures are drawn in Chinese, like every test, unless KORV_SCREENSHOT_LANG=en asks for the
// English interface (scripts/screenshots does, for the user guide). Call before building widgets.
#define KORV_APPLY_SCREENSHOT_LANGUAGE()                                                                               \
    QVERIFY(KorvLanguage::Apply(qEnvironmentVariable("KORV_SCREENSHOT_LANG", QStringLiteral("zh"))))
