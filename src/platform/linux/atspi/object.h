#pragma once

#include <glib-object.h>

#include <memory>

namespace glyma::atspi {

struct ObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};
/// Owns one reference to a GObject. libatspi keeps its objects in tables without locks: worker thread only.
template<typename T>
using Object = std::unique_ptr<T, ObjectRelease>;

template<typename T>
Object<T> share(T* object) {
    return Object<T>(object ? static_cast<T*>(g_object_ref(object)) : nullptr);
}

struct MemoryRelease {
    void operator()(void* memory) const { g_free(memory); }
};
template<typename T>
using Memory = std::unique_ptr<T, MemoryRelease>;

} // namespace glyma::atspi
