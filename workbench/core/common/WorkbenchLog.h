#pragma once

#include <QLoggingCategory>

// Developer detail of the workbench (raw replies, whole records). Off by default so that a
// normal run prints only what a user needs; QT_LOGGING_RULES="korv.workbench.debug=true"
// turns it on.
Q_DECLARE_LOGGING_CATEGORY(lcWorkbench)
