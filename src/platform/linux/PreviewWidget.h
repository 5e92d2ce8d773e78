// The widgets of the preview panel.
#pragma once

#include <QWidget>

#include "platform/linux/PreviewContent.h"

class QLabel;
class QPlainTextEdit;
class QStackedWidget;

namespace harbor {

class PreviewWidget : public QWidget {
  Q_OBJECT
 public:
  PreviewWidget();

  // Shows the file's name while its contents are on their way; the number tells this request from later ones.
  int begin(const FileUrl& item);
  // Shows the contents, unless another file has been asked for since.
  void finish(int request, const PreviewContent& content);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int request_ = 0;
  QLabel* name_;
  QLabel* facts_;
  QStackedWidget* pages_;
  QLabel* picture_;
  QPlainTextEdit* text_;
};

}  // namespace harbor
