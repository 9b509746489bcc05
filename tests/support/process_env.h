#pragma once

// Process-wide state for tests; each guard puts things back when it dies.

#include <optional>
#include <string>

namespace neq::test {

// Sets (or, with nullopt, unsets) an environment variable for the guard's lifetime.
class ScopedEnvironmentVariable {
  public:
    ScopedEnvironmentVariable(std::string name, const std::optional<std::string>& value);
    ScopedEnvironmentVariable(const ScopedEnvironmentVariable&) = delete;
    ScopedEnvironmentVariable& operator=(const ScopedEnvironmentVariable&) = delete;
    ~ScopedEnvironmentVariable();

  private:
    std::string name_;
    std::optional<std::string> saved_;
};

// Remembers the working directory and returns to it when the guard dies.
class ScopedWorkingDirectory {
  public:
    ScopedWorkingDirectory();
    ScopedWorkingDirectory(const ScopedWorkingDirectory&) = delete;
    ScopedWorkingDirectory& operator=(const ScopedWorkingDirectory&) = delete;
    ~ScopedWorkingDirectory();

  private:
    std::string saved_;
};

std::string currentDirectory();

// Writes a /bin/sh script with this body and makes it executable.
void writeShellScript(const std::string& path, const std::string& body);

} // namespace neq::test
