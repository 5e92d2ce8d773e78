// An observer of a notification centre as a Subscription.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>

#include "base/Subscription.h"

namespace harbor {

// Calls the handler for each notification of that name, from any sender, before the post of it returns.
Subscription observe(NSNotificationCenter* centre, NSNotificationName name, std::function<void()> handler);

}  // namespace harbor
