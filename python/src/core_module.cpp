// The extension module `neqbridge._core`. The package's Python modules wrap it; nothing
// else imports it directly.

#include "bindings.h"

PYBIND11_MODULE(_core, module) {
    module.doc() = "neqbridge's compiled operations; use the neqbridge package instead";
    neq::python::registerErrors(module);
    neq::python::bindHostOperations(module);
#ifdef NEQBRIDGE_PYTHON_MESHES
    neq::python::bindMeshes(module);
    module.attr("has_meshes") = true;
#else
    module.attr("has_meshes") = false;
#endif
}
