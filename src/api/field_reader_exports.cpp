#include "api/mesh_exports.h"
#include "meshfile/field_readers.h"

namespace {
std::uint8_t byte(char c) {
    return static_cast<std::uint8_t>(c);
}
} // namespace

unsigned int readUnInt(char b0, char b1, char b2, char b3) {
    return neq::meshfile::assembleU32(byte(b0), byte(b1), byte(b2), byte(b3));
}

int readSignInt(char b0, char b1, char b2, char b3) {
    return neq::meshfile::assembleI32(byte(b0), byte(b1), byte(b2), byte(b3));
}

float readaFloat(char b0, char b1, char b2, char b3) {
    return neq::meshfile::assembleF32(byte(b0), byte(b1), byte(b2), byte(b3));
}

int readShort(char b0, char b1) {
    return neq::meshfile::assembleI16(byte(b0), byte(b1));
}

int readanInt(char b) {
    return byte(b);
}
