#include "meshfile/rgb_block.h"

#include "meshfile/neq_file.h"

#include <cstring>
#include <string_view>

namespace neq::meshfile {
namespace {

constexpr std::string_view kOpeningLine =
    "# The following RGB block contains Clayvo Vertex Color (Polytint) output as 3 "
    "hexadecimal values per vertex. The vertex color format is RRGGBB with up to 32 entries "
    "per RGB line.\n";
constexpr std::string_view kClosingLine = "# End of RGB block\n";
constexpr std::string_view kLineStart = "#RGB ";
constexpr std::uint64_t kEntriesPerLine = 32;
constexpr std::size_t kEntryChars = 7; // " rrggbb"
constexpr std::size_t kMaxLineChars = kLineStart.size() + kEntriesPerLine * kEntryChars + 1;

constexpr char kHexDigits[] = "0123456789abcdef";

char* putHexByte(char* out, std::uint8_t value) {
    out[0] = kHexDigits[value >> 4];
    out[1] = kHexDigits[value & 0xF];
    return out + 2;
}

} // namespace

std::size_t textBufferSizeFor(const NeqView& input) {
    constexpr std::size_t kTextPerInputByte = 8;
    constexpr std::size_t kSmallest = 4096; // well above the longest line written
    const std::size_t wanted = input.size() < TextWriter::kDefaultBufferSize / kTextPerInputByte
                                   ? input.size() * kTextPerInputByte
                                   : TextWriter::kDefaultBufferSize;
    return wanted < kSmallest ? kSmallest : wanted;
}

std::uint64_t writeRgbBlock(TextWriter& out, const NeqView& file, std::uint64_t recordsOffset,
                            std::uint64_t count) {
    // A count claiming more records than the file holds stops at the file's end.
    const std::uint64_t records = file.recordsThatFit(recordsOffset, count, kColourRecordSize);
    out.append(kOpeningLine);
    const std::uint8_t* record = file.data() + (records ? recordsOffset : 0);
    for (std::uint64_t done = 0; done < records;) {
        const std::uint64_t lineEntries =
            records - done < kEntriesPerLine ? records - done : kEntriesPerLine;
        char* p = out.reserve(kMaxLineChars);
        std::memcpy(p, kLineStart.data(), kLineStart.size());
        p += kLineStart.size();
        for (std::uint64_t i = 0; i < lineEntries; ++i, record += kColourRecordSize) {
            // Records are stored blue, green, red, unused; the text reads red first.
            *p++ = ' ';
            p = putHexByte(p, record[2]);
            p = putHexByte(p, record[1]);
            p = putHexByte(p, record[0]);
        }
        // Only a full line ends here; a short last line is ended below.
        if (lineEntries == kEntriesPerLine) *p++ = '\n';
        out.commit(p);
        done += lineEntries;
    }
    // Ends a short last line, or leaves an empty line when the count is a multiple of
    // 32 (0 included): the format readers expect exactly this.
    out.put('\n');
    out.append(kClosingLine);
    return records;
}

ExportOutcome exportColours(const NeqView& file, const char* outPath) {
    FileSink output;
    if (!output.open(outPath)) return outcomeOf(ExportStatus::CannotOpenOutput);
    TextWriter out(output, textBufferSizeFor(file));
    ExportOutcome outcome;
    // A file too short to hold the count has no colours to write.
    const std::uint32_t count = file.u32(kFirstBlockCountOffset).value_or(0);
    outcome.colours = writeRgbBlock(out, file, kFirstBlockRecordsOffset, count);
    if (!out.flush() || !output.close()) outcome.status = ExportStatus::WriteFailed;
    return outcome;
}

ExportOutcome exportColours(const char* inPath, const char* outPath) {
    NeqBytes bytes;
    if (!loadNeqFile(inPath, bytes)) return outcomeOf(ExportStatus::CannotOpenInput);
    return exportColours(NeqView(bytes), outPath);
}

} // namespace neq::meshfile
