#include "foundation/file_name_extract.h"

namespace {

std::string fileNamePart(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

} // namespace

std::string FileNameExtract(std::string& path, int mode) {
    switch (mode) {
    case 1: {
        const std::size_t separator = path.find_last_of("/\\");
        return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
    }
    case 2: {
        std::string name = fileNamePart(path);
        const std::size_t dot = name.rfind('.');
        if (dot != std::string::npos) name.erase(dot);
        return name;
    }
    case 3:
        return path.substr(0, path.rfind('.'));
    case 4:
        // substr throws std::out_of_range for npos: the documented error for no dot.
        return path.substr(path.rfind('.'));
    case 6:
        return fileNamePart(path);
    default:
        return path;
    }
}
