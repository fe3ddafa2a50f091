#include "framework/std/dll_interface.h"

KORVDllInterface::~KORVDllInterface() = default;
