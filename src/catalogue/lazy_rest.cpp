#include "catalogue/lazy_rest.h"

namespace glyma {

std::expected<std::shared_ptr<const SearchSection>, std::string> LazyRest::get() {
    const std::lock_guard lock(mutex_);
    if (section_)
        return section_;
    const auto store = Store::open(storeFile_);
    if (!store)
        return std::unexpected(store.error());
    auto rest = readRest(*store);
    if (rest)
        section_ = *rest;
    return rest;
}

void LazyRest::writeImage(const Popularity& popularity, const ResourceLocator& resources) {
    const std::lock_guard lock(mutex_);
    if (const auto texts = readTextsAndWriteImage(storeFile_, popularity, resources); texts && !section_)
        section_ = texts->rest;
}

} // namespace glyma
