// One run of the related-file search in the background: every item is sized and handed to the main thread as
// soon as it is known. Dropping the scan ends it; nothing is delivered afterwards.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/RunLoop.h"
#include "platform/SoftwarePackages.h"
#include "uninstaller/RelatedFileCautions.h"
#include "uninstaller/UninstalledApp.h"

namespace harbor {

struct ScannedItem {
  AppRelatedData data;
  std::optional<std::string> caution;
  std::optional<PackageOwner> owner = std::nullopt;  // the package that the item came with
  std::string place = {};                            // see placeOfRelatedFile
};

struct ScanRequest {
  std::string bundlePath;
  BundleInformation bundle;
  std::string homeFolder;
  std::string root;  // see RelatedFileSearch
  std::vector<InstalledApplication> otherApplications;
  std::vector<std::string> documentFolders;
  const SoftwarePackages* packages = nullptr;  // null: nothing came with a package
};

// The bytes of an item as a review counts them: a folder with everything below it, anything else by itself, a
// link as the link; 0 for what is gone.
std::uint64_t sizeOfRelatedFile(const std::string& path);

// Where an item really lies: its path with the links above it resolved, while the item itself may be one. The
// path as it is where its folder cannot be reached.
std::string placeOfRelatedFile(const std::string& path);

class RelatedFileScan {
 public:
  // Starts at once. `found` is called with the items in search order, a few or many at a time; `finished`
  // once, after the last of them. Both on the main thread.
  RelatedFileScan(RunLoop& runLoop, const Text& text, ScanRequest request,
                  std::function<void(std::vector<ScannedItem>)> found, std::function<void()> finished);
  ~RelatedFileScan();
  RelatedFileScan(const RelatedFileScan&) = delete;
  RelatedFileScan& operator=(const RelatedFileScan&) = delete;

 private:
  // Shared with the background task, which outlives the scan by the time it takes to notice.
  struct Shared {
    std::atomic<bool> isOpen{true};
    std::function<void(std::vector<ScannedItem>)> found;  // main thread only
    std::function<void()> finished;                       // main thread only
  };

  static void run(RunLoop& runLoop, const Text& text, const ScanRequest& request,
                  const std::shared_ptr<Shared>& shared);

  std::shared_ptr<Shared> shared_;
};

}  // namespace harbor
