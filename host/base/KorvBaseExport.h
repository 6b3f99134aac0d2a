#pragma once

#include <QtCore/qglobal.h>

#if defined(KORVBASE_LIBRARY)
#define KORVBASE_EXPORT Q_DECL_EXPORT
#else
#define KORVBASE_EXPORT Q_DECL_IMPORT
#endif
