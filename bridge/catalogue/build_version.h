#pragma once

#include "framework/std/string.h"

namespace tav {

/// The version of the plug-in with the time of its build: "10.0.1 - 2026-03-08 02:00:00 PST".
TAVString getBuildVersion();

}  // namespace tav
