#include "api/module_state.h"

DIR* folder = nullptr;
std::set<std::string> nameSet;
std::vector<std::string> UVTileStr;
std::vector<std::uint32_t> faceID;
