#pragma once

// Stands in for the framework's header; see README.md.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

typedef struct __MDItem* MDItemRef;

extern const CFStringRef kMDItemFSContentChangeDate;
extern const CFStringRef kMDItemLastUsedDate;

MDItemRef MDItemCreate(CFAllocatorRef allocator, CFStringRef path);
CFTypeRef MDItemCopyAttribute(MDItemRef item, CFStringRef name);
}
