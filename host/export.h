#pragma once

#include <QtCore/qglobal.h>

/// Marks what the host's shared library exports to plugins and programs.
#if defined(HOST_LIBRARY)
#define HOST_EXPORT Q_DECL_EXPORT
#else
#define HOST_EXPORT Q_DECL_IMPORT
#endif
