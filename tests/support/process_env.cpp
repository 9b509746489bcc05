#include "support/process_env.h"

#include "support/temp_dir.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace neq::test {

ScopedEnvironmentVariable::ScopedEnvironmentVariable(std::string name,
                                                     const std::optional<std::string>& value)
    : name_(std::move(name)) {
    if (const char* old = std::getenv(name_.c_str())) saved_ = old;
    if (value) {
        ::setenv(name_.c_str(), value->c_str(), 1);
    } else {
        ::unsetenv(name_.c_str());
    }
}

ScopedEnvironmentVariable::~ScopedEnvironmentVariable() {
    if (saved_) {
        ::setenv(name_.c_str(), saved_->c_str(), 1);
    } else {
        ::unsetenv(name_.c_str());
    }
}

ScopedWorkingDirectory::ScopedWorkingDirectory() : saved_(currentDirectory()) {}

ScopedWorkingDirectory::~ScopedWorkingDirectory() {
    if (::chdir(saved_.c_str()) != 0) std::abort(); // later tests would run in the wrong place
}

std::string currentDirectory() {
    return std::filesystem::current_path().string();
}

void writeShellScript(const std::string& path, const std::string& body) {
    writeFile(path, "#!/bin/sh\n" + body);
    if (::chmod(path.c_str(), 0755) != 0) throw std::runtime_error("cannot chmod " + path);
}

} // namespace neq::test
