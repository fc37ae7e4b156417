#pragma once

// Stands in for the system's header; see README.md.

#include <stddef.h>

extern "C" int sysctlbyname(const char* name, void* old_value, size_t* old_size, void* new_value, size_t new_size);
