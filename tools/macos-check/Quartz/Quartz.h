#pragma once

// Stands in for the framework's header; see README.md.

#include <AppKit/AppKit.h>

@class QLPreviewPanel;

@protocol QLPreviewItem
@end

@interface NSURL (QLPreviewConvenienceAdditions) <QLPreviewItem>
@end

@protocol QLPreviewPanelDataSource
- (NSInteger)numberOfPreviewItemsInPreviewPanel:(QLPreviewPanel*)panel;
- (id<QLPreviewItem>)previewPanel:(QLPreviewPanel*)panel previewItemAtIndex:(NSInteger)index;
@end

@interface QLPreviewPanel : NSPanel
@property(assign) id<QLPreviewPanelDataSource> dataSource;
+ (QLPreviewPanel*)sharedPreviewPanel;
- (void)reloadData;
@end
