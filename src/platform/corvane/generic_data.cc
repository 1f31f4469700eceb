#include "varimo/platform/corvane/generic_data.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace Corvane {

namespace {

// Tags are handed out once per name for the life of the process. Molecules
// on different threads may ask at once, so the registry locks.
struct TagRegistry {
  std::mutex mutex;
  std::unordered_map<std::string, unsigned int> tags;
  std::vector<std::string> names{std::string()};  // tag 0 is never given
};

TagRegistry& Registry() {
  static TagRegistry registry;
  return registry;
}

}  // namespace

unsigned int ZqGetTag(const std::string& name) {
  TagRegistry& registry = Registry();
  std::lock_guard<std::mutex> lock(registry.mutex);
  const auto found = registry.tags.find(name);
  if (found != registry.tags.end()) return found->second;
  const auto tag = static_cast<unsigned int>(registry.names.size());
  registry.names.push_back(name);
  registry.tags.emplace(name, tag);
  return tag;
}

std::string ZqGetTagName(unsigned int tag) {
  TagRegistry& registry = Registry();
  std::lock_guard<std::mutex> lock(registry.mutex);
  return tag < registry.names.size() ? registry.names[tag] : std::string();
}

bool ZqBase::HasData(unsigned int tag) const {
  return std::any_of(data_.begin(), data_.end(),
                     [tag](const ZqGenericData& datum) { return datum.GetTag() == tag; });
}

ZqIter<const ZqGenericData> ZqBase::GetDataIter(unsigned int tag) const {
  std::vector<ZqGenericData> selected;
  for (const ZqGenericData& datum : data_) {
    if (datum.GetTag() == tag) selected.push_back(datum);
  }
  return ZqMakeOwnedIter<const ZqGenericData>(std::move(selected));
}

ZqIter<const ZqGenericData> ZqBase::GetDataIter() const {
  return ZqMakeOwnedIter<const ZqGenericData>(data_);
}

bool ZqBase::DeleteData(unsigned int tag) {
  const auto removed = std::erase_if(data_, [tag](const ZqGenericData& datum) { return datum.GetTag() == tag; });
  return removed > 0;
}

}  // namespace Corvane
