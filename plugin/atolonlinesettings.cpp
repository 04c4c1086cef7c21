#include "plugin/atolonlinesettings.h"

AtolOnlineSettings::AtolOnlineSettings() = default;

AtolOnlineSettings::~AtolOnlineSettings() = default;
