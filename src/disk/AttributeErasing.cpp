#include "disk/AttributeErasing.h"

#include <fcntl.h>

#include "base/FileDescriptor.h"

namespace harbor {

void AttributeErasing::erase(int descriptor) {
  bool hadOne = false;
  for (const std::string& name : names_) {
    if (removeAttribute(descriptor, name.c_str())) hadOne = true;
  }
  if (hadOne) ++items_;
}

TreeVisitor::Verdict AttributeErasing::found(const Found& item) {
  const auto facts = factsOfItem(item.parent, item.name);
  if (!facts) return Verdict::goOn;
  if (facts->isMountRoot) return Verdict::mountPoint;
  const bool isFolder = facts->type == ItemType::folder;
  if (!isFolder && facts->type != ItemType::file) return Verdict::goOn;
  const FileDescriptor opened(
      ::openat(item.parent, item.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (opened) erase(opened.get());
  return isFolder ? Verdict::enter : Verdict::goOn;
}

}  // namespace harbor
