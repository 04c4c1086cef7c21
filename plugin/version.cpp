#include <QtGlobal>

// A host's program may ask for it, for people who look for a fault. The metadata has no place for a version.
extern "C" Q_DECL_EXPORT const char* frdriver_plugin_version()
{
    return PLUGIN_VERSION;
}
