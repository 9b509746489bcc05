#pragma once

// The parts of the extension module `neqbridge._core`, each adding its functions.

#include <pybind11/pybind11.h>

#include <stdexcept>
#include <string>

namespace neq::python {

namespace py = pybind11;

// The operating system refused an operation on `path`: raised as the OSError subclass
// that `error` (an errno value) maps to, carrying the errno and the path.
class PathError : public std::runtime_error {
  public:
    PathError(std::string path, int error);
    const std::string& path() const { return path_; }
    int error() const { return error_; }

  private:
    std::string path_;
    int error_;
};

// A file the operation cannot use: raised as neqbridge.FormatError(file, where, reason),
// `where` being "offset N" or "line N".
class BadFile : public std::runtime_error {
  public:
    BadFile(std::string file, std::string where, std::string reason);
    const std::string& file() const { return file_; }
    const std::string& where() const { return where_; }
    const std::string& reason() const { return reason_; }

  private:
    std::string file_, where_, reason_;
};

// Translates the exceptions above (and the interchange library's) into Python's.
void registerErrors(py::module_& module);
void bindHostOperations(py::module_& module);
void bindMeshes(py::module_& module);

} // namespace neq::python
