#include "mesh_input.h"

#include "command.h"
#include "files.h"

namespace neq::cli {

interchange::Mesh readMeshOrFail(const std::string& path, interchange::ReadReport* report) {
    requireInputFile(path);
    try {
        return interchange::readMeshFile(path, report);
    } catch (const interchange::FormatError& error) {
        throw Failure("cannot read input " + quoted(path) + ": " + error.where() + ": " +
                      error.reason());
    } catch (const interchange::FileError& error) {
        throw Failure("cannot open input " + quoted(path) + ": " +
                      std::string(error.what()).substr(error.path().size() + 2));
    }
}

interchange::Format formatOrUsageError(const std::string& path) {
    const std::optional<interchange::Format> format = interchange::formatOfPath(path);
    if (!format)
        throw UsageError("cannot tell the format of " + quoted(path) +
                         " from its extension (.NeQ, .obj, .glb or .gltf)");
    return *format;
}

} // namespace neq::cli
