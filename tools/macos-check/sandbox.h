#pragma once

// Stands in for the system's header; see README.md.

#include <stdint.h>

#define SANDBOX_NAMED 0x0001

extern "C" const char kSBXProfilePureComputation[];
extern "C" int sandbox_init(const char* profile, uint64_t flags, char** why_not);
extern "C" void sandbox_free_error(char* why_not);
