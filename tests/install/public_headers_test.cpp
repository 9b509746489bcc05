// The installed headers declare what the library defines. Both declarations are seen
// here together: a different return type fails to compile, a different parameter list
// makes an overload whose address the checks below cannot take.

#include "neqbridge/neqbridge.hpp"

#include "api/blend_exports.h"
#include "api/folder_exports.h"
#include "api/mesh_exports.h"
#include "api/module_state.h"
#include "api/name_exports.h"
#include "api/uv_tile_exports.h"
#include "foundation/vd_string.h"

#include <type_traits>

namespace {

using HostEntry = float (*)(char*, double, char*);

template <class Expected, class Actual> constexpr bool declaredAs(Actual) {
    return std::is_same_v<Expected, Actual>;
}

static_assert(declaredAs<HostEntry>(&Version) && declaredAs<HostEntry>(&OpenFolder) &&
              declaredAs<HostEntry>(&GetFile) && declaredAs<HostEntry>(&CloseFolder) &&
              declaredAs<HostEntry>(&SetFolder) && declaredAs<HostEntry>(&CreateFolder) &&
              declaredAs<HostEntry>(&FileDelete) && declaredAs<HostEntry>(&AddFile) &&
              declaredAs<HostEntry>(&GetPublicFolder) && declaredAs<HostEntry>(&ClearNameSet) &&
              declaredAs<HostEntry>(&CheckName) && declaredAs<HostEntry>(&clearUVString) &&
              declaredAs<HostEntry>(&addBlendFile) && declaredAs<HostEntry>(&endBlendFile) &&
              declaredAs<HostEntry>(&NeQMergeUVs));

static_assert(declaredAs<float (*)(const char*, double)>(&GetFaceIDsNeq) &&
              declaredAs<float (*)(const char*, char*)>(&writeOBJfromNeq) &&
              declaredAs<float (*)(const char*, char*)>(&ReadVertColorNeq) &&
              declaredAs<float (*)(const char*, char*)>(&GetUVTile) &&
              declaredAs<float (*)(const char*, char*)>(&GetUVsFromNeQ) &&
              declaredAs<void (*)(int, char*)>(&getUVTileString) &&
              declaredAs<void (*)()>(&clearUVTileString) &&
              declaredAs<float (*)(const char*)>(&GetUVGroup) &&
              declaredAs<unsigned (*)(char, char, char, char)>(&readUnInt) &&
              declaredAs<int (*)(char, char, char, char)>(&readSignInt) &&
              declaredAs<float (*)(char, char, char, char)>(&readaFloat) &&
              declaredAs<int (*)(char, char)>(&readShort) && declaredAs<int (*)(char)>(&readanInt));

static_assert(declaredAs<float (*)(const char*, char*)>(&addBlend) &&
              declaredAs<float (*)(const char*)>(&finishBlend) &&
              declaredAs<char* (*)(char*)>(&NameCheck) && declaredAs<void (*)()>(&NameSetClear) &&
              declaredAs<bool (*)(char*)>(&IsDirectory) &&
              declaredAs<bool (*)(std::string)>(&ClearFolder) &&
              declaredAs<bool (*)(const char*)>(&createFolder) &&
              declaredAs<char* (*)()>(&getSharedFolder) &&
              declaredAs<char* (*)(const char*)>(&runCocoaOpenFileBrowser) &&
              declaredAs<int (*)(char*, int, const char*, ...)>(&vdSprintf_s) &&
              declaredAs<void (*)(char*, char*, ...)>(&vdSprintf));

static_assert(declaredAs<DIR**>(&folder) && declaredAs<std::set<std::string>*>(&nameSet) &&
              declaredAs<std::vector<std::string>*>(&UVTileStr) &&
              declaredAs<std::vector<std::uint32_t>*>(&faceID) &&
              declaredAs<timeval*>(&s_startTimeVal));

} // namespace
