#pragma once

// Stands in for the framework's header; see README.md.

#include <stdint.h>

extern "C" {

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDate* CFDateRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFLocale* CFLocaleRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFError* CFErrorRef;
typedef struct __CFNumberFormatter* CFNumberFormatterRef;

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint32_t UInt32;
typedef long CFIndex;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFTypeID;
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;
typedef UInt32 CFStringEncoding;
typedef CFStringRef CFLocaleIdentifier;
typedef CFStringRef CFLocaleKey;
typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  return {location, length};
}

typedef CFIndex CFComparisonResult;
typedef CFOptionFlags CFStringCompareFlags;
enum : CFOptionFlags { kCFCompareCaseInsensitive = 1, kCFCompareLocalized = 32 };
typedef CFIndex CFStringNormalizationForm;
enum : CFIndex { kCFStringNormalizationFormD = 0 };
enum : CFStringEncoding {
  kCFStringEncodingUTF8 = 0x08000100,
  kCFStringEncodingUTF32LE = 0x1c000100,
  kCFStringEncodingInvalidId = 0xffffffff
};
typedef CFIndex CFPropertyListFormat;
enum : CFIndex { kCFPropertyListBinaryFormat_v1_0 = 200 };
enum : CFOptionFlags { kCFPropertyListImmutable = 0 };
typedef CFOptionFlags CFURLBookmarkCreationOptions;
enum : CFOptionFlags { kCFURLBookmarkCreationWithSecurityScope = 1UL << 11 };
typedef CFOptionFlags CFURLBookmarkResolutionOptions;
enum : CFOptionFlags { kCFURLBookmarkResolutionWithSecurityScope = 1UL << 10 };
typedef CFIndex CFNumberFormatterStyle;
enum : CFIndex { kCFNumberFormatterDecimalStyle = 1 };
typedef CFIndex CFNumberType;
enum : CFIndex { kCFNumberIntType = 9 };

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;
extern const CFLocaleKey kCFLocaleDecimalSeparator;
extern const CFStringRef kCFPreferencesCurrentUser;
extern const CFStringRef kCFPreferencesAnyHost;

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);
CFTypeID CFDateGetTypeID(void);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);

CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean is_external);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex most, CFStringRef text);
CFIndex CFStringGetLength(CFStringRef text);
CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8 loss_byte,
                         Boolean is_external, UInt8* buffer, CFIndex size, CFIndex* used);
CFStringEncoding CFStringConvertIANACharSetNameToEncoding(CFStringRef name);
void CFStringNormalize(CFMutableStringRef text, CFStringNormalizationForm form);
void CFStringFold(CFMutableStringRef text, CFStringCompareFlags flags, CFLocaleRef locale);
void CFStringUppercase(CFMutableStringRef text, CFLocaleRef locale);
void CFStringLowercase(CFMutableStringRef text, CFLocaleRef locale);
CFComparisonResult CFStringCompareWithOptionsAndLocale(CFStringRef a, CFStringRef b, CFRange range_of_a,
                                                       CFStringCompareFlags flags, CFLocaleRef locale);

CFLocaleRef CFLocaleCreate(CFAllocatorRef allocator, CFLocaleIdentifier identifier);
CFLocaleRef CFLocaleCopyCurrent(void);
CFArrayRef CFLocaleCopyPreferredLanguages(void);
CFLocaleIdentifier CFLocaleGetIdentifier(CFLocaleRef locale);
CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFLocaleKey key);
CFNumberFormatterRef CFNumberFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale,
                                             CFNumberFormatterStyle style);
CFStringRef CFNumberFormatterCreateStringWithValue(CFAllocatorRef allocator, CFNumberFormatterRef formatter,
                                                   CFNumberType type, const void* value);

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* path, CFIndex length,
                                                 Boolean is_folder);
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolve_base, UInt8* buffer, CFIndex size);
CFDataRef CFURLCreateBookmarkData(CFAllocatorRef allocator, CFURLRef url, CFURLBookmarkCreationOptions options,
                                  CFArrayRef properties, CFURLRef relative_to, CFErrorRef* error);
CFURLRef CFURLCreateByResolvingBookmarkData(CFAllocatorRef allocator, CFDataRef bookmark,
                                            CFURLBookmarkResolutionOptions options, CFURLRef relative_to,
                                            CFArrayRef properties, Boolean* is_stale, CFErrorRef* error);
Boolean CFURLStartAccessingSecurityScopedResource(CFURLRef url);

CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef list, CFPropertyListFormat format,
                                   CFOptionFlags options, CFErrorRef* error);
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef allocator, CFDataRef data, CFOptionFlags options,
                                               CFPropertyListFormat* format, CFErrorRef* error);
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application);
Boolean CFPreferencesAppSynchronize(CFStringRef application);
CFDictionaryRef CFPreferencesCopyMultiple(CFArrayRef keys, CFStringRef application, CFStringRef user, CFStringRef host);
}
