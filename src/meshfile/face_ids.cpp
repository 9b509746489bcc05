#include "meshfile/face_ids.h"

#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"

#include <cmath>
#include <limits>

namespace neq::meshfile {

std::uint32_t subdivisionMultiplier(double level) {
    const double multiplier = std::pow(4.0, level - 1.0);
    // A power of 4 is never negative, so only NaN and values above the 32-bit range
    // need care: converting them would be undefined. No mesh is subdivided that far;
    // NaN gives 0 and larger powers saturate at the largest 32-bit integer.
    if (!(multiplier >= 0.0)) return 0;
    constexpr double kLargest = std::numeric_limits<std::int32_t>::max();
    if (multiplier >= kLargest) return static_cast<std::uint32_t>(kLargest);
    return static_cast<std::uint32_t>(multiplier);
}

std::size_t readFaceIds(const NeqView& file, double level, std::vector<std::uint32_t>& faceIds) {
    faceIds.clear();
    const std::uint32_t multiplier = subdivisionMultiplier(level);
    // Entries are unsigned 32-bit: products beyond that range wrap, as stored entries do.
    const std::uint32_t quadFaces = 4u * multiplier;
    const std::uint32_t triangleFaces = 3u * multiplier;
    // A count claiming more records than the file holds yields entries only for the
    // records that fit, which also bounds the allocation by the file's size.
    const std::uint32_t claimed = file.u32(kFirstBlockCountOffset).value_or(0);
    const std::uint64_t count =
        file.recordsThatFit(kFirstBlockRecordsOffset, claimed, kFaceRecordSize);
    faceIds.reserve(static_cast<std::size_t>(count));
    constexpr std::size_t kFourthIndexOffset = 12;
    std::size_t record = kFirstBlockRecordsOffset;
    for (std::uint64_t i = 0; i < count; ++i, record += kFaceRecordSize) {
        const bool isQuad = file.i32Unchecked(record + kFourthIndexOffset) >= 0;
        faceIds.push_back(isQuad ? quadFaces : triangleFaces);
    }
    return faceIds.size();
}

ReadOutcome loadFaceIds(const char* path, double level, std::vector<std::uint32_t>& faceIds) {
    faceIds.clear();
    NeqBytes bytes;
    if (!loadNeqFile(path, bytes)) return {ReadStatus::CannotOpen};
    return {ReadStatus::Done, readFaceIds(NeqView(bytes), level, faceIds)};
}

} // namespace neq::meshfile
