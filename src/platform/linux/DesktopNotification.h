// A passing message to the user through the desktop's notification service.
#pragma once

namespace harbor {

// Texts in UTF-8, plain. Does not wait; nothing happens where the desktop has no such service.
void notifyDesktop(const char* summary, const char* body);

}  // namespace harbor
