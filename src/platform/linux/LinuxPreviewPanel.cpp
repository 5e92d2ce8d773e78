#include "platform/linux/LinuxPreviewPanel.h"

#include <memory>
#include <utility>

#include "platform/linux/PreviewWidget.h"

namespace harbor {
namespace {

// More than any panel shows; a picture is scaled down to it while it is read.
constexpr QSize kLargestPicture{2048, 2048};

}  // namespace

LinuxPreviewPanel::LinuxPreviewPanel(RunLoop& runLoop, const PropertyListCoder& coder, UserTime& userTime,
                                     std::function<std::uint64_t(const std::string& path)> sizeOfFolder)
    : runLoop_(runLoop), coder_(coder), userTime_(userTime), sizeOfFolder_(std::move(sizeOfFolder)) {}

LinuxPreviewPanel::~LinuxPreviewPanel() {
  delete widget_;
}

void LinuxPreviewPanel::preview(const FileUrl& item) {
  if (!widget_) widget_ = new PreviewWidget;
  const int request = widget_->begin(item);
  widget_->show();
  userTime_.bringToFront(*widget_);
  // Only values cross to the other thread; the pointer to the widget is looked at on this one alone.
  const auto deliver = [widget = widget_, request](const PreviewContent& content) {
    if (widget) widget->finish(request, content);
  };
  runLoop_.background([&loop = runLoop_, &coder = coder_, sizeOfFolder = sizeOfFolder_, item, deliver] {
    auto content = std::make_shared<PreviewContent>(loadPreview(item, coder, sizeOfFolder, kLargestPicture));
    loop.async([deliver, content] { deliver(*content); });
  });
}

}  // namespace harbor
