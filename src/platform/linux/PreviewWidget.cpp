#include "platform/linux/PreviewWidget.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStackedWidget>
#include <QStyle>
#include <QTextCursor>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/linux/DisplayText.h"

namespace harbor {
namespace {

constexpr int kIconSize = 96;
constexpr int kLongestLine = 200;  // characters; laying out a line takes more than its share when it is long
constexpr int kPieceOfText = 500;
constexpr QSize kDefaultSize{640, 480};
constexpr QSize kSmallestSize{280, 200};

QLabel* plainLabel(QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

// The text with lines that are too long broken.
QString folded(const QString& text) {
  QString result;
  result.reserve(text.size() + text.size() / kLongestLine);
  for (const QString& line : text.split(QLatin1Char('\n'))) {
    qsizetype start = 0;
    while (line.size() - start > kLongestLine) {
      qsizetype length = kLongestLine;
      if (line.at(start + length).isLowSurrogate()) --length;
      result += line.mid(start, length) + QLatin1Char('\n');
      start += length;
    }
    result += line.mid(start) + QLatin1Char('\n');
  }
  result.chop(1);
  return result;
}

}  // namespace

// Shows a picture as large as there is room for it, but never larger than it is.
class PictureView : public QWidget {
 public:
  using QWidget::QWidget;

  void setPicture(QImage picture) {
    picture_ = std::move(picture);
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    if (picture_.isNull()) return;
    QSizeF size = picture_.deviceIndependentSize();
    if (size.width() > width() || size.height() > height()) size.scale(this->size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, picture_);
  }

 private:
  QImage picture_;
};

PreviewWidget::PreviewWidget()
    : name_(plainLabel(this)),
      facts_(plainLabel(this)),
      pages_(new QStackedWidget(this)),
      picture_(new PictureView(pages_)),
      text_(new QPlainTextEdit(pages_)) {
  QFont bold = name_->font();
  bold.setBold(true);
  name_->setFont(bold);
  picture_->setAccessibleName(tr("Picture"));
  text_->setReadOnly(true);
  text_->setUndoRedoEnabled(false);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setAccessibleName(tr("Contents"));
  text_->setTabChangesFocus(true);
  pages_->addWidget(picture_);
  pages_->addWidget(text_);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(name_);
  layout->addWidget(facts_);
  layout->addWidget(pages_, 1);
  setMinimumSize(kSmallestSize);
  resize(kDefaultSize.boundedTo(screen()->availableSize()));
  connect(&textTimer_, &QTimer::timeout, this, [this] { appendText(); });
}

QSize PreviewWidget::pictureRoom() const {
  // Room to let the window grow in, without a second look at the file.
  return kDefaultSize * 2 * devicePixelRatioF();
}

void PreviewWidget::placeBeside(const QWidget& window) {
  const QRect room = window.screen()->availableGeometry();
  const QRect anchor = window.frameGeometry();
  resize(size().boundedTo(room.size()));
  // The frame that the window manager will draw is taken to be that of the other window.
  const QSize frame = size() + (anchor.size() - window.size());
  QRect place(QPoint(), frame);
  if (room.right() - anchor.right() >= frame.width()) {
    place.moveTopLeft(anchor.topRight() + QPoint(1, 0));
  } else if (anchor.left() - room.left() >= frame.width()) {
    place.moveTopRight(anchor.topLeft() - QPoint(1, 0));
  } else {
    place.moveCenter(anchor.center());
  }
  move(std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - frame.width())),
       std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom() + 1 - frame.height())));
}

int PreviewWidget::begin(const FileUrl& item) {
  const QString name = withoutControls(lastPathComponent(item.path));
  setWindowTitle(name);
  name_->setText(name);
  facts_->setText(tr("Loading…"));
  picture_->setPicture({});
  textTimer_.stop();
  text_->clear();
  pages_->setCurrentWidget(picture_);
  return ++request_;
}

void PreviewWidget::finish(int request, const PreviewContent& content) {
  if (request != request_) return;
  facts_->setText(content.facts);
  if (!content.picture.isNull()) {
    QImage picture = content.picture;
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture_->setPicture(std::move(picture));
  } else if (!content.text.isEmpty()) {
    showText(content.text);
  } else {
    const auto icon = content.isFolder ? QStyle::SP_DirIcon : QStyle::SP_FileIcon;
    picture_->setPicture(
        style()->standardIcon(icon).pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()).toImage());
  }
}

void PreviewWidget::showText(const QString& text) {
  remainingText_ = folded(text);
  text_->clear();
  pages_->setCurrentWidget(text_);
  text_->setFocus();
  textTimer_.start(0);
}

void PreviewWidget::appendText() {
  qsizetype length = std::min<qsizetype>(kPieceOfText, remainingText_.size());
  if (length < remainingText_.size() && remainingText_.at(length).isLowSurrogate()) --length;
  QTextCursor end(text_->document());
  end.movePosition(QTextCursor::End);
  end.insertText(remainingText_.left(length));
  remainingText_.remove(0, length);
  if (remainingText_.isEmpty()) textTimer_.stop();
}

void PreviewWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Space ||
      event->matches(QKeySequence::Close)) {
    close();
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace harbor
