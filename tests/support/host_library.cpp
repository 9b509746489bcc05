#include "support/host_library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace neq::test {

HostLibrary::HostLibrary() : handle_(::dlopen(NEQBRIDGE_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(std::string("dlopen: ") + ::dlerror());
}

HostLibrary::~HostLibrary() {
    ::dlclose(handle_);
}

void* HostLibrary::required(const char* name) const {
    void* found = ::dlsym(handle_, name);
    if (found == nullptr) throw std::runtime_error(std::string("no export ") + name);
    return found;
}

float HostLibrary::call(const char* name, const char* text, char* out) const {
    const auto function = reinterpret_cast<HostEntry>(required(name));
    // The host hands over mutable buffers; copy the text so the entry may not touch ours.
    std::string copy = text ? text : "";
    return function(text ? copy.data() : nullptr, 0.0, out);
}

} // namespace neq::test
