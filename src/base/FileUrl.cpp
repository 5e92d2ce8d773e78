#include "base/FileUrl.h"

namespace harbor {
namespace {

constexpr std::string_view kScheme = "file://";

bool isPlain(unsigned char character) {
  const bool alphanumeric = (character >= 'a' && character <= 'z') ||
                            (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9');
  return alphanumeric ||
         std::string_view("/-._~!$&'()*+,=:@").find(static_cast<char>(character)) != std::string_view::npos;
}

std::optional<int> hexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return std::nullopt;
}

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/')
    path.remove_suffix(1);
  return path;
}

std::string_view lastComponentView(std::string_view path) {
  path = withoutTrailingSlashes(path);
  if (path == "/") return path;
  return path.substr(path.rfind('/') + 1);  // npos + 1 is 0: the whole text
}

// Where the extension's point stands in a last component; npos when it has none.
std::size_t extensionPoint(std::string_view name) {
  const std::size_t point = name.rfind('.');
  if (point == std::string_view::npos || point == 0 || point + 1 == name.size())
    return std::string_view::npos;
  return point;
}

}  // namespace

std::string FileUrl::absoluteString() const {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string text(kScheme);
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (isPlain(byte)) {
      text += character;
    } else {
      text += '%';
      text += kHex[byte >> 4];
      text += kHex[byte & 15];
    }
  }
  if (isDirectory && path != "/") text += '/';
  return text;
}

std::optional<FileUrl> FileUrl::parse(std::string_view text) {
  if (text.substr(0, kScheme.size()) != kScheme) return std::nullopt;
  text.remove_prefix(kScheme.size());
  if (constexpr std::string_view host = "localhost"; text.substr(0, host.size()) == host) {
    text.remove_prefix(host.size());
  }
  if (text.empty() || text.front() != '/') return std::nullopt;
  if (text.find_first_of("?#") != std::string_view::npos) return std::nullopt;

  std::string path;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char character = text[i];
    if (character == '%') {
      if (i + 2 >= text.size()) return std::nullopt;
      const auto high = hexDigit(text[i + 1]);
      const auto low = hexDigit(text[i + 2]);
      if (!high || !low) return std::nullopt;
      character = static_cast<char>(*high * 16 + *low);
      i += 2;
    }
    if (character == '\0') return std::nullopt;
    path += character;
  }
  return fromPath(path);
}

FileUrl FileUrl::fromPath(std::string_view path) {
  const std::string_view trimmed = withoutTrailingSlashes(path);
  return {std::string(trimmed), trimmed.size() != path.size() || trimmed == "/"};
}

std::string lastPathComponent(std::string_view path) {
  return std::string(lastComponentView(path));
}

std::string pathExtension(std::string_view path) {
  const std::string_view name = lastComponentView(path);
  const std::size_t point = extensionPoint(name);
  return point == std::string_view::npos ? std::string() : std::string(name.substr(point + 1));
}

std::string stemOfPath(std::string_view path) {
  const std::string_view name = lastComponentView(path);
  return std::string(name.substr(0, extensionPoint(name)));
}

}  // namespace harbor
