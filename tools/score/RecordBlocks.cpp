#include "tools/score/RecordBlocks.h"

#include <cstring>

namespace vantry_tool {

namespace {

// The quoting state of a scan, as the CSV reader sees it: a quote opens a quoted field only as a field's
// first character, and inside one a quote either doubles or closes it.
enum class Quoting { kFieldStart, kPlain, kQuoted, kQuoteInQuoted };

}  // namespace

std::size_t WholeRecordsLength(std::string_view text) {
    char const* const begin = text.data();
    std::size_t const size = text.size();
    // Without any quote, the last LF ends the last whole record.
    if (std::memchr(begin, '"', size) == nullptr) {
        void const* lastLf = memrchr(begin, '\n', size);
        if (lastLf != nullptr || std::memchr(begin, '\r', size) == nullptr) {
            return lastLf != nullptr ? static_cast<std::size_t>(static_cast<char const*>(lastLf) - begin) + 1
                                     : 0;
        }
    }
    std::size_t cut = 0;
    Quoting state = Quoting::kFieldStart;
    for (std::size_t i = 0; i < size; ++i) {
        char const c = begin[i];
        if (state == Quoting::kQuoted) {
            if (c == '"') {
                state = Quoting::kQuoteInQuoted;
            }
            continue;
        }
        if (state == Quoting::kQuoteInQuoted) {
            if (c == '"') {
                state = Quoting::kQuoted;
                continue;
            }
            state = Quoting::kPlain;
        }
        if (c == '\n' || c == '\r') {
            state = Quoting::kFieldStart;
            if (c == '\n') {
                cut = i + 1;
            } else if (i + 1 < size && begin[i + 1] != '\n') {
                cut = i + 1;
            }
        } else if (c == ',') {
            state = Quoting::kFieldStart;
        } else if (c == '"' && state == Quoting::kFieldStart) {
            state = Quoting::kQuoted;
        } else {
            state = Quoting::kPlain;
        }
    }
    return cut;
}

RecordBlocks::RecordBlocks(std::istream& in, std::size_t blockBytes)
    : fBuffer(in.rdbuf()), fBlockBytes(blockBytes) {}

bool RecordBlocks::Fill() {
    if (fEnd || fBuffer == nullptr) {
        fEnd = true;
        return false;
    }
    std::size_t const before = fPending.size();
    fPending.resize(before + fBlockBytes);
    std::size_t taken = 0;
    // A stream may hand over less than asked before its end; only nothing at all is the end.
    while (taken < fBlockBytes) {
        std::streamsize const got =
            fBuffer->sgetn(&fPending[before + taken], static_cast<std::streamsize>(fBlockBytes - taken));
        if (got <= 0) {
            fEnd = true;
            break;
        }
        taken += static_cast<std::size_t>(got);
    }
    fPending.resize(before + taken);
    fBytesRead += static_cast<std::int64_t>(taken);
    return taken > 0;
}

bool RecordBlocks::Next(std::string& text) {
    if (fPending.size() < fBlockBytes) {
        Fill();
    }
    // Grows the block until it holds a whole record, or the input ends.
    std::size_t cut = WholeRecordsLength(fPending);
    while (cut == 0 && Fill()) {
        cut = WholeRecordsLength(fPending);
    }
    if (fEnd && (cut == 0 || fPending.size() - cut < fBlockBytes / 2)) {
        cut = fPending.size();
    }
    if (cut == 0) {
        return false;
    }
    text.assign(fPending, 0, cut);
    fPending.erase(0, cut);
    return true;
}

TextStream::Buffer::Buffer(std::string_view text) {
    char* const begin = const_cast<char*>(text.data());
    setg(begin, begin, begin + text.size());
}

TextStream::TextStream(std::string_view text) : std::istream(nullptr), fBuffer(text) {
    rdbuf(&fBuffer);
}

}  // namespace vantry_tool
