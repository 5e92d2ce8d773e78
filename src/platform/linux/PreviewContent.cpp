#include "platform/linux/PreviewContent.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QBuffer>
#include <QDateTime>
#include <QImageReader>
#include <QLocale>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <vector>

#include "base/ByteCount.h"
#include "base/FileDescriptor.h"
#include "platform/linux/DisplayText.h"

namespace harbor {
namespace {

constexpr std::size_t kLongestText = 64 * 1024;
constexpr std::size_t kLargestPicture = 32 << 20;
constexpr std::size_t kLargestPropertyList = 1 << 20;
constexpr std::size_t kPictureStart = 4096;  // enough to tell a picture's format
constexpr qint64 kMostPixels =
    150'000'000;  // what takes seconds to decode; a page scanned at 1,200 dpi has 140 million
constexpr int kPictureMemory = 256;  // megabytes
constexpr std::size_t kMostEntriesRead = 20'000;
constexpr std::size_t kMostEntriesShown = 500;
constexpr int kDeepestShown = 24;

// Formats that are nothing but pixels; drawings that may carry scripts or references are not among them.
constexpr std::array kPictureFormats{"png", "jpeg", "jpg", "gif", "bmp", "ico", "webp", "ppm", "pgm", "pbm"};

QByteArray readStart(int descriptor, std::size_t most) {
  QByteArray bytes;
  char buffer[65536];
  while (static_cast<std::size_t>(bytes.size()) < most) {
    const ssize_t count =
        ::read(descriptor, buffer, std::min(sizeof buffer, most - static_cast<std::size_t>(bytes.size())));
    if (count <= 0) break;
    bytes.append(buffer, static_cast<qsizetype>(count));
  }
  return bytes;
}

bool isPicture(QByteArray start) {
  QBuffer buffer(&start);
  buffer.open(QIODevice::ReadOnly);
  const QByteArray format = QImageReader::imageFormat(&buffer);
  const auto isFormat = [&format](const char* allowed) { return format == allowed; };
  return std::any_of(kPictureFormats.begin(), kPictureFormats.end(), isFormat);
}

struct Picture {
  QImage image;
  QSize size;  // in the file
};

// Nothing when it is broken, or too large to be decoded in a short time.
std::optional<Picture> pictureFrom(QByteArray bytes, QSize largest) {
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  QSize size = reader.size();
  if (!size.isValid() || qint64{size.width()} * size.height() > kMostPixels) return std::nullopt;
  if (size.width() > largest.width() || size.height() > largest.height()) {
    reader.setScaledSize(size.scaled(largest, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  if (reader.transformation() & QImageIOHandler::TransformationRotate90) size.transpose();
  QImage image = reader.read();
  if (image.isNull()) return std::nullopt;
  return Picture{std::move(image), size};
}

// The bytes as text, when they are text throughout; a character cut off at the end is left out.
std::optional<QString> textFrom(const QByteArray& bytes, bool isWhole) {
  if (bytes.contains('\0')) return std::nullopt;
  QByteArray whole = bytes;
  for (int cut = 0; !isWhole && cut < 3 && !whole.isEmpty() && (whole.back() & 0xC0) == 0x80; ++cut)
    whole.chop(1);
  if (!isWhole && !whole.isEmpty() && (whole.back() & 0xC0) == 0xC0) whole.chop(1);
  QStringDecoder decoder(QStringDecoder::Utf8);
  QString text = decoder.decode(whole);
  if (decoder.hasError()) return std::nullopt;
  return text;
}

void appendPropertyList(const PropertyList& value, int depth, QString& text) {
  const QString indent(depth * 2, QLatin1Char(' '));
  struct Visitor {
    int depth;
    const QString& indent;
    QString& text;
    void operator()(bool v) const { text += v ? QStringLiteral("true\n") : QStringLiteral("false\n"); }
    void operator()(std::int64_t v) const { text += QString::number(v) + QLatin1Char('\n'); }
    void operator()(std::uint64_t v) const { text += QString::number(v) + QLatin1Char('\n'); }
    void operator()(double v) const { text += QString::number(v) + QLatin1Char('\n'); }
    void operator()(const std::string& v) const { text += withoutControls(v) + QLatin1Char('\n'); }
    void operator()(const Data& v) const { text += QStringLiteral("(%1 bytes of data)\n").arg(v.size()); }
    void operator()(Date v) const {
      const double seconds = v.time_since_epoch().count();
      text += QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::clamp(seconds, -1e12, 1e12) * 1000))
                  .toString(Qt::ISODate) +
              QLatin1Char('\n');
    }
    void operator()(PropertyList::Uid v) const { text += QStringLiteral("(reference %1)\n").arg(v.value); }
    void operator()(const PropertyList::Array& v) const {
      text += QLatin1Char('\n');
      for (const PropertyList& element : v)
        entry(QStringLiteral("-"), element);
    }
    void operator()(const PropertyList::Dictionary& v) const {
      text += QLatin1Char('\n');
      for (const auto& [key, element] : v)
        entry(withoutControls(key) + QLatin1Char(':'), element);
    }
    void entry(const QString& label, const PropertyList& element) const {
      if (static_cast<std::size_t>(text.size()) > kLongestText) return;
      text += indent + label + QLatin1Char(' ');
      if (depth >= kDeepestShown) {
        text += QStringLiteral("…\n");
      } else {
        appendPropertyList(element, depth + 1, text);
      }
    }
  };
  std::visit(Visitor{depth, indent, text}, value.value());
}

std::optional<QString> propertyListFrom(const QByteArray& bytes, const std::string& name,
                                        const PropertyListCoder& coder) {
  if (!bytes.startsWith("bplist") && pathExtension(name) != "plist") return std::nullopt;
  const auto value = coder.decode(Data(bytes.begin(), bytes.end()));
  if (!value) return std::nullopt;
  QString text;
  appendPropertyList(*value, 0, text);
  return text.trimmed();
}

struct Listing {
  QString text;  // the first names in alphabetical order
  QString count;
};

Listing listingOf(const std::string& path) {
  std::vector<QString> names;
  bool isCut = false;
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  DIR* const directory = descriptor < 0 ? nullptr : ::fdopendir(descriptor);
  if (!directory) return {{}, QStringLiteral("you have no permission to list it")};
  while (const dirent* entry = ::readdir(directory)) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    if (names.size() == kMostEntriesRead) {
      isCut = true;
      break;
    }
    names.push_back(withoutControls(name) + (entry->d_type == DT_DIR ? QStringLiteral("/") : QString()));
  }
  ::closedir(directory);
  std::sort(names.begin(), names.end());
  const std::size_t shown = std::min(names.size(), kMostEntriesShown);
  Listing listing;
  for (std::size_t i = 0; i < shown; ++i)
    listing.text += names[i] + QLatin1Char('\n');
  listing.text += shown < names.size() ? QStringLiteral("…") : QString();
  listing.text = listing.text.trimmed();
  listing.count = isCut               ? QStringLiteral("more than %1 items").arg(kMostEntriesRead)
                  : names.size() == 1 ? QStringLiteral("1 item")
                                      : QStringLiteral("%1 items").arg(names.size());
  return listing;
}

QString factsLine(const QString& kind, std::uint64_t bytes, const struct stat& status) {
  const auto date = QDateTime::fromSecsSinceEpoch(status.st_mtime);
  return QStringLiteral("%1 — %2 — %3")
      .arg(kind, QString::fromStdString(formatByteCount(bytes)),
           QLocale().toString(date, QLocale::ShortFormat));
}

}  // namespace

PreviewContent loadPreview(const FileUrl& item, const PropertyListCoder& coder,
                           const std::function<std::uint64_t(const std::string& path)>& sizeOfFolder,
                           QSize largest) {
  PreviewContent content;
  struct stat status;
  if (::lstat(item.path.c_str(), &status) != 0) {
    content.facts = QStringLiteral("This file is no longer there.");
    return content;
  }
  const auto size = static_cast<std::uint64_t>(status.st_size);
  if (S_ISDIR(status.st_mode)) {
    content.isFolder = true;
    const Listing listing = listingOf(item.path);
    content.text = listing.text;
    content.facts = factsLine(QStringLiteral("Folder, ") + listing.count, sizeOfFolder(item.path), status);
    return content;
  }
  if (S_ISLNK(status.st_mode)) {
    std::array<char, 4096> target{};
    const ssize_t length = ::readlink(item.path.c_str(), target.data(), target.size());
    if (length > 0)
      content.text = withoutControls(std::string(target.data(), static_cast<std::size_t>(length)));
    content.facts = factsLine(QStringLiteral("Link"), size, status);
    return content;
  }
  if (!S_ISREG(status.st_mode)) {
    content.facts = factsLine(QStringLiteral("Special file"), 0, status);
    return content;
  }

  content.facts = factsLine(QStringLiteral("File"), size, status);
  const FileDescriptor file(
      ::open(item.path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!file && errno == EACCES) {
    content.facts += QStringLiteral(" — you have no permission to read it");
    return content;
  }
  // Another kind of file may have taken the name meanwhile.
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return content;
  if (size <= kLargestPicture && isPicture(readStart(file.get(), kPictureStart))) {
    QImageReader::setAllocationLimit(kPictureMemory);
    if (::lseek(file.get(), 0, SEEK_SET) != 0) return content;
    if (auto picture = pictureFrom(readStart(file.get(), kLargestPicture), largest)) {
      content.picture = std::move(picture->image);
      const QString kind =
          QStringLiteral("Picture, %1 × %2").arg(picture->size.width()).arg(picture->size.height());
      content.facts = factsLine(kind, size, status);
      return content;
    }
  }
  if (::lseek(file.get(), 0, SEEK_SET) != 0) return content;
  const QByteArray start = readStart(file.get(), kLargestPropertyList);
  const bool isWhole = static_cast<std::uint64_t>(start.size()) == size;
  if (auto text = isWhole ? propertyListFrom(start, lastPathComponent(item.path), coder) : std::nullopt) {
    content.text = *text;
  } else if (auto plain = textFrom(start.left(kLongestText),
                                   start.size() <= static_cast<qsizetype>(kLongestText) && isWhole)) {
    content.text = *plain;
  }
  return content;
}

}  // namespace harbor
