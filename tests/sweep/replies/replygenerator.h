#pragma once

#include "tests/sweep/replies/reply.h"

#include <rapidcheck.h>

/// Scripts of services that may lie, contradict themselves, send values of any type or nothing at all. Some
/// are honest.
[[nodiscard]] rc::Gen<Script> anyScript();
