#include "platform/linux/LinuxColourPane.h"

#include <QCloseEvent>
#include <QColorDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <utility>

#include "platform/linux/LinuxColourPanes.h"

namespace harbor {
namespace {

constexpr QSize kSwatch{56, 24};
constexpr int kContainerMargin = 16;

QColor toQColor(const Colour& colour) {
  return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                          static_cast<float>(colour.blue), static_cast<float>(colour.alpha));
}

}  // namespace

class LinuxColourPane::Window : public QWidget {
 public:
  explicit Window(LinuxColourPane& owner) : owner_(&owner) {}

  // Closing reports nothing any more.
  void forget() { owner_ = nullptr; }

 protected:
  void closeEvent(QCloseEvent* event) override {
    event->accept();
    if (auto* owner = std::exchange(owner_, nullptr)) owner->closed();
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
      close();
    } else {
      QWidget::keyPressEvent(event);
    }
  }

 private:
  LinuxColourPane* owner_;
};

std::unique_ptr<ColourPane> LinuxColourPanes::make(ColourPaneEvents events) {
  return std::make_unique<LinuxColourPane>(std::move(events));
}

LinuxColourPane::LinuxColourPane(ColourPaneEvents events)
    : events_(std::move(events)),
      window_(new Window(*this)),
      container_(new QFrame(window_)),
      well_(new QPushButton(container_)) {
  container_->setObjectName(QStringLiteral("container"));
  auto* label = new QLabel(QStringLiteral("Custom Color:"), container_);
  label->setTextFormat(Qt::PlainText);
  label->setBuddy(well_);
  well_->setIconSize(kSwatch);
  well_->setAccessibleName(QStringLiteral("Custom Color"));
  well_->setAccessibleDescription(QStringLiteral("Opens a color chooser"));
  well_->setToolTip(QStringLiteral("Choose a color"));
  well_->setAutoDefault(true);
  QObject::connect(well_, &QPushButton::clicked, well_, [this] { openChooser(); });

  auto* row = new QHBoxLayout(container_);
  row->setContentsMargins(kContainerMargin, kContainerMargin, kContainerMargin, kContainerMargin);
  row->addWidget(label);
  row->addStretch(1);
  row->addWidget(well_);
  auto* layout = new QHBoxLayout(window_);
  layout->addWidget(container_);
  container_->setMinimumWidth(280);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  showColour();
}

LinuxColourPane::~LinuxColourPane() {
  window_->forget();
  if (chooser_) {
    chooser_->disconnect();
    chooser_->hide();
  }
  // The window may be in the middle of closing.
  window_->hide();
  window_->deleteLater();
}

void LinuxColourPane::setContainer(const Colour& background, double cornerRadius) {
  const QColor colour = toQColor(background);
  container_->setStyleSheet(QStringLiteral("#container { background-color: rgba(%1, %2, %3, %4); "
                                           "border-radius: %5px; }")
                                .arg(colour.red())
                                .arg(colour.green())
                                .arg(colour.blue())
                                .arg(colour.alpha())
                                .arg(cornerRadius));
}

void LinuxColourPane::setWellColour(const Colour& colour) {
  colour_ = colour;
  showColour();
}

void LinuxColourPane::showColour() {
  QPixmap swatch(kSwatch * window_->devicePixelRatioF());
  swatch.setDevicePixelRatio(window_->devicePixelRatioF());
  swatch.fill(Qt::transparent);
  QPainter painter(&swatch);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(toQColor(colour_.withAlpha(1.0)));
  painter.setPen(QColor(0, 0, 0, 90));
  painter.drawRoundedRect(QRectF(QPointF(0, 0), kSwatch).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  painter.end();
  well_->setIcon(QIcon(swatch));
}

void LinuxColourPane::setTitle(const std::string& title) {
  window_->setWindowTitle(QString::fromStdString(title));
}

void LinuxColourPane::showWindow() {
  window_->show();
  well_->setFocus();
}

void LinuxColourPane::orderFrontRegardless() {
  window_->raise();
  window_->activateWindow();
}

void LinuxColourPane::openChooser() {
  if (!chooser_) {
    chooser_ = new QColorDialog(window_);
    chooser_->setAttribute(Qt::WA_DeleteOnClose);
    // The desktop's own chooser reports a colour only when it is closed.
    chooser_->setOptions(QColorDialog::DontUseNativeDialog | QColorDialog::NoButtons);
    chooser_->setWindowTitle(QStringLiteral("Colors"));
    chooser_->setCurrentColor(toQColor(colour_.withAlpha(1.0)));
    QObject::connect(chooser_, &QColorDialog::currentColorChanged, chooser_, [this](const QColor& colour) {
      chosen({colour.redF(), colour.greenF(), colour.blueF(), 1.0});
    });
  }
  chooser_->show();
  chooser_->raise();
  chooser_->activateWindow();
}

void LinuxColourPane::chosen(const Colour& colour) {
  setWellColour(colour);
  if (events_.colourChanged) events_.colourChanged();
}

void LinuxColourPane::closed() {
  if (chooser_) {
    chooser_->disconnect();
    chooser_->close();
  }
  // The handler may destroy this object, its own events included.
  if (const auto disappeared = std::move(events_.viewDidDisappear)) disappeared();
}

}  // namespace harbor
