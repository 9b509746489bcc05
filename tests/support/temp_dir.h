#pragma once

// Test helpers: a temporary folder per test and whole-file reads and writes.

#include <string>
#include <vector>

namespace neq::test {

// A fresh folder under /tmp, removed with everything in it when the object dies.
class TempDir {
  public:
    TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir();

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

std::string readFile(const std::string& path);
// The names in a folder, "." and ".." left out, sorted.
std::vector<std::string> listFolder(const std::string& path);
bool fileExists(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);
// A golden file under tests/data, e.g. readTestData("blend/no_targets.ma").
std::string readTestData(const std::string& relativePath);

} // namespace neq::test
