// Opening a file that somebody else names.
#pragma once

#include <string>

class QFile;

namespace harbor {

// Opens the file for reading; false when there is none or it is no regular one. What was looked at is what is
// opened, and a named pipe or device in place of the file does not hold up the caller.
bool openRegularFile(QFile& file, const std::string& path);

}  // namespace harbor
