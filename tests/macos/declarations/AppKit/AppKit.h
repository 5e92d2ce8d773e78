// What the Mac platform uses of AppKit.
#pragma once

#import <AppKit/Application.h>
#import <AppKit/Controls.h>
#import <AppKit/Drawing.h>
#import <AppKit/Menus.h>
#import <AppKit/Windows.h>
#import <Foundation/Foundation.h>
