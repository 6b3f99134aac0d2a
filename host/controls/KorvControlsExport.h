#pragma once

#include <QtCore/qglobal.h>

#if defined(KORVCONTROLS_LIBRARY)
#define KORVCONTROLS_EXPORT Q_DECL_EXPORT
#else
#define KORVCONTROLS_EXPORT Q_DECL_IMPORT
#endif
