#include "uninstaller/RelatedFileScan.h"

#include <sys/stat.h>

#include <chrono>
#include <utility>

#include "base/FolderPath.h"
#include "disk/TWDiskUtility.h"
#include "uninstaller/RelatedFileSearch.h"

namespace harbor {
namespace {

// A table that is told of every single item does nothing else; one that waits long looks dead.
constexpr std::chrono::milliseconds kDeliveryInterval{40};

// The applications that would miss a file. What comes with the same package, or starts the same program, is a
// part of the application that is being removed.
std::vector<InstalledApplication> strangers(const ScanRequest& request) {
  const auto ownerOf = [&request](const std::string& path) {
    return request.packages ? request.packages->ownerOf(path) : std::nullopt;
  };
  const auto owner = ownerOf(request.bundlePath);
  const auto& executable = request.bundle.executable;
  std::vector<InstalledApplication> others = request.otherApplications;
  std::erase_if(others, [&](const InstalledApplication& other) {
    return (executable && other.executable == executable) || (owner && ownerOf(other.path) == owner);
  });
  return others;
}

}  // namespace

std::uint64_t sizeOfRelatedFile(const std::string& path) {
  struct stat status;
  if (::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    return static_cast<std::uint64_t>(TWDiskUtility::sizeOfFolder(path));
  }
  return TWDiskUtility::sizeOfItem(path);
}

std::string placeOfRelatedFile(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  auto folder = FolderPath::resolve(path.substr(0, slash + 1));
  if (!folder) return path;
  folder->components.push_back(path.substr(slash + 1));
  return pathOfComponents(folder->components);
}

RelatedFileScan::RelatedFileScan(RunLoop& runLoop, const Text& text, ScanRequest request,
                                 std::function<void(std::vector<ScannedItem>)> found,
                                 std::function<void()> finished)
    : shared_(std::make_shared<Shared>()) {
  shared_->found = std::move(found);
  shared_->finished = std::move(finished);
  runLoop.background([&runLoop, &text, request = std::move(request), shared = shared_] {
    run(runLoop, text, request, shared);
  });
}

RelatedFileScan::~RelatedFileScan() {
  shared_->isOpen = false;
}

void RelatedFileScan::run(RunLoop& runLoop, const Text& text, const ScanRequest& request,
                          const std::shared_ptr<Shared>& shared) {
  const auto isOpen = [&shared] { return shared->isOpen.load(); };
  const RelatedFileSearch search{text, request.homeFolder, request.root, isOpen};
  const RelatedFileCautions cautions(applicationIdentity(request.bundle, text), text, strangers(request),
                                     request.documentFolders);

  std::vector<ScannedItem> batch;
  auto lastDelivery = std::chrono::steady_clock::time_point{};  // long ago: the first item goes at once
  const auto deliver = [&] {
    lastDelivery = std::chrono::steady_clock::now();
    runLoop.async([shared, items = std::exchange(batch, {})]() mutable {
      if (shared->isOpen) shared->found(std::move(items));
    });
  };

  bool isFirst = true;
  search.findRelatedFiles(request.bundlePath, request.bundle, [&](std::vector<FileUrl> urls) {
    for (FileUrl& url : urls) {
      if (!isOpen()) return;
      const std::uint64_t size = sizeOfRelatedFile(url.path);
      auto caution = isFirst ? std::nullopt : cautions.cautionFor(url);
      isFirst = false;
      auto owner = request.packages ? request.packages->ownerOf(url.path) : std::nullopt;
      std::string place = placeOfRelatedFile(url.path);
      batch.push_back(
          {{std::move(url), size, false}, std::move(caution), std::move(owner), std::move(place)});
      if (std::chrono::steady_clock::now() - lastDelivery >= kDeliveryInterval) deliver();
    }
  });
  if (!isOpen()) return;
  if (!batch.empty()) deliver();
  runLoop.async([shared] {
    if (shared->isOpen) shared->finished();
  });
}

}  // namespace harbor
