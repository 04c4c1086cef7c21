#include "frbase/basicfrsettings.h"

BasicFrSettings::BasicFrSettings() = default;

BasicFrSettings::~BasicFrSettings() = default;
