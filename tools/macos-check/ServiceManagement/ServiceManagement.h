#pragma once

// Stands in for the framework's header; see README.md.

#include <CoreFoundation/CoreFoundation.h>

extern "C" Boolean SMLoginItemSetEnabled(CFStringRef identifier, Boolean enabled);
