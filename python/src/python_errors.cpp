#include "bindings.h"

#ifdef NEQBRIDGE_PYTHON_MESHES
#include "interchange/mesh.h"
#endif

#include <cstring>

namespace neq::python {

PathError::PathError(std::string path, int error)
    : std::runtime_error(path + ": " + std::strerror(error)), path_(std::move(path)),
      error_(error) {}

BadFile::BadFile(std::string file, std::string where, std::string reason)
    : std::runtime_error(file + ": " + where + ": " + reason), file_(std::move(file)),
      where_(std::move(where)), reason_(std::move(reason)) {}

namespace {

// OSError(errno, strerror, filename) becomes FileNotFoundError, PermissionError, ... by
// the errno, as Python's own file functions raise them.
void raiseOsError(int error, const std::string& path, const char* reason) {
    const py::object exception = py::reinterpret_borrow<py::object>(PyExc_OSError)(
        error, reason ? reason : std::strerror(error),
        py::reinterpret_steal<py::object>(PyUnicode_DecodeFSDefault(path.c_str())));
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(exception.ptr())), exception.ptr());
}

void raiseFormatError(const std::string& file, const std::string& where,
                      const std::string& reason) {
    const py::object type = py::module_::import("neqbridge._errors").attr("FormatError");
    const py::object exception = type(file, where, reason);
    PyErr_SetObject(type.ptr(), exception.ptr());
}

} // namespace

void registerErrors(py::module_&) {
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            if (thrown) std::rethrow_exception(thrown);
        } catch (const PathError& error) {
            raiseOsError(error.error(), error.path(), nullptr);
        } catch (const BadFile& error) {
            raiseFormatError(error.file(), error.where(), error.reason());
#ifdef NEQBRIDGE_PYTHON_MESHES
        } catch (const interchange::FileError& error) {
            // Its own words where the system has none ("it is a folder, not a file").
            const std::string what = error.what();
            const std::size_t colon = what.find(": ", error.path().size());
            raiseOsError(error.error(), error.path(),
                         colon == std::string::npos ? nullptr : what.c_str() + colon + 2);
        } catch (const interchange::FormatError& error) {
            raiseFormatError(error.file(), error.where(), error.reason());
        } catch (const std::invalid_argument& error) {
            PyErr_SetString(PyExc_ValueError, error.what());
#endif
        }
    });
}

} // namespace neq::python
