// Cuts CSV input into blocks of whole records, so that blocks can be parsed apart from one another: a
// block ends after a line end that is outside quotes, and never between the CR and LF of one line end.
#pragma once

#include <cstdint>
#include <istream>
#include <streambuf>
#include <string>
#include <string_view>

namespace vantry_tool {

class RecordBlocks {
  public:
    // Reads from the stream's current position; a block holds about blockBytes bytes unless a record is
    // longer.
    RecordBlocks(std::istream& in, std::size_t blockBytes);

    // The next block into text (its previous content replaced); false at the end of the input.
    bool Next(std::string& text);

    // Whether every byte of the input has gone out in blocks.
    bool AtEnd() const { return fEnd && fPending.empty(); }

    // The size of the blocks from the next one on.
    void SetBlockBytes(std::size_t blockBytes) { fBlockBytes = blockBytes; }

    // The bytes taken from the stream so far.
    std::int64_t BytesRead() const { return fBytesRead; }

  private:
    // Reads more input onto fPending; false at the end of the input.
    bool Fill();

    std::streambuf* fBuffer;
    std::size_t fBlockBytes;
    std::string fPending;
    bool fEnd = false;
    std::int64_t fBytesRead = 0;
};

// The length of the longest prefix of text that ends after a record's line end, 0 when there is none.
// The text starts at the start of a record; a CR at its very end is not taken as a line end, since an LF
// may follow.
std::size_t WholeRecordsLength(std::string_view text);

// An input stream over text that stays in place, read without copying.
class TextStream : public std::istream {
  public:
    explicit TextStream(std::string_view text);

  private:
    struct Buffer : std::streambuf {
        explicit Buffer(std::string_view text);
    };
    Buffer fBuffer;
};

}  // namespace vantry_tool
