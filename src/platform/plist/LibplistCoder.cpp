#include "platform/plist/LibplistCoder.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace harbor {
namespace {

// Property lists count seconds from the start of 2001; the program counts them from the start of 1970.
constexpr double kSecondsTo2001 = 978'307'200.0;

struct FreePlist {
  void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, FreePlist>;

plist_t toNode(const PropertyList& value) {
  struct Visitor {
    plist_t operator()(bool v) const { return plist_new_bool(v ? 1 : 0); }
    plist_t operator()(std::int64_t v) const { return plist_new_uint(static_cast<std::uint64_t>(v)); }
    plist_t operator()(std::uint64_t v) const { return plist_new_uint(v); }
    plist_t operator()(double v) const { return plist_new_real(v); }
    plist_t operator()(const std::string& v) const { return plist_new_string(v.c_str()); }
    plist_t operator()(const Data& v) const {
      return plist_new_data(reinterpret_cast<const char*>(v.data()), v.size());
    }
    plist_t operator()(Date v) const {
      const double seconds = v.time_since_epoch().count() - kSecondsTo2001;
      const auto whole = static_cast<std::int32_t>(seconds);
      return plist_new_date(whole, static_cast<std::int32_t>((seconds - whole) * 1e6));
    }
    plist_t operator()(PropertyList::Uid v) const { return plist_new_uid(v.value); }
    plist_t operator()(const PropertyList::Array& v) const {
      plist_t node = plist_new_array();
      for (const PropertyList& element : v)
        plist_array_append_item(node, toNode(element));
      return node;
    }
    plist_t operator()(const PropertyList::Dictionary& v) const {
      plist_t node = plist_new_dict();
      for (const auto& [key, element] : v)
        plist_dict_set_item(node, key.c_str(), toNode(element));
      return node;
    }
  };
  return std::visit(Visitor{}, value.value());
}

std::optional<PropertyList> fromNode(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return PropertyList(value != 0);
    }
    case PLIST_UINT: {
      std::uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return PropertyList(value);
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return PropertyList(value);
    }
    case PLIST_STRING: {
      std::uint64_t length = 0;
      const char* text = plist_get_string_ptr(node, &length);
      return PropertyList(std::string(text, length));
    }
    case PLIST_DATA: {
      std::uint64_t length = 0;
      const char* bytes = plist_get_data_ptr(node, &length);
      return PropertyList(Data(bytes, bytes + length));
    }
    case PLIST_DATE: {
      std::int32_t seconds = 0;
      std::int32_t microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return PropertyList(Date(std::chrono::duration<double>(seconds + microseconds / 1e6 + kSecondsTo2001)));
    }
    case PLIST_UID: {
      std::uint64_t value = 0;
      plist_get_uid_val(node, &value);
      return PropertyList(PropertyList::Uid{value});
    }
    case PLIST_ARRAY: {
      PropertyList::Array array;
      for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        auto element = fromNode(plist_array_get_item(node, i));
        if (!element) return std::nullopt;
        array.push_back(std::move(*element));
      }
      return PropertyList(std::move(array));
    }
    case PLIST_DICT: {
      PropertyList::Dictionary dictionary;
      plist_dict_iter iterator = nullptr;
      plist_dict_new_iter(node, &iterator);
      const std::unique_ptr<void, decltype(&std::free)> release(iterator, &std::free);
      for (;;) {
        char* key = nullptr;
        plist_t child = nullptr;
        plist_dict_next_item(node, iterator, &key, &child);
        if (!child) break;
        const std::unique_ptr<char, decltype(&std::free)> releaseKey(key, &std::free);
        auto element = fromNode(child);
        if (!element) return std::nullopt;
        dictionary.insert_or_assign(key, std::move(*element));
      }
      return PropertyList(std::move(dictionary));
    }
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<Data> LibplistCoder::encode(const PropertyList& value) const {
  const Node node(toNode(value));
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(node.get(), &bytes, &length);
  if (!bytes) return std::nullopt;
  Data data(bytes, bytes + length);
  plist_to_bin_free(bytes);
  return data;
}

std::optional<PropertyList> LibplistCoder::decode(const Data& bytes) const {
  plist_t parsed = nullptr;
  plist_from_memory(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()),
                    &parsed);
  const Node node(parsed);
  return node ? fromNode(node.get()) : std::nullopt;
}

std::optional<Data> LibplistCoder::archiveColour(const Colour&) const {
  return std::nullopt;
}

std::optional<Colour> LibplistCoder::unarchiveColour(const Data&) const {
  return std::nullopt;
}

}  // namespace harbor
