#include "platform/linux/WallpaperSettings.h"

#include <QColor>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QString>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

#include "platform/linux/KeyFile.h"
#include "platform/linux/RegularFile.h"

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

// By the number of Plasma's "FillMode".
constexpr WallpaperMode kPlasmaModes[] = {
    WallpaperMode::stretched, WallpaperMode::fitted, WallpaperMode::zoomed, WallpaperMode::tiled,
    WallpaperMode::tiled,     WallpaperMode::tiled,  WallpaperMode::centred};

// What Xfce shows when it was told nothing: what the distribution puts there, else its own.
constexpr const char* kXfceDefaults[] = {"images/desktop-base/default", "backgrounds/xfce/xfce-shapes.svg",
                                         "backgrounds/xfce/xfce-verticals.png"};

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

double channel(double value) {
  return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
}

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

std::optional<std::string> contentsOf(const std::string& path) {
  QFile file;
  if (!openRegularFile(file, path) || file.size() > kGreatestFile) return std::nullopt;
  return file.readAll().toStdString();
}

// The file of one of these names in the profile of the folder that was changed last: the one in use.
std::optional<std::string> newestProfile(const std::string& folder,
                                         std::initializer_list<const char*> names) {
  std::optional<std::string> contents;
  QDateTime newest;
  const QDir profiles(QString::fromStdString(folder));
  for (const auto& profile : profiles.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    for (const char* name : names) {
      const QFileInfo file(profile.filePath() + QLatin1Char('/') + QLatin1String(name));
      if (!file.isFile() || (newest.isValid() && file.lastModified() <= newest)) continue;
      if (auto text = contentsOf(file.filePath().toStdString())) {
        contents = std::move(text);
        newest = file.lastModified();
      }
    }
  }
  return contents;
}

std::vector<Wallpaper> wallpapersOfPcmanfm(const std::string& name, std::initializer_list<const char*> files,
                                           const WallpaperFolders& folders) {
  std::vector<Wallpaper> found;
  bool isAnySetting = false;
  for (const auto& folder : folders.settings) {
    const auto text = newestProfile(folder + "/" + name, files);
    auto wallpaper = text ? parsePcmanfm(*text) : std::nullopt;
    isAnySetting = isAnySetting || wallpaper;
    if (wallpaper) found.push_back(std::move(*wallpaper));
  }
  // Without settings these programs show plain black.
  if (!isAnySetting) found.push_back({{}, WallpaperMode::colourOnly, Colour::black(), 0});
  return found;
}

std::vector<Wallpaper> wallpapersOfXfdesktop(const WallpaperFolders& folders) {
  std::vector<Wallpaper> found;
  for (const auto& folder : folders.settings) {
    const auto text = contentsOf(folder + "/xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml");
    if (auto wallpaper = text ? parseXfdesktop(*text) : std::nullopt) found.push_back(std::move(*wallpaper));
  }
  for (const char* name : kXfceDefaults) {
    for (const auto& folder : folders.data)
      found.push_back({folder + "/" + name, WallpaperMode::zoomed, Colour::black(), 0});
  }
  return found;
}

// The picture of a wallpaper that is installed as a folder of one picture in several sizes: the largest.
std::string largestImageIn(const QString& folder) {
  const QDir images(folder + QLatin1String("/contents/images"));
  std::string largest;
  qint64 most = -1;
  for (const auto& image : images.entryInfoList(QDir::Files)) {
    const QStringList size = image.completeBaseName().split(QLatin1Char('x'));
    const qint64 pixels = size.size() == 2 ? size[0].toLongLong() * size[1].toLongLong() : 0;
    if (pixels <= most) continue;
    most = pixels;
    largest = image.filePath().toStdString();
  }
  return largest;
}

std::string plasmaImage(const std::string& image, const WallpaperFolders& folders) {
  QString path = QString::fromStdString(image);
  if (path.startsWith(QLatin1String("file://"))) path = QUrl(path).toLocalFile();
  if (path.isEmpty()) return {};
  if (path.startsWith(QLatin1Char('/')))
    return QFileInfo(path).isDir() ? largestImageIn(path) : path.toStdString();
  if (path.contains(QLatin1Char('/'))) return {};
  for (const auto& folder : folders.data) {
    auto found = largestImageIn(QString::fromStdString(folder + "/wallpapers/") + path);
    if (!found.empty()) return found;
  }
  return {};
}

