#pragma once

// The float codes the host entries and the typed exports hand back, one name per
// value, and their conversions from what the layers below report. The host's scripts
// compare against these exact values, so none of them ever changes.

#include "blend/blend_scene.h"
#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"

namespace neq::api {

constexpr float kDone = 0.0f;
// GetPublicFolder's success, where every other entry reports 0.
constexpr float kFound = 1.0f;
// The generic failure: a folder that cannot be opened, read or entered, a source AddFile
// cannot read, a scene NeQMergeUVs cannot weld, work that threw (in practice only an
// allocation failure). For the OBJ export: a block tag expected where fewer than four
// bytes are left; a tag that was found converts to a non-negative float, so this never
// reads as a found tag.
constexpr float kFailed = -1.0f;
// An output that cannot be opened or written (the OBJ and colour exports), a
// destination AddFile cannot open.
constexpr float kCannotOpenOutput = -2.0f;
// GetFile: the folder has no more entries.
constexpr float kNoMoreFiles = -3.0f;
// The blend exports given a null path, before anything is touched.
constexpr float kNullPath = -9.0f;
// The counting readers (UV tile listing, group count): the file cannot be opened.
constexpr float kCountCannotOpen = -17.0f;
// The block a reader needs is missing (UV, group), or, for the OBJ export, the face-ID
// list is empty.
constexpr float kNoBlock = -18.0f;
// Every other reader's input that cannot be opened, the blend's target scene included.
constexpr float kCannotOpenInput = -1760.0f;
// The blend's base scene cannot be read, or cannot be written.
constexpr float kBaseUnreadable = -2760.0f;
constexpr float kBaseUnwritable = -3760.0f;
// The UV split: this plus k + 1 when the file of the tile at 0-based position k cannot
// be written.
constexpr float kSplitCannotCreateBase = 1500.0f;

// 0, -18, -1760, -2 (also for a failed write: the host knows one output failure, and a
// file it cannot rely on is one), or the tag found converted to float (-1 when it lay
// past the end).
inline float hostCode(const meshfile::ExportOutcome& outcome) {
    using meshfile::ExportStatus;
    switch (outcome.status) {
    case ExportStatus::Written:
        return kDone;
    case ExportStatus::NoFaceIds:
        return kNoBlock;
    case ExportStatus::CannotOpenInput:
        return kCannotOpenInput;
    case ExportStatus::CannotOpenOutput:
    case ExportStatus::WriteFailed:
        return kCannotOpenOutput;
    case ExportStatus::TagMismatch:
        break;
    }
    return outcome.mismatch.found ? static_cast<float>(*outcome.mismatch.found) : kFailed;
}

// The count for Done; `cannotOpen` for an input that cannot be opened (the counting
// readers report it otherwise than the rest); -18; 1500 + k + 1 for tile file k.
inline float hostCode(const meshfile::ReadOutcome& outcome, float cannotOpen) {
    using meshfile::ReadStatus;
    switch (outcome.status) {
    case ReadStatus::Done:
        return static_cast<float>(outcome.count);
    case ReadStatus::CannotOpen:
        return cannotOpen;
    case ReadStatus::NoBlock:
        return kNoBlock;
    case ReadStatus::CannotWrite:
        break;
    }
    return kSplitCannotCreateBase + static_cast<float>(outcome.count + 1);
}

inline float hostCode(blend::BlendStatus status) {
    switch (status) {
    case blend::BlendStatus::Done:
        return kDone;
    case blend::BlendStatus::TargetUnreadable:
        return kCannotOpenInput;
    case blend::BlendStatus::BaseUnreadable:
        return kBaseUnreadable;
    case blend::BlendStatus::BaseUnwritable:
        break;
    }
    return kBaseUnwritable;
}

} // namespace neq::api
