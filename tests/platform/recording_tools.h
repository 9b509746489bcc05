#pragma once

// Recording stand-ins for the programs the library starts. While the object lives,
// PATH holds only its folder, so no real tool can ever be reached.

#include "support/process_env.h"
#include "support/temp_dir.h"

#include <string>
#include <vector>

namespace neq::test {

class RecordingTools {
  public:
    RecordingTools();

    // Puts a stand-in named tool on PATH that records its arguments, prints output
    // on its standard output and exits with status. Installing again replaces it.
    void install(const std::string& tool, int status = 0, const std::string& output = "");
    // Puts a program of its own on PATH: a /bin/sh script with this body.
    void installScript(const std::string& tool, const std::string& body);

    // Every call made so far, each as {tool, arguments...}, in order.
    std::vector<std::vector<std::string>> calls() const;

  private:
    TempDir bin_;
    TempDir log_;
    ScopedEnvironmentVariable path_;
};

// Single-quoted for /bin/sh.
std::string shellQuoted(const std::string& text);

} // namespace neq::test
