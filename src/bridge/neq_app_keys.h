#pragma once

// The keys of a target application's description file, in registration order.

#include "foundation/vd_config_parser.h"

#include <cstddef>
#include <cstdint>

namespace neq::bridge {

struct AppKey {
    const char* key;
    VDGenericConfigFileToken::Handler handler;
    std::uint32_t flag; // the VDNeQApp flag bit it sets, 0 for the other keys
};

inline constexpr std::size_t kAppKeyCount = 33;
extern const AppKey kAppKeys[kAppKeyCount];

} // namespace neq::bridge
