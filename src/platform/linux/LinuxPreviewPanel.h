// The preview panel as a Qt window. Files are read on a background thread; the panel shows what has arrived
// for the file that was asked for last.
#pragma once

#include <QPointer>
#include <atomic>
#include <functional>
#include <memory>

#include "platform/PreviewPanel.h"
#include "platform/PropertyListCoder.h"
#include "platform/RunLoop.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class PreviewWidget;

class LinuxPreviewPanel : public PreviewPanel {
 public:
  // `sizeOfFolder` is called on a background thread.
  LinuxPreviewPanel(RunLoop& runLoop, const PropertyListCoder& coder, UserTime& userTime,
                    std::function<std::uint64_t(const std::string& path)> sizeOfFolder);
  ~LinuxPreviewPanel() override;

  void preview(const FileUrl& item) override;

 private:
  void follow(QWidget* window);

  RunLoop& runLoop_;
  const PropertyListCoder& coder_;
  UserTime& userTime_;
  std::function<std::uint64_t(const std::string& path)> sizeOfFolder_;
  QPointer<PreviewWidget> widget_;
  QMetaObject::Connection following_;
  std::shared_ptr<std::atomic<int>> latestRequest_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace harbor
