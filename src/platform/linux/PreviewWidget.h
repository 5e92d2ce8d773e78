// The widgets of the preview panel. However odd the content is, no single event takes long.
#pragma once

#include <QTimer>
#include <QWidget>

#include "platform/linux/PreviewContent.h"

class QLabel;
class QPlainTextEdit;
class QStackedWidget;

namespace harbor {

class PictureView;

class PreviewWidget : public QWidget {
  Q_OBJECT
 public:
  PreviewWidget();

  // Shows the file's name while its contents are on their way; the number tells this request from later ones.
  int begin(const FileUrl& item);
  // The pixels that a picture can make use of.
  QSize pictureRoom() const;
  // Puts the hidden panel beside the window, or above its middle where there is no room beside it.
  void placeBeside(const QWidget& window);
  // Shows the contents, unless another file has been asked for since.
  void finish(int request, const PreviewContent& content);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showText(const QString& text);
  // A long text is laid out piece by piece, so that the events in between are not kept waiting.
  void appendText();

  int request_ = 0;
  QLabel* name_;
  QLabel* facts_;
  QStackedWidget* pages_;
  PictureView* picture_;
  QPlainTextEdit* text_;
  QString remainingText_;
  QTimer textTimer_;
};

}  // namespace harbor
