#include "platform/linux/TemplateImage.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <QStandardPaths>
#include <array>
#include <cmath>

// The macro must stand outside of any namespace.
static void loadResources() {
  Q_INIT_RESOURCE(images);
}

namespace harbor {
namespace {

constexpr double kSide = 16.0;
constexpr std::array kSizes{16, 22, 24, 32, 48, 64};
const QColor kDark(0x2e, 0x34, 0x36);
const QColor kLight(0xf5, 0xf5, 0xf5);

// Reads the commands of a path's "d" attribute. Numbers are separated by white space or commas.
QPainterPath pathFromCommands(const QString& commands) {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  static const QRegularExpression token(QStringLiteral("[MLCZ]|-?[0-9.]+"));
  QChar command;
  std::vector<double> numbers;
  auto tokens = token.globalMatch(commands);
  while (tokens.hasNext()) {
    const QString text = tokens.next().captured();
    if (text.at(0).isLetter()) {
      command = text.at(0);
      numbers.clear();
      if (command == QLatin1Char('Z')) path.closeSubpath();
      continue;
    }
    numbers.push_back(text.toDouble());
    if (numbers.size() == (command == QLatin1Char('C') ? 6U : 2U)) {
      if (command == QLatin1Char('M')) path.moveTo(numbers[0], numbers[1]);
      if (command == QLatin1Char('L')) path.lineTo(numbers[0], numbers[1]);
      if (command == QLatin1Char('C'))
        path.cubicTo(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]);
      numbers.clear();
    }
  }
  return path;
}

// The outline at a size, every corner on the corner of a pixel: the drawing is made of bars and slopes, and
// bars with blurred edges look grey.
QPainterPath hinted(const QPainterPath& outline, int size) {
  QPainterPath path = outline;
  for (int index = 0; index < path.elementCount(); ++index) {
    const QPainterPath::Element element = path.elementAt(index);
    path.setElementPositionAt(index, std::round(element.x * size / kSide),
                              std::round(element.y * size / kSide));
  }
  return path;
}

class TemplateEngine : public QIconEngine {
 public:
  TemplateEngine(const QPainterPath& outline, PanelTone tone, QString themeName)
      : outline_(outline), tone_(tone), themeName_(std::move(themeName)) {}

  void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode, QIcon::State) override {
    const int size = std::min(rectangle.width(), rectangle.height());
    const QPainterPath path = hinted(outline_, size);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QPoint margin((rectangle.width() - size) / 2, (rectangle.height() - size) / 2);
    painter->translate(rectangle.topLeft() + margin);
    if (tone_ == PanelTone::unknown) {
      painter->setPen(QPen(kDark, std::max(2.0, size / 8.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      painter->drawPath(path);
    }
    painter->fillPath(path, tone_ == PanelTone::light ? kDark : kLight);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }

  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
    QList<QSize> sizes;
    for (const int size : kSizes)
      sizes.append(QSize(size, size));
    return sizes;
  }

  QString iconName() override { return themeName_; }
  bool isNull() override { return outline_.isEmpty(); }
  QString key() const override { return QStringLiteral("TemplateEngine"); }
  QIconEngine* clone() const override { return new TemplateEngine(*this); }

 private:
  QPainterPath outline_;
  PanelTone tone_;
  QString themeName_;
};

// The name of the installed file for the tone; empty where it is not installed.
QString installedName(PanelTone tone) {
  if (tone == PanelTone::unknown) return {};
  const QString name = tone == PanelTone::light ? QStringLiteral("com.tidewell.HarborTray-on-light")
                                                : QStringLiteral("com.tidewell.HarborTray-on-dark");
  const QString file = QStringLiteral("icons/hicolor/scalable/status/") + name + QStringLiteral(".svg");
  return QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty() ? QString() : name;
}

}  // namespace

QPainterPath templateOutline(std::string_view name) {
  loadResources();
  QFile file(
      QStringLiteral(":/%1.svg").arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))));
  if (!file.open(QIODevice::ReadOnly)) return {};
  static const QRegularExpression commands(QStringLiteral("<path[^>]*\\bd=\"([^\"]*)\""));
  return pathFromCommands(commands.match(QString::fromUtf8(file.readAll())).captured(1));
}

QIcon templateIcon(std::string_view name, PanelTone tone) {
  return QIcon(new TemplateEngine(templateOutline(name), tone, installedName(tone)));
}

}  // namespace harbor
