#pragma once

#include <QtCore/qglobal.h>

#if defined(KORVVIEW3D_LIBRARY)
#define KORVVIEW3D_EXPORT Q_DECL_EXPORT
#else
#define KORVVIEW3D_EXPORT Q_DECL_IMPORT
#endif
