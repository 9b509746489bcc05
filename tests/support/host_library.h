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

    // Calls an entry (text may be null); throws if it is missing.
    float call(const char* name, const char* text = nullptr, char* out = nullptr) const;
    // An exported variable with a plain (C) name; throws if it is missing. C++ names
    // differ between standard libraries: tests reach those through the public header.
    template <typename T> T& variable(const char* name) const {
        return *static_cast<T*>(required(name));
    }

  private:
    void* required(const char* name) const;

    void* handle_;
};

} // namespace neq::test
