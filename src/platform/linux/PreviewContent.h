// What a preview shows of a file: a picture, text, or nothing but facts. Loading reads no more than a bounded
// part of the file, follows no link, opens nothing that could block, and executes nothing.
#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <functional>

#include "base/FileUrl.h"
#include "platform/PropertyListCoder.h"

namespace harbor {

struct PreviewContent {
  QString facts;  // one line: kind, size, date
  QImage picture;
  QString text;
  bool isFolder = false;
};

// Safe on any thread. `largest`: the size to which a picture is scaled down, in pixels. `sizeOfFolder`: the
// bytes of everything below a folder.
PreviewContent loadPreview(const FileUrl& item, const PropertyListCoder& coder,
                           const std::function<std::uint64_t(const std::string& path)>& sizeOfFolder,
                           QSize largest);

}  // namespace harbor
