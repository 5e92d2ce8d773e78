// An immutable text that many places hold at the price of one: copying it copies a reference, so an entry of
// a megabyte can be listed, shown and captured without being duplicated.
#pragma once

#include <memory>
#include <string>
#include <utility>

namespace harbor {

class SharedText {
 public:
  SharedText() = default;  // the empty text
  SharedText(std::string text) {
    if (!text.empty()) text_ = std::make_shared<const std::string>(std::move(text));
  }
  SharedText(const char* text) : SharedText(std::string(text)) {}

  // Valid as long as any copy of this text exists.
  const std::string& string() const {
    static const std::string kEmpty;
    return text_ ? *text_ : kEmpty;
  }
  operator const std::string&() const { return string(); }
  bool empty() const { return !text_; }

  friend bool operator==(const SharedText& a, const SharedText& b) {
    return a.text_ == b.text_ || a.string() == b.string();
  }
  friend bool operator==(const SharedText& a, const std::string& b) { return a.string() == b; }
  friend bool operator==(const SharedText& a, const char* b) { return a.string() == b; }

 private:
  std::shared_ptr<const std::string> text_;  // null for the empty text
};

}  // namespace harbor
