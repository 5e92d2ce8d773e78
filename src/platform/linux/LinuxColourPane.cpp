#include "platform/linux/LinuxColourPane.h"

#include <QColorDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <utility>

#include "platform/linux/LinuxColourPanes.h"
#include "platform/linux/PaneWindow.h"

namespace harbor {
namespace {

constexpr QSize kSwatch{56, 24};
constexpr int kContainerMargin = 16;

QColor toQColor(const Colour& colour) {
  return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                          static_cast<float>(colour.blue), static_cast<float>(colour.alpha));
}

}  // namespace

std::unique_ptr<ColourPane> LinuxColourPanes::make(ColourPaneEvents events) {
  return std::make_unique<LinuxColourPane>(std::move(events), userTime_);
}

LinuxColourPane::LinuxColourPane(ColourPaneEvents events, UserTime& userTime)
    : events_(std::move(events)),
      userTime_(userTime),
      window_(new PaneWindow([this] { closed(); })),
      well_(new QPushButton(&window_->container())) {
  QFrame* const container = &window_->container();
  auto* label = new QLabel(QStringLiteral("Custom Color:"), container);
  label->setTextFormat(Qt::PlainText);
  label->setBuddy(well_);
  well_->setIconSize(kSwatch);
  well_->setAccessibleName(QStringLiteral("Custom Color"));
  well_->setAccessibleDescription(QStringLiteral("Opens a color chooser"));
  well_->setToolTip(QStringLiteral("Choose a color"));
  well_->setAutoDefault(true);
  QObject::connect(well_, &QPushButton::clicked, well_, [this] { openChooser(); });

  auto* row = new QHBoxLayout(container);
  row->setContentsMargins(kContainerMargin, kContainerMargin, kContainerMargin, kContainerMargin);
  row->addWidget(label);
  row->addStretch(1);
  row->addWidget(well_);
  container->setMinimumWidth(280);
  showColour();
}

LinuxColourPane::~LinuxColourPane() {
  if (chooser_) {
    chooser_->disconnect();
    chooser_->hide();
  }
  window_->dismiss();
}

void LinuxColourPane::setContainer(const Colour& background, double cornerRadius) {
  window_->setContainer(background, cornerRadius);
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
  userTime_.bringToFront(*window_);
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
