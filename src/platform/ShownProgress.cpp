#include "platform/ShownProgress.h"

#include <cstddef>
#include <utility>

#include "base/ByteCount.h"

namespace harbor {
namespace {

std::string withThousandsApart(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t end = digits.size(); end > 3; end -= 3)
    digits.insert(end - 3, ",");
  return digits;
}

}  // namespace

ShownProgress::Lines ShownProgress::linesFor(const CleanupStatus::Snapshot& snapshot) {
  return {"Cleaning up: " + snapshot.what, withThousandsApart(snapshot.items) +
                                               (snapshot.items == 1 ? " item, " : " items, ") +
                                               formatByteCount(snapshot.bytes) + " so far"};
}

ShownProgress::ShownProgress(RunLoop& runLoop, const CleanupStatus& status,
                             std::function<void(const Lines&)> show)
    : updates_(runLoop.repeat(kInterval, [this, &status, show = std::move(show)] {
        passed_ += kInterval;
        if (passed_ >= kDelay) show(linesFor(status.snapshot()));
      })) {}

}  // namespace harbor
