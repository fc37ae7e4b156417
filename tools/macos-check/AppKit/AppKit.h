#pragma once

// Stands in for the framework's header; see README.md.

#include <objc/objc.h>

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@class NSError, NSRunningApplication;

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
@end

@interface NSString : NSObject
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding;
@end

// What the compiler makes of @"".
@interface NSConstantString : NSString
@end

@interface NSURL : NSObject
@property(readonly, copy) NSString* path;
+ (instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path isDirectory:(BOOL)is_folder relativeToURL:(NSURL*)base;
@end

@interface NSArray<ObjectType> : NSObject
+ (instancetype)arrayWithObjects:(const ObjectType*)objects count:(NSUInteger)count;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
- (NSURL*)URLForResource:(NSString*)name withExtension:(NSString*)extension;
@end

@interface NSResponder : NSObject
@property(assign) NSResponder* nextResponder;
@end

@interface NSWindow : NSResponder
- (void)makeKeyAndOrderFront:(id)sender;
@end

@interface NSPanel : NSWindow
@end

@interface NSApplication : NSResponder
@property(readonly, weak) NSWindow* mainWindow;
@end

extern NSApplication* NSApp;

@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
- (BOOL)openURL:(NSURL*)url;
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)urls;
- (void)openApplicationAtURL:(NSURL*)url
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication* application, NSError* error))handler;
@end

typedef NSString* NSPasteboardType;
extern NSPasteboardType const NSPasteboardTypeString;

@interface NSPasteboard : NSObject
+ (NSPasteboard*)pasteboardWithUniqueName;
- (NSInteger)declareTypes:(NSArray<NSPasteboardType>*)types owner:(id)owner;
- (BOOL)setString:(NSString*)text forType:(NSPasteboardType)type;
@end

extern "C" BOOL NSPerformService(NSString* item, NSPasteboard* board);
