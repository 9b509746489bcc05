// Host-side C++ code using an installed neqbridge's typed exports and module state.
#include <neqbridge/neqbridge.hpp>

#include <cstdio>
#include <cstring>

int main() {
    char name[] = "Head";
    NameSetClear();
    char* first = NameCheck(name);
    char* second = NameCheck(name);
    const bool ok = std::strcmp(first, "Head") == 0 && std::strcmp(second, "Head_copy1") == 0 &&
                    nameSet.size() == 2 && readUnInt(1, 2, 0, 0) == 0x0201u;
    delete[] first;
    delete[] second;
    std::printf("neqbridge typed exports from C++: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
