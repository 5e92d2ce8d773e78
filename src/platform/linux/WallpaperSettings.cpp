#include "platform/linux/WallpaperSettings.h"

#include <QColor>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QString>
#include <QXmlStreamReader>

#include <array>
#include <cmath>

namespace harbor {
namespace {

struct ModeRow {
  std::string_view name;
  WallpaperMode mode;
};
constexpr ModeRow kPcmanfmModes[] = {
    {"color", WallpaperMode::colourOnly},  {"none", WallpaperMode::colourOnly},
    {"stretch", WallpaperMode::stretched}, {"fit", WallpaperMode::fitted},
    {"center", WallpaperMode::centred},    {"tile", WallpaperMode::tiled},
    {"crop", WallpaperMode::zoomed},       {"zoom", WallpaperMode::zoomed},
    {"screen", WallpaperMode::stretched},
};
// By the number of Xfce's "image-style".
constexpr WallpaperMode kXfceModes[] = {WallpaperMode::colourOnly, WallpaperMode::centred,
                                        WallpaperMode::tiled,      WallpaperMode::stretched,
                                        WallpaperMode::fitted,     WallpaperMode::zoomed};

Colour fromQColor(const QColor& colour) {
  return {colour.redF(), colour.greenF(), colour.blueF(), 1.0};
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// Files that a wallpaper setting may be in are small; anything larger is not one.
constexpr qint64 kGreatestFile = 1 << 20;

std::optional<std::string> contentsOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly) || file.size() > kGreatestFile) return std::nullopt;
  return file.readAll().toStdString();
}

// The file of that name in the profile of the folder that was changed last: the one in use.
std::optional<std::string> newestProfile(const QString& folder, const QString& name) {
  std::optional<std::string> contents;
  QDateTime newest;
  for (const auto& profile : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    const QFileInfo file(profile.filePath() + QLatin1Char('/') + name);
    if (!file.isFile() || (newest.isValid() && file.lastModified() <= newest)) continue;
    if (auto text = contentsOf(file.filePath())) {
      contents = std::move(text);
      newest = file.lastModified();
    }
  }
  return contents;
}

}  // namespace

std::optional<Wallpaper> parsePcmanfm(std::string_view text) {
  Wallpaper wallpaper;
  wallpaper.mode = WallpaperMode::colourOnly;
  bool isAnything = false;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const auto key = trimmed(line.substr(0, equals));
    const auto value = trimmed(line.substr(equals + 1));
    if (key == "wallpaper" || key == "Wallpaper" || (key == "wallpaper0" && wallpaper.image.empty())) {
      wallpaper.image = value;
      isAnything = true;
    } else if (key == "wallpaper_mode" || key == "WallpaperMode") {
      for (const auto& row : kPcmanfmModes) {
        if (value == row.name) wallpaper.mode = row.mode;
      }
      isAnything = true;
    } else if (key == "desktop_bg" || key == "BgColor") {
      const QColor colour(QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size())));
      if (colour.isValid()) wallpaper.background = fromQColor(colour);
      isAnything = true;
    }
  }
  if (!isAnything) return std::nullopt;
  return wallpaper;
}

std::optional<Wallpaper> parseXfdesktop(std::string_view text) {
  QXmlStreamReader xml(QByteArray(text.data(), static_cast<qsizetype>(text.size())));
  Wallpaper wallpaper;
  bool hasImage = false;
  std::vector<double> components;
  bool isInColour = false;
  int depth = 0;
  int colourDepth = 0;
  while (!xml.atEnd()) {
    const auto token = xml.readNext();
    if (token == QXmlStreamReader::StartElement) {
      ++depth;
      const auto name = xml.attributes().value(QLatin1String("name"));
      const auto value = xml.attributes().value(QLatin1String("value"));
      if (isInColour && xml.name() == QLatin1String("value")) {
        components.push_back(value.toDouble());
      } else if (name == QLatin1String("last-image")) {
        // The next workspace's settings follow: the first ones are whole now.
        if (std::exchange(hasImage, true)) break;
        wallpaper.image = value.toString().toStdString();
      } else if (name == QLatin1String("image-style")) {
        const auto style = static_cast<std::size_t>(value.toUInt());
        if (!hasImage && style < std::size(kXfceModes)) wallpaper.mode = kXfceModes[style];
      } else if (name == QLatin1String("rgba1") && components.empty()) {
        isInColour = true;
        colourDepth = depth;
      }
    } else if (token == QXmlStreamReader::EndElement) {
      if (isInColour && depth == colourDepth) isInColour = false;
      --depth;
    }
  }
  if (components.size() >= 3) wallpaper.background = {components[0], components[1], components[2], 1.0};
  if (!hasImage && components.empty()) return std::nullopt;
  if (!hasImage) wallpaper.mode = WallpaperMode::colourOnly;
  return wallpaper;
}

std::optional<Wallpaper> wallpaperOf(std::string_view program) {
  const QString configuration = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  std::optional<Wallpaper> wallpaper;
  if (program == "pcmanfm" || program == "pcmanfm-qt") {
    const auto folder = configuration + QLatin1Char('/') +
                        QString::fromUtf8(program.data(), static_cast<qsizetype>(program.size()));
    const auto text = newestProfile(folder, program == "pcmanfm" ? QStringLiteral("desktop-items-0.conf")
                                                                 : QStringLiteral("settings.conf"));
    // Without settings these programs show plain black.
    wallpaper = text ? parsePcmanfm(*text) : std::nullopt;
    if (!wallpaper) wallpaper = Wallpaper{{}, WallpaperMode::colourOnly, Colour::black(), 0};
  } else if (program == "xfdesktop") {
    const auto text =
        contentsOf(configuration + QLatin1String("/xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml"));
    if (text) wallpaper = parseXfdesktop(*text);
  }
  if (wallpaper && !wallpaper->image.empty()) {
    const QFileInfo image(QString::fromStdString(wallpaper->image));
    wallpaper->changed = image.exists() ? image.lastModified().toMSecsSinceEpoch() : 0;
  }
  return wallpaper;
}

}  // namespace harbor
