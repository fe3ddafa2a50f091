#pragma once

/// Marks what the framework's shared library shows to the plug-ins and programs that link it.
#define TAV_API __attribute__((visibility("default")))
