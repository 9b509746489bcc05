#pragma once

// Loads the built shared library with dlopen and finds entries by their exported
// names, the way the host application does.

#include <string>

namespace neq::test {

using HostEntry = float (*)(char* text, double number, char* out);

class HostLibrary {
  public:
    HostLibrary(); // loads NEQBRIDGE_LIBRARY_PATH; throws if it cannot
    HostLibrary(const HostLibrary&) = delete;
    HostLibrary& operator=(const HostLibrary&) = delete;
    ~HostLibrary();

    // The entry with this undecorated name, or null.
    HostEntry entry(const char* name) const;
    // Any exported symbol (data or typed function), or null.
    void* symbol(const char* name) const;
    // Calls an entry with a text (null allowed), an ignored number and an output
    // buffer; throws if the entry is missing.
    float call(const char* name, const char* text = nullptr, char* out = nullptr) const;
    // A typed export, by its C++ (mangled) name, typed like `declared` (its declaration
    // in the library's header); throws if it is missing.
    template <typename F> F* function(F& /*declared*/, const char* mangledName) const {
        return reinterpret_cast<F*>(required(mangledName));
    }
    // An exported variable, by its C++ (mangled) name; throws if it is missing.
    template <typename T> T& variable(const char* mangledName) const {
        return *static_cast<T*>(required(mangledName));
    }

  private:
    void* required(const char* name) const;

    void* handle_;
};

} // namespace neq::test
