// Takes extended attributes off what a walk finds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "disk/TreeWalk.h"

namespace harbor {

// Takes the attribute off what is open; false when it has none of that name or cannot be changed.
bool removeAttribute(int descriptor, const char* name);

// For one thread. Links, pipes and the like are passed over; so is what cannot be opened or changed.
class AttributeErasing : public TreeVisitor {
 public:
  explicit AttributeErasing(const std::vector<std::string>& names) : names_(names) {}

  // The same for what is open.
  void erase(int descriptor);

  Verdict found(const Found& item) override;
  void entered(const ItemFacts&, std::size_t) override {}
  Verdict couldNotEnter(const Found&, int) override { return Verdict::goOn; }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  // How many files and folders had one of the attributes.
  std::uint64_t items() const { return items_; }

 private:
  const std::vector<std::string>& names_;
  std::uint64_t items_ = 0;
};

}  // namespace harbor
