#include "platform/linux/LinuxPreviewPanel.h"

#include <QApplication>
#include <memory>
#include <utility>

#include "platform/linux/PreviewWidget.h"

namespace harbor {

LinuxPreviewPanel::LinuxPreviewPanel(RunLoop& runLoop, const PropertyListCoder& coder, UserTime& userTime,
                                     std::function<std::uint64_t(const std::string& path)> sizeOfFolder)
    : runLoop_(runLoop), coder_(coder), userTime_(userTime), sizeOfFolder_(std::move(sizeOfFolder)) {}

LinuxPreviewPanel::~LinuxPreviewPanel() {
  delete widget_;
}

void LinuxPreviewPanel::preview(const FileUrl& item) {
  if (!widget_) widget_ = new PreviewWidget;
  const int request = widget_->begin(item);
  follow(QApplication::activeWindow());
  widget_->show();
  userTime_.bringToFront(*widget_);
  // Only values cross to the other thread; the pointer to the widget is looked at on this one alone.
  const auto deliver = [widget = widget_, request](const PreviewContent& content) {
    if (widget) widget->finish(request, content);
  };
  *latestRequest_ = request;
  runLoop_.background([&loop = runLoop_, &coder = coder_, sizeOfFolder = sizeOfFolder_, item, deliver,
                       request, latest = latestRequest_, room = widget_->pictureRoom()] {
    // Who goes down a list of large folders must not wait for all of them.
    if (*latest != request) return;
    auto content = std::make_shared<PreviewContent>(loadPreview(item, coder, sizeOfFolder, room));
    loop.async([deliver, content] { deliver(*content); });
  });
}

// The panel belongs to the window that asked for it, and goes with it.
void LinuxPreviewPanel::follow(QWidget* window) {
  if (!window || window == widget_) return;
  if (!widget_->isVisible()) widget_->placeBeside(*window);
  QObject::disconnect(following_);
  following_ = QObject::connect(window, &QObject::destroyed, widget_, &QWidget::close);
}

}  // namespace harbor
