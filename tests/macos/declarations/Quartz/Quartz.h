// The umbrella by which programs reach Quick Look's panel.
#pragma once

#import <QuickLookUI/QuickLookUI.h>
