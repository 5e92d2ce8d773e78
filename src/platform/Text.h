// The Unicode rules that the core needs and the standard library lacks. Texts are UTF-8; bytes that are not
// valid UTF-8 are kept, each as a cluster of its own that lower-casing leaves alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace harbor {

class Text {
 public:
  virtual ~Text() = default;

  // The text with every character replaced by its full lower-case mapping, independent of the user's
  // language.
  virtual std::string lowercased(std::string_view text) const = 0;

  // The text in its canonical composition, in which canonically equivalent texts are the same bytes. Text
  // that is not valid UTF-8 is returned as it is.
  virtual std::string canonical(std::string_view text) const = 0;

  // The text's extended grapheme clusters, in order: views into the text that is passed in.
  virtual std::vector<std::string_view> graphemeClusters(std::string_view text) const = 0;

  // The text without white space and line breaks (Unicode's) at both ends: a view into the text that is
  // passed in.
  virtual std::string_view trimmed(std::string_view text) const = 0;
};

}  // namespace harbor
