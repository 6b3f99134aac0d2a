#include "WorkbenchLog.h"

Q_LOGGING_CATEGORY(lcWorkbench, "korv.workbench", QtInfoMsg)
