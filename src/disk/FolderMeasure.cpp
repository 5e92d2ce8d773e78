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
  void entered(const ItemFacts& folder, std::size_t depth) override {
    count(folder);
    if (depth == 1) directFolderBytes_ += folder.bytes;
  }
  Verdict couldNotEnter(const Found& item, int) override {
    if (const auto facts = factsOfItem(item.parent, item.name)) count(*facts);
    return Verdict::goOn;
  }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  const FolderMeasure& measure() const { return measure_; }
  // The part of the measure that is the own entries of the folders directly inside.
  std::uint64_t directFolderBytes() const { return directFolderBytes_; }

 private:
  void count(const ItemFacts& facts) {
    if (facts.isMountRoot) return;
    measure_.bytes += facts.bytes;
    ++measure_.items;
  }

  FolderMeasure measure_;
  std::uint64_t directFolderBytes_ = 0;
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
  void entered(const ItemFacts&, std::size_t) override {}
  Verdict couldNotEnter(const Found&, int) override { return Verdict::goOn; }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  const FolderMeasure& measure() const { return measure_; }

 private:
  const std::function<bool(std::string_view)>& matches_;
  FolderMeasure measure_;
};

class SelectionMeasuringVisitor : public TreeVisitor {
 public:
  explicit SelectionMeasuringVisitor(const FileSelection& selection) : selection_(selection) {}

  Verdict found(const Found& item) override {
    const auto facts = factsOfItem(item.parent, item.name);
    if (!facts || facts->isMountRoot) return Verdict::goOn;
    if (facts->type == ItemType::folder)
      return selection_.enters(*facts, item.name) ? Verdict::enter : Verdict::goOn;
    if (selection_.takes(item, *facts)) measure_ += {facts->bytes, 1};
    return Verdict::goOn;
  }
  void entered(const ItemFacts&, std::size_t) override {}
  Verdict couldNotEnter(const Found&, int) override { return Verdict::goOn; }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  const FolderMeasure& measure() const { return measure_; }

 private:
  const FileSelection& selection_;
  FolderMeasure measure_;
};

template <typename Visitor>
FolderMeasure measureWithTwo(FileDescriptor folder, Visitor& first, Visitor& second) {
  if (!folder) return {};
  walkBelow(std::move(folder), FolderReader::Order::asStored, {&first, &second});
  FolderMeasure sum = first.measure();
  sum += second.measure();
  return sum;
}

FolderMeasure measureOpen(FileDescriptor folder) {
  MeasuringVisitor first;
  MeasuringVisitor second;
  return measureWithTwo(std::move(folder), first, second);
}

}  // namespace

FolderMeasure measureFolder(const std::string& path) {
  return measureOpen(FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

FolderMeasure measureItem(int parent, const char* name) {
  const auto facts = factsOfItem(parent, name);
  if (!facts || facts->isMountRoot) return {};
  if (facts->type != ItemType::folder) return {facts->bytes, 1};
  return measureOpen(FileDescriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
}

FolderMeasure measureContents(FileDescriptor folder) {
  MeasuringVisitor first;
  MeasuringVisitor second;
  FolderMeasure measure = measureWithTwo(std::move(folder), first, second);
  measure.bytes -= first.directFolderBytes() + second.directFolderBytes();
  return measure;
}

FolderMeasure measureMatches(FileDescriptor folder,
                             const std::function<bool(std::string_view name)>& matches) {
  MatchMeasuringVisitor first(matches);
  MatchMeasuringVisitor second(matches);
  return measureWithTwo(std::move(folder), first, second);
}

FolderMeasure measureFileByFile(FileDescriptor folder, const FileSelection& selection) {
  SelectionMeasuringVisitor first(selection);
  SelectionMeasuringVisitor second(selection);
  return measureWithTwo(std::move(folder), first, second);
}

FolderMeasure measureEntries(const FileDescriptor& folder,
                             const std::function<bool(std::string_view name)>& matches) {
  FolderMeasure sum;
  if (!folder) return sum;
  FolderReader reader(FolderReader::Order::asStored);
  for (bool atEnd = false; !atEnd;) {
    const auto result = reader.read(folder.get(), FolderReader::kLargestBatch);
    atEnd = result.atEnd;
    for (const FolderEntry& entry : result.entries) {
      if (!matches(entry.name)) continue;
      sum += measureItem(folder.get(), entry.name);
      const auto facts = factsOfItem(folder.get(), entry.name);
      if (facts && !facts->isMountRoot && facts->type == ItemType::folder) ++sum.items;
    }
  }
  return sum;
}

}  // namespace harbor
