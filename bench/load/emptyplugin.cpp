#include "bench/load/emptyplugin.h"