// The name of the wallpaper that the user's theme brings along; empty when it names none.
std::string plasmaThemeImage(const WallpaperFolders& folders) {
  std::string theme = "org.kde.breeze.desktop";
  for (const auto& folder : folders.settings) {
    const auto globals = KeyFile::read(folder + "/kdeglobals");
    if (const auto name = globals ? globals->string("KDE", "LookAndFeelPackage") : std::nullopt) {
      theme = *name;
      break;
    }
  }
  if (theme.find('/') != std::string::npos) return {};
  for (const auto& folder : folders.data) {
    const auto defaults = KeyFile::read(folder + "/plasma/look-and-feel/" + theme + "/contents/defaults");
    if (const auto image = defaults ? defaults->string("Wallpaper", "Image") : std::nullopt) return *image;
  }
  return {};
}

std::vector<Wallpaper> wallpapersOfPlasma(const WallpaperFolders& folders) {
  std::vector<Wallpaper> found;
  for (const auto& folder : folders.settings) {
    const auto text = contentsOf(folder + "/plasma-org.kde.plasma.desktop-appletsrc");
    auto wallpaper = text ? parsePlasma(*text) : std::nullopt;
    if (!wallpaper) continue;
    if (wallpaper->mode != WallpaperMode::colourOnly) {
      wallpaper->image =
          plasmaImage(wallpaper->image.empty() ? plasmaThemeImage(folders) : wallpaper->image, folders);
      if (wallpaper->image.empty()) continue;
    }
    found.push_back(std::move(*wallpaper));
  }
  return found;
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
  if (components.size() >= 3) {
    wallpaper.background = {channel(components[0]), channel(components[1]), channel(components[2]), 1.0};
  }
  if (!hasImage && components.empty()) return std::nullopt;
  if (!hasImage) wallpaper.mode = WallpaperMode::colourOnly;
  return wallpaper;
}

std::optional<Wallpaper> parsePlasma(std::string_view text) {
  const auto file = KeyFile::parse(text);
  for (const auto& group : file.groups()) {
    // Groups lie in each other: "[Containments][1]".
    constexpr std::string_view kOuter = "Containments][";
    if (!group.starts_with(kOuter) || group.find(']', kOuter.size()) != std::string::npos) continue;
    if (file.string(group, "lastScreen") != "0") continue;
    const auto plugin = file.string(group, "wallpaperplugin").value_or("org.kde.image");
    const std::string settings = group + "][Wallpaper][" + plugin + "][General";
    Wallpaper wallpaper;
    const QStringList color = toQString(file.string(settings, "Color").value_or("")).split(QLatin1Char(','));
    if (color.size() >= 3) {
      wallpaper.background = {channel(color[0].toInt() / 255.0), channel(color[1].toInt() / 255.0),
                              channel(color[2].toInt() / 255.0), 1.0};
    }
    if (plugin == "org.kde.color") {
      wallpaper.mode = WallpaperMode::colourOnly;
      return wallpaper;
    }
    // Panels lie on the first screen, too, and have no wallpaper.
    const bool isDesktop = file.string(group, "formfactor").value_or("0") == "0";
    if (!isDesktop || (plugin != "org.kde.image" && plugin != "org.kde.slideshow")) continue;
    wallpaper.image = file.string(settings, "Image").value_or("");
    wallpaper.mode = WallpaperMode::zoomed;
    bool isNumber = false;
    const uint mode = toQString(file.string(settings, "FillMode").value_or("")).toUInt(&isNumber);
    if (isNumber && mode < std::size(kPlasmaModes)) wallpaper.mode = kPlasmaModes[mode];
    return wallpaper;
  }
  return std::nullopt;
}

WallpaperFolders WallpaperFolders::ofEnvironment() {
  const auto locations = [](QStandardPaths::StandardLocation kind) {
    std::vector<std::string> folders;
    for (const auto& folder : QStandardPaths::standardLocations(kind))
      folders.push_back(folder.toStdString());
    return folders;
  };
  return {locations(QStandardPaths::GenericConfigLocation), locations(QStandardPaths::GenericDataLocation)};
}

std::vector<Wallpaper> wallpapersOf(std::string_view program, const WallpaperFolders& folders) {
  std::vector<Wallpaper> found;
  if (program == "pcmanfm") {
    found = wallpapersOfPcmanfm("pcmanfm", {"desktop-items-0.conf", "pcmanfm.conf"}, folders);
  } else if (program == "pcmanfm-qt") {
    found = wallpapersOfPcmanfm("pcmanfm-qt", {"settings.conf"}, folders);
  } else if (program == "xfdesktop") {
    found = wallpapersOfXfdesktop(folders);
  } else if (program == "plasmashell") {
    found = wallpapersOfPlasma(folders);
  }
  for (auto& wallpaper : found) {
    if (wallpaper.image.empty()) continue;
    const QFileInfo image(QString::fromStdString(wallpaper.image));
    wallpaper.changed = image.exists() ? image.lastModified().toMSecsSinceEpoch() : 0;
  }
  return found;
}

}  // namespace harbor
