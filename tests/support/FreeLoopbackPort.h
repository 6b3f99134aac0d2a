#pragma once

#include <QtGlobal>

// A TCP port on 127.0.0.1 that was free a moment ago (0 if none could be bound). Another
// process may take it before the caller binds it, so servers retry with a new port.
quint16 FreeLoopbackPort();
