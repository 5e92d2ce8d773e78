// What the Mac platform uses of Foundation.
#pragma once

#import <Foundation/Files.h>
#import <Foundation/Objects.h>
#import <Foundation/Processes.h>
#import <dispatch/dispatch.h>
