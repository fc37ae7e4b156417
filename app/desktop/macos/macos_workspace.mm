#include "app/desktop/macos/macos_workspace.h"

#import <AppKit/AppKit.h>
#import <Quartz/Quartz.h>

/// What the preview panel shows. The panel looks for it along the responder chain of the main window.
@interface TarnbyPreview : NSResponder <QLPreviewPanelDataSource>
@property(nonatomic, strong) NSURL* entry;
@end

@implementation TarnbyPreview
- (BOOL)acceptsPreviewPanelControl:(QLPreviewPanel*)panel {
  return YES;
}
- (void)beginPreviewPanelControl:(QLPreviewPanel*)panel {
  panel.dataSource = self;
}
- (void)endPreviewPanelControl:(QLPreviewPanel*)panel {
  panel.dataSource = nil;
}
- (NSInteger)numberOfPreviewItemsInPreviewPanel:(QLPreviewPanel*)panel {
  return 1;
}
- (id<QLPreviewItem>)previewPanel:(QLPreviewPanel*)panel previewItemAtIndex:(NSInteger)index {
  return self.entry;
}
@end

namespace tarnby {

namespace {

NSURL* url_of(const Url& entry) {
  return [NSURL fileURLWithFileSystemRepresentation:entry.path().c_str() isDirectory:NO relativeToURL:nil];
}

NSString* text_of(std::string_view text) {
  return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

}  // namespace

void MacosWorkspace::reveal(std::span<const Url> entries) {
  NSMutableArray<NSURL*>* urls = [NSMutableArray array];
  for (const Url& entry : entries) [urls addObject:url_of(entry)];
  [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:urls];
}

void MacosWorkspace::preview(const Url& entry) {
  static TarnbyPreview* const shown = [[TarnbyPreview alloc] init];
  shown.entry = url_of(entry);
  NSWindow* const window = NSApp.mainWindow;
  if (window && window.nextResponder != shown) {
    shown.nextResponder = window.nextResponder;
    window.nextResponder = shown;
  }
  QLPreviewPanel* const panel = QLPreviewPanel.sharedPreviewPanel;
  [panel makeKeyAndOrderFront:nil];
  [panel reloadData];
}

void MacosWorkspace::show_information(const Url& entry) {
  NSPasteboard* const board = [NSPasteboard pasteboardWithUniqueName];
  [board declareTypes:@[ NSPasteboardTypeString ] owner:nil];
  [board setString:url_of(entry).path forType:NSPasteboardTypeString];
  NSPerformService(@"Finder/Show Info", board);
}

void MacosWorkspace::launch(const Url& application) {
  [NSWorkspace.sharedWorkspace openApplicationAtURL:url_of(application)
                                      configuration:[NSWorkspaceOpenConfiguration configuration]
                                  completionHandler:nil];
}

void MacosWorkspace::open_link(std::string_view address) {
  NSString* const text = text_of(address);
  const bool has_scheme = address.find(':') != std::string_view::npos;
  NSURL* const url = has_scheme ? [NSURL URLWithString:text] : [NSBundle.mainBundle URLForResource:text
                                                                                     withExtension:nil];
  if (url) [NSWorkspace.sharedWorkspace openURL:url];
}

bool wants_reduced_motion() {
  return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

}  // namespace tarnby
