// A part of the C++ library that the oldest system does not have.

#include <charconv>

char* write(char* begin, char* end, double value) {
  return std::to_chars(begin, end, value).ptr;
}
