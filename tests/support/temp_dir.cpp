#include "support/temp_dir.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <sys/stat.h>

namespace neq::test {

TempDir::TempDir() {
    char pattern[] = "/tmp/neqbridge-test-XXXXXX";
    if (::mkdtemp(pattern) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    // Tests may leave read-only folders behind; make them removable first. Links are
    // never followed: chmod through a test's link to "/" or "/dev/zero" would change the
    // machine's own files.
    ::chmod(path_.c_str(), 0700);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored))
        if (entry.symlink_status(ignored).type() == std::filesystem::file_type::directory)
            ::chmod(entry.path().c_str(), 0700);
    std::filesystem::remove_all(path_, ignored);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<std::string> listFolder(const std::string& path) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool fileExists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("cannot write " + path);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string readTestData(const std::string& relativePath) {
    return readFile(NEQBRIDGE_TEST_DATA "/" + relativePath);
}

} // namespace neq::test
