#include "disk/FolderMeasure.h"

#include <fcntl.h>

#include <array>
#include <vector>

#include "disk/TreeWalk.h"

namespace harbor {
namespace {

class MeasuringVisitor : public TreeVisitor {
 public:
  Verdict found(const Found& item) override {
    if (item.type == ItemType::folder) return Verdict::enter;
    const auto facts = factsOfItem(item.parent, item.name);
    if (!facts) return Verdict::goOn;
    if (facts->type == ItemType::folder) return Verdict::enter;
    count(*facts);
    return Verdict::goOn;
  }
  void entered(const ItemFacts& folder) override { count(folder); }
  Verdict couldNotEnter(const Found& item, int) override {
    if (const auto facts = factsOfItem(item.parent, item.name)) count(*facts);
    return Verdict::goOn;
  }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  const FolderMeasure& measure() const { return measure_; }

 private:
  void count(const ItemFacts& facts) {
    if (facts.isMountRoot) return;
    measure_.bytes += facts.bytes;
    ++measure_.items;
  }

  FolderMeasure measure_;
};

class MatchMeasuringVisitor : public TreeVisitor {
 public:
  explicit MatchMeasuringVisitor(const std::function<bool(std::string_view)>& matches) : matches_(matches) {}

  Verdict found(const Found& item) override {
    if (matches_(item.name)) {
      const auto facts = factsOfItem(item.parent, item.name);
      if (!facts || facts->isMountRoot) return Verdict::goOn;
      measure_ += measureItem(item.parent, item.name);
      if (facts->type == ItemType::folder) ++measure_.items;
      return Verdict::goOn;
    }
    if (item.type != ItemType::unknown) {
      return item.type == ItemType::folder ? Verdict::enter : Verdict::goOn;
    }
    const auto facts = factsOfItem(item.parent, item.name);
    return facts && facts->type == ItemType::folder ? Verdict::enter : Verdict::goOn;
  }
  void entered(const ItemFacts&) override {}
  Verdict couldNotEnter(const Found&, int) override { return Verdict::goOn; }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  const FolderMeasure& measure() const { return measure_; }

 private:
  const std::function<bool(std::string_view)>& matches_;
  FolderMeasure measure_;
};

template <typename Visitor>
FolderMeasure measureWithTwo(FileDescriptor folder, Visitor first, Visitor second) {
  if (!folder) return {};
  walkBelow(std::move(folder), FolderReader::Order::asStored, {&first, &second});
  FolderMeasure sum = first.measure();
  sum += second.measure();
  return sum;
}

FileDescriptor openFollowing(const std::string& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

FolderMeasure measureFolder(const std::string& path) {
  return measureWithTwo(openFollowing(path), MeasuringVisitor(), MeasuringVisitor());
}

FolderMeasure measureItem(int parent, const char* name) {
  const auto facts = factsOfItem(parent, name);
  if (!facts || facts->isMountRoot) return {};
  if (facts->type != ItemType::folder) return {facts->bytes, 1};
  return measureWithTwo(
      FileDescriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)),
      MeasuringVisitor(), MeasuringVisitor());
}

FolderMeasure measureMatches(const std::string& folder,
                             const std::function<bool(std::string_view name)>& matches) {
  return measureWithTwo(openFollowing(folder), MatchMeasuringVisitor(matches),
                        MatchMeasuringVisitor(matches));
}

}  // namespace harbor
