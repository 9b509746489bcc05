#pragma once

// An output file that appears only when complete. It is written under a temporary
// name in the destination's folder and renamed over the destination on commit(), so a
// failure leaves neither a partial output nor a damaged earlier file; a PendingOutput
// destroyed before commit() removes its temporary file. A destination that is a
// symbolic link keeps the link: the file it leads to is replaced.
//
// Devices and pipes (/dev/null, /dev/stdout, a FIFO) cannot be replaced: they are
// written directly. "-" is standard output: the bytes are written to a private
// temporary file and copied there on commit(), so a failure prints nothing.

#include <string>
#include <string_view>

namespace neq::cli {

class PendingOutput {
  public:
    // How the temporary file is named. Work that derives names from the file's own name
    // (a scene's node names) needs the temporary file to bear the destination's name: it
    // is then made in a private folder beside the destination.
    enum class Naming { hidden, sameName };

    // Creates the temporary file. Fails (throws Failure) when the destination is a
    // folder or its folder cannot take a new file, with the reason in words.
    explicit PendingOutput(const std::string& destination, Naming naming = Naming::hidden);
    PendingOutput(const PendingOutput&) = delete;
    PendingOutput& operator=(const PendingOutput&) = delete;
    ~PendingOutput();

    // Where to write: the temporary file, or the destination itself for a device.
    const std::string& writePath() const { return writePath_; }
    const std::string& destination() const { return destination_; }
    // How status lines name the destination: "standard output" for "-".
    std::string shownName() const { return toStandardOutput_ ? "standard output" : destination_; }

    // Writes `bytes` to writePath(), replacing what it holds.
    void write(std::string_view bytes) const;
    // Renames the temporary file into place.
    void commit();

    // Fails with "cannot write output 'x': REASON", REASON from `error` (an errno value).
    [[noreturn]] void failWrite(int error) const;

  private:
    void removeTemporary();

    std::string destination_; // as the user named it, for messages
    std::string target_;      // the file to replace, links followed
    std::string writePath_;
    std::string privateFolder_; // for Naming::sameName, removed with the temporary file
    bool temporary_ = false;    // writePath_ is a temporary file still to be renamed or removed
    bool toStandardOutput_ = false;
};

} // namespace neq::cli
