#include "platform/plist/ColourArchive.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace harbor {
namespace {

constexpr const char* kArchiver = "NSKeyedArchiver";
constexpr std::int64_t kVersion = 100'000;
constexpr std::int64_t kIdOfSrgb = 7;  // of the system's own colour spaces
constexpr std::int64_t kRgbModel = 1;
constexpr int kLongestChainOfNames = 8;

enum class ColourSpace : std::uint64_t {
  calibratedRgb = 1,
  deviceRgb = 2,
  calibratedWhite = 3,
  deviceWhite = 4,
  cmyk = 5,
  named = 6,
};

// Where each object stands in the archives written here.
constexpr std::uint64_t kColourObject = 1;
constexpr std::uint64_t kColourClass = 2;
constexpr std::uint64_t kSpaceObject = 3;
constexpr std::uint64_t kSpaceClass = 4;

std::string textOf(std::initializer_list<double> numbers) {
  std::string text;
  for (const double number : numbers) {
    std::array<char, 512> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), std::clamp(number, 0.0, 1.0),
                                   std::chars_format::fixed)
                         .ptr;
    if (!text.empty()) text += ' ';
    text.append(digits.data(), end);
  }
  return text;
}

Data dataOf(const std::string& text) {
  return {text.begin(), text.end()};
}

PropertyList classNamed(const char* name) {
  return PropertyList::Dictionary{{"$classname", name}, {"$classes", PropertyList::Array{name, "NSObject"}}};
}

// Numbers in ASCII, a space between them; a zero byte may end them. Nothing unless they are all finite and as
// many as the count or one more, which is the alpha.
std::optional<std::vector<double>> numbersIn(const PropertyList* value, std::size_t count) {
  const auto* data = value ? value->as<Data>() : nullptr;
  if (!data) return std::nullopt;
  std::string text(data->begin(), data->end());
  if (text.ends_with('\0')) text.pop_back();
  std::vector<double> numbers;
  const char* position = text.data();
  const char* const end = position + text.size();
  while (position < end && numbers.size() <= count) {
    double number = 0.0;
    const auto [behind, error] = std::from_chars(position, end, number);
    if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
    numbers.push_back(number);
    position = behind;
    if (position == end) break;
    if (*position++ != ' ') return std::nullopt;
  }
  if (position != end || numbers.size() < count) return std::nullopt;
  if (numbers.size() == count) numbers.push_back(1.0);
  for (double& number : numbers)
    number = std::clamp(number, 0.0, 1.0);
  return numbers;
}

std::optional<Colour> rgbIn(const PropertyList* value) {
  const auto n = numbersIn(value, 3);
  return n ? std::optional(Colour{(*n)[0], (*n)[1], (*n)[2], (*n)[3]}) : std::nullopt;
}

std::optional<Colour> whiteIn(const PropertyList* value) {
  const auto n = numbersIn(value, 1);
  return n ? std::optional(Colour{(*n)[0], (*n)[0], (*n)[0], (*n)[1]}) : std::nullopt;
}

std::optional<Colour> cmykIn(const PropertyList* value) {
  const auto n = numbersIn(value, 4);
  if (!n) return std::nullopt;
  const double light = 1.0 - (*n)[3];
  return Colour{(1.0 - (*n)[0]) * light, (1.0 - (*n)[1]) * light, (1.0 - (*n)[2]) * light, (*n)[4]};
}

class Archive {
 public:
  explicit Archive(const PropertyList::Array& objects) : objects_(objects) {}

  // The object that a reference names; null when the value is no reference or leads nowhere.
  const PropertyList* resolve(const PropertyList* reference) const {
    const auto* uid = reference ? reference->as<PropertyList::Uid>() : nullptr;
    return uid && uid->value < objects_.size() ? &objects_[uid->value] : nullptr;
  }

  bool isOfClass(const PropertyList& object, std::string_view name) const {
    const PropertyList* objectClass = resolve(object.find("$class"));
    const PropertyList* className = objectClass ? objectClass->find("$classname") : nullptr;
    const auto* text = className ? className->as<std::string>() : nullptr;
    return text && *text == name;
  }

  // A named colour leads to its fallback by reference; the chain may be a circle.
  std::optional<Colour> colour(const PropertyList* object, int namesLeft) const {
    if (!object || !isOfClass(*object, "NSColor")) return std::nullopt;
    if (const PropertyList* components = object->find("NSComponents"); components && isInSrgb(*object)) {
      return rgbIn(components);
    }
    const PropertyList* space = object->find("NSColorSpace");
    const auto number = space ? space->asUnsigned() : std::nullopt;
    if (!number) return std::nullopt;
    switch (static_cast<ColourSpace>(*number)) {
      case ColourSpace::calibratedRgb:
      case ColourSpace::deviceRgb:
        return rgbIn(object->find("NSRGB"));
      case ColourSpace::calibratedWhite:
      case ColourSpace::deviceWhite:
        return whiteIn(object->find("NSWhite"));
      case ColourSpace::cmyk:
        return cmykIn(object->find("NSCMYK"));
      case ColourSpace::named:
        if (namesLeft == 0) return std::nullopt;
        return colour(resolve(object->find("NSColor")), namesLeft - 1);
    }
    return std::nullopt;
  }

 private:
  bool isInSrgb(const PropertyList& colourObject) const {
    const PropertyList* space = resolve(colourObject.find("NSCustomColorSpace"));
    const PropertyList* id = space ? space->find("NSID") : nullptr;
    return id && *id == PropertyList(kIdOfSrgb) && isOfClass(*space, "NSColorSpace");
  }

  const PropertyList::Array& objects_;
};

}  // namespace

std::optional<PropertyList> archiveOfColour(const Colour& colour) {
  const auto [red, green, blue, alpha] = colour;
  for (const double component : {red, green, blue, alpha}) {
    if (!std::isfinite(component)) return std::nullopt;
  }
  std::string rgb = alpha == 1.0 ? textOf({red, green, blue}) : textOf({red, green, blue, alpha});
  rgb += '\0';
  using Uid = PropertyList::Uid;
  using Dictionary = PropertyList::Dictionary;
  const PropertyList::Array objects{
      "$null",
      Dictionary{
          {"$class", Uid{kColourClass}},
          {"NSColorSpace", static_cast<std::uint64_t>(ColourSpace::calibratedRgb)},
          {"NSRGB", dataOf(rgb)},
          {"NSComponents", dataOf(textOf({red, green, blue, alpha}))},
          {"NSCustomColorSpace", Uid{kSpaceObject}},
      },
      classNamed("NSColor"),
      Dictionary{{"$class", Uid{kSpaceClass}}, {"NSID", kIdOfSrgb}, {"NSModel", kRgbModel}},
      classNamed("NSColorSpace"),
  };
  return Dictionary{
      {"$version", kVersion},
      {"$archiver", kArchiver},
      {"$top", Dictionary{{"root", Uid{kColourObject}}}},
      {"$objects", objects},
  };
}

std::optional<Colour> colourInArchive(const PropertyList& archive) {
  const PropertyList* archiver = archive.find("$archiver");
  const PropertyList* top = archive.find("$top");
  const PropertyList* objects = archive.find("$objects");
  if (!archiver || *archiver != PropertyList(kArchiver) || !top || !objects) return std::nullopt;
  const auto* array = objects->as<PropertyList::Array>();
  if (!array) return std::nullopt;
  const Archive reader(*array);
  return reader.colour(reader.resolve(top->find("root")), kLongestChainOfNames);
}

}  // namespace harbor
