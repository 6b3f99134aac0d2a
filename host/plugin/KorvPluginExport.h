#pragma once

#include <QtCore/qglobal.h>

#if defined(KORVPLUGIN_LIBRARY)
#define KORVPLUGIN_EXPORT Q_DECL_EXPORT
#else
#define KORVPLUGIN_EXPORT Q_DECL_IMPORT
#endif
