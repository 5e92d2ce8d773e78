// A file URL as a value: an absolute path and whether it names a folder. Paths are bytes; what is not plain
// ASCII is percent-encoded in the text form, so names that are not valid UTF-8 survive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace harbor {

// Whether two absolute paths are the same: byte by byte, or, where the file system does not tell the forms of
// Unicode apart, by the characters that the bytes stand for. No link is followed.
bool isSamePath(std::string_view a, std::string_view b);

struct FileUrl {
  std::string path;  // absolute, without a trailing slash (except "/" itself)
  bool isDirectory = false;

  // "file:///Applications/Zoom%20Room.app/"; a folder's text ends with a slash.
  std::string absoluteString() const;

  // The URL of that text; nothing unless it is a file URL of this machine with an absolute path that holds no
  // zero byte and whose percent escapes are well formed.
  static std::optional<FileUrl> parse(std::string_view text);

  // The URL of a path: trailing slashes are dropped and remembered as "is a folder".
  static FileUrl fromPath(std::string_view path);

  // Two URLs are equal when their paths are.
  friend bool operator==(const FileUrl& a, const FileUrl& b);
};

inline bool operator==(const FileUrl& a, const FileUrl& b) {
  return isSamePath(a.path, b.path);
}

// The part of a path behind its last slash; trailing slashes do not count. "/" has the last component "/".
std::string lastPathComponent(std::string_view path);

// The extension of a path's last component without its point: "app" for "/A/B.app". Empty when there is none;
// a name whose only point is its first character (".download") has no extension, nor does one that ends in a
// point.
std::string pathExtension(std::string_view path);

// The last component without its extension.
std::string stemOfPath(std::string_view path);

}  // namespace harbor
