#import "platform/macos/MacPropertyListCoder.h"

#include <type_traits>

#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

constexpr int kDeepestNesting = 128;
constexpr std::size_t kMostValues = 1'000'000;

NSString* encodableString(const std::string& text) {
  return text.find('\0') == std::string::npos ? nsString(text) : nil;
}

id toFoundation(const PropertyList& value);

id toFoundation(const PropertyList::Array& array) {
  NSMutableArray* const result = [NSMutableArray array];
  for (const PropertyList& entry : array) {
    const id object = toFoundation(entry);
    if (!object) return nil;
    [result addObject:object];
  }
  return result;
}

id toFoundation(const PropertyList::Dictionary& dictionary) {
  NSMutableDictionary* const result = [NSMutableDictionary dictionary];
  for (const auto& [key, entry] : dictionary) {
    NSString* const name = encodableString(key);
    const id object = toFoundation(entry);
    if (!name || !object) return nil;
    result[name] = object;
  }
  return result;
}

struct FoundationObject {
  id operator()(bool value) const { return [NSNumber numberWithBool:value]; }
  id operator()(std::int64_t value) const { return [NSNumber numberWithLongLong:value]; }
  id operator()(std::uint64_t value) const { return [NSNumber numberWithUnsignedLongLong:value]; }
  id operator()(double value) const { return [NSNumber numberWithDouble:value]; }
  id operator()(const std::string& value) const { return encodableString(value); }
  id operator()(const Data& value) const { return nsData(value); }
  id operator()(Date value) const { return nsDate(value); }
  id operator()(PropertyList::Uid) const { return nil; }
  id operator()(const PropertyList::Array& value) const { return toFoundation(value); }
  id operator()(const PropertyList::Dictionary& value) const { return toFoundation(value); }
};

id toFoundation(const PropertyList& value) {
  return std::visit(FoundationObject{}, value.value());
}

PropertyList numberOf(NSNumber* number) {
  const auto reference = (__bridge CFTypeRef)number;
  if (CFGetTypeID(reference) == CFBooleanGetTypeID())
    return PropertyList(static_cast<bool>(number.boolValue));
  if (CFNumberIsFloatType((__bridge CFNumberRef)number)) return PropertyList(number.doubleValue);
  if ([number compare:@0] == NSOrderedAscending)
    return PropertyList(static_cast<std::int64_t>(number.longLongValue));
  return PropertyList(static_cast<std::uint64_t>(number.unsignedLongLongValue));
}

// Reads Foundation's objects; gives up where they unfold beyond reason.
class Reader {
 public:
  std::optional<PropertyList> read(id object, int depth) {
    if (depth > kDeepestNesting || ++values_ > kMostValues) return std::nullopt;
    if ([object isKindOfClass:NSNumber.class]) return numberOf(object);
    if ([object isKindOfClass:NSString.class]) return PropertyList(textOf(object));
    if ([object isKindOfClass:NSData.class]) return PropertyList(dataOf(object));
    if ([object isKindOfClass:NSDate.class]) return PropertyList(dateOf(object));
    if ([object isKindOfClass:NSArray.class]) return readArray(object, depth);
    if ([object isKindOfClass:NSDictionary.class]) return readDictionary(object, depth);
    return std::nullopt;
  }

 private:
  std::optional<PropertyList> readArray(NSArray* array, int depth) {
    PropertyList::Array result;
    for (id object in array) {
      std::optional<PropertyList> entry = read(object, depth + 1);
      if (!entry) return std::nullopt;
      result.push_back(std::move(*entry));
    }
    return PropertyList(std::move(result));
  }

  std::optional<PropertyList> readDictionary(NSDictionary* dictionary, int depth) {
    PropertyList::Dictionary result;
    for (id key in dictionary) {
      std::optional<PropertyList> entry = read(dictionary[key], depth + 1);
      if (!entry || ![key isKindOfClass:NSString.class]) return std::nullopt;
      result.emplace(textOf(key), std::move(*entry));
    }
    return PropertyList(std::move(result));
  }

  std::size_t values_ = 0;
};

}  // namespace

std::optional<Data> MacPropertyListCoder::encode(const PropertyList& value) const {
  const id object = toFoundation(value);
  if (!object) return std::nullopt;
  NSData* const data = [NSPropertyListSerialization dataWithPropertyList:object
                                                                  format:NSPropertyListBinaryFormat_v1_0
                                                                 options:0
                                                                   error:nil];
  return data ? std::optional(dataOf(data)) : std::nullopt;
}

std::optional<PropertyList> MacPropertyListCoder::decode(const Data& bytes) const {
  const id object = [NSPropertyListSerialization propertyListWithData:nsData(bytes)
                                                              options:NSPropertyListImmutable
                                                               format:nil
                                                                error:nil];
  return object ? Reader().read(object, 0) : std::nullopt;
}

// The calls that name the class and report errors: the bytes are those of archivedDataWithRootObject:, and
// damaged ones end in nothing where unarchiveObjectWithData: would raise an exception.
std::optional<Data> MacPropertyListCoder::archiveColour(const Colour& colour) const {
  NSData* const data = [NSKeyedArchiver archivedDataWithRootObject:nsColor(colour)
                                             requiringSecureCoding:NO
                                                             error:nil];
  return data ? std::optional(dataOf(data)) : std::nullopt;
}

std::optional<Colour> MacPropertyListCoder::unarchiveColour(const Data& bytes) const {
  NSColor* const colour =
      [NSKeyedUnarchiver unarchivedObjectOfClass:NSColor.class fromData:nsData(bytes) error:nil];
  return colourOf(colour);
}

}  // namespace harbor
