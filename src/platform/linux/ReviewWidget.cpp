#include "platform/linux/ReviewWidget.h"

#include <QCloseEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/linux/DisplayText.h"
#include "platform/linux/ReviewTable.h"
#include "platform/linux/ReviewTableModel.h"

namespace harbor {
namespace {

constexpr QSize kDefaultSize{920, 560};
constexpr QSize kSmallestSize{560, 320};
constexpr int kMargin = 12;
constexpr int kSpinnerDistance = 24;

QLabel* plainLabel(QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ReviewWidget::ReviewWidget(ReviewWindowEvents events)
    : events_(std::move(events)),
      model_(new ReviewTableModel(this)),
      table_(new ReviewTable(*model_, this)),
      notice_(plainLabel(this)),
      noticeButton_(new QPushButton(this)),
      spinner_(new QFrame(this)),
      spinnerMessage_(plainLabel(spinner_)),
      summary_(plainLabel(this)),
      status_(plainLabel(this)),
      deleteButton_(new QPushButton(tr("Delete"), this)) {
  makeSpinner();
  deleteButton_->setAutoDefault(true);  // Return presses it once the keyboard is there
  deleteButton_->setAccessibleDescription(tr("Moves the selected files to the Trash"));
  summary_->setMinimumWidth(160);

  auto* const texts = new QVBoxLayout;
  texts->addWidget(summary_);
  texts->addWidget(status_);
  auto* const bottom = new QHBoxLayout;
  bottom->addLayout(texts, 1);
  bottom->addWidget(deleteButton_, 0, Qt::AlignVCenter);
  // The spinner lies over the lower end of the table.
  auto* const overlay = new QVBoxLayout;
  overlay->setContentsMargins(0, 0, 0, kSpinnerDistance);
  overlay->addWidget(spinner_, 0, Qt::AlignHCenter | Qt::AlignBottom);
  auto* const content = new QGridLayout;
  content->addWidget(table_, 0, 0);
  content->addLayout(overlay, 0, 0);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  auto* const top = new QHBoxLayout;
  top->addWidget(notice_, 1);
  top->addWidget(noticeButton_, 0, Qt::AlignVCenter);
  layout->addLayout(top);
  layout->addLayout(content, 1);
  layout->addLayout(bottom);

  setMinimumSize(kSmallestSize);
  resize(kDefaultSize.boundedTo(screen()->availableSize()));
  setNotice(std::nullopt);
  connect(noticeButton_, &QPushButton::clicked, this, [this] {
    QTimer::singleShot(0, this, [this] {
      if (const auto clicked = events_.noticeButtonClicked) clicked();
    });
  });
  connect(deleteButton_, &QPushButton::clicked, this, [this] {
    QTimer::singleShot(0, this, [this] {
      if (const auto clicked = events_.deleteButtonClicked) clicked();
    });
  });
  connect(model_, &ReviewTableModel::ticksRequested, this, [this](const QList<int>& rows, bool isSelected) {
    if (events_.selectionChanged) events_.selectionChanged({rows.begin(), rows.end()}, isSelected);
  });
  connect(table_, &ReviewTable::revealClicked, this,
          [this](int row) { report(&ReviewWindowEvents::revealClicked, row); });
  connect(table_, &ReviewTable::quickLookClicked, this,
          [this](int row) { report(&ReviewWindowEvents::quickLookClicked, row); });
}

void ReviewWidget::makeSpinner() {
  auto* const bar = new QProgressBar(spinner_);
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setFixedSize(220, 12);
  spinnerMessage_->setWordWrap(false);
  auto* const layout = new QVBoxLayout(spinner_);
  layout->addWidget(spinnerMessage_, 0, Qt::AlignHCenter);
  layout->addWidget(bar, 0, Qt::AlignHCenter);
  spinner_->setAutoFillBackground(true);
  spinner_->setBackgroundRole(QPalette::Window);
  spinner_->setFrameShape(QFrame::StyledPanel);
  spinner_->hide();
}

void ReviewWidget::setSummary(const std::optional<std::string>& text) {
  summary_->setVisible(text.has_value());
  summary_->setText(QString::fromStdString(text.value_or(std::string())));
}

void ReviewWidget::setStatus(const std::string& text) {
  status_->setText(QString::fromStdString(text));
}

void ReviewWidget::setNotice(const std::optional<ReviewNotice>& notice) {
  notice_->setVisible(notice.has_value());
  noticeButton_->setVisible(notice && !notice->buttonTitle.empty());
  if (!notice) return;
  notice_->setText(withoutControls(notice->text));
  noticeButton_->setText(QString::fromStdString(notice->buttonTitle));
}

void ReviewWidget::setDeleteButton(DeleteButton state) {
  deleteButton_->setVisible(state != DeleteButton::hidden);
  deleteButton_->setEnabled(state == DeleteButton::enabled);
}

void ReviewWidget::setSpinner(const std::optional<std::string>& message) {
  spinner_->setVisible(message.has_value());
  spinnerMessage_->setText(QString::fromStdString(message.value_or(std::string())));
}

void ReviewWidget::report(std::function<void(std::size_t row)> ReviewWindowEvents::*handler, int row) {
  QTimer::singleShot(0, this, [this, handler, row] {
    if (const auto call = events_.*handler) call(static_cast<std::size_t>(row));
  });
}

void ReviewWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
    close();
    return;
  }
  QWidget::keyPressEvent(event);
}

void ReviewWidget::closeEvent(QCloseEvent* event) {
  event->accept();
  QTimer::singleShot(0, this, [this] {
    if (const auto disappeared = std::exchange(events_.viewDidDisappear, nullptr)) disappeared();
  });
}

}  // namespace harbor
