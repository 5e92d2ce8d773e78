#include "platform/linux/PreviewWidget.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

#include "platform/linux/DisplayText.h"

namespace harbor {
namespace {

constexpr int kIconSize = 96;

QLabel* plainLabel(QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

PreviewWidget::PreviewWidget()
    : name_(plainLabel(this)),
      facts_(plainLabel(this)),
      pages_(new QStackedWidget(this)),
      picture_(new QLabel(pages_)),
      text_(new QPlainTextEdit(pages_)) {
  QFont bold = name_->font();
  bold.setBold(true);
  name_->setFont(bold);
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setMinimumSize(1, 1);
  picture_->setAccessibleName(tr("Picture"));
  text_->setReadOnly(true);
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
  resize(640, 480);
}

int PreviewWidget::begin(const FileUrl& item) {
  const QString name = withoutControls(lastPathComponent(item.path));
  setWindowTitle(name);
  name_->setText(name);
  facts_->setText(tr("Loading…"));
  picture_->clear();
  text_->clear();
  pages_->setCurrentWidget(picture_);
  return ++request_;
}

void PreviewWidget::finish(int request, const PreviewContent& content) {
  if (request != request_) return;
  facts_->setText(content.facts);
  if (!content.picture.isNull()) {
    const QSize room = pages_->size() * devicePixelRatioF();
    QImage picture = content.picture;
    if (picture.width() > room.width() || picture.height() > room.height()) {
      picture = picture.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    QPixmap pixmap = QPixmap::fromImage(picture);
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    picture_->setPixmap(pixmap);
    pages_->setCurrentWidget(picture_);
  } else if (!content.text.isEmpty()) {
    text_->setPlainText(content.text);
    pages_->setCurrentWidget(text_);
    text_->setFocus();
  } else {
    const auto icon = content.isFolder ? QStyle::SP_DirIcon : QStyle::SP_FileIcon;
    picture_->setPixmap(style()->standardIcon(icon).pixmap(kIconSize, kIconSize));
    pages_->setCurrentWidget(picture_);
  }
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
