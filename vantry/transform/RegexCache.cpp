#include "vantry/transform/RegexCache.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <array>
#include <cstddef>
#include <memory>

namespace QXVantry_920 {
namespace detail {

namespace {

// One compiled pattern with a matcher kept for reuse. A pattern that failed to compile is remembered too
// (with no matcher), so that a bad pattern is not compiled again for every record.
struct Entry {
    std::string pattern;
    std::unique_ptr<icu::RegexPattern> compiled;
    std::unique_ptr<icu::RegexMatcher> matcher;
    bool used = false;
};

class Cache {
  public:
    // The matcher of the pattern, or null when the pattern does not compile.
    icu::RegexMatcher* MatcherFor(std::string const& pattern) {
        for (Entry& entry : fEntries) {
            if (entry.used && entry.pattern == pattern) {
                return entry.matcher.get();
            }
        }
        // Replaced in turn: cheap, and a working set of at most kSize patterns never misses.
        Entry& entry = fEntries[fNext];
        fNext = (fNext + 1) % fEntries.size();
        entry.pattern = pattern;
        entry.used = true;
        entry.matcher.reset();
        UErrorCode status = U_ZERO_ERROR;
        entry.compiled.reset(icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(pattern), 0, status));
        if (U_FAILURE(status) || entry.compiled == nullptr) {
            entry.compiled.reset();
            return nullptr;
        }
        entry.matcher.reset(entry.compiled->matcher(status));
        if (U_FAILURE(status)) {
            entry.matcher.reset();
        }
        return entry.matcher.get();
    }

  private:
    static constexpr std::size_t kSize = 16;
    std::array<Entry, kSize> fEntries;
    std::size_t fNext = 0;
};

// The matcher keeps a reference to its input: it is pointed back at a lasting empty text after each use.
class Binding {
  public:
    Binding(icu::RegexMatcher& matcher, icu::UnicodeString const& input) : fMatcher(matcher) {
        fMatcher.reset(input);
    }
    ~Binding() { fMatcher.reset(Empty()); }
    Binding(Binding const&) = delete;
    Binding& operator=(Binding const&) = delete;

  private:
    static icu::UnicodeString const& Empty() {
        static icu::UnicodeString const empty;
        return empty;
    }
    icu::RegexMatcher& fMatcher;
};

icu::RegexMatcher* MatcherFor(std::string const& pattern) {
    thread_local Cache cache;
    return cache.MatcherFor(pattern);
}

// Runs use (matcher, status) on the pattern's matcher bound to the subject; false when the pattern does
// not compile, use answers false or the status fails.
template <class Use>
bool WithMatcher(std::string const& subject, std::string const& pattern, Use use) {
    icu::RegexMatcher* matcher = MatcherFor(pattern);
    if (matcher == nullptr) {
        return false;
    }
    icu::UnicodeString const input = icu::UnicodeString::fromUTF8(subject);
    Binding const binding(*matcher, input);
    UErrorCode status = U_ZERO_ERROR;
    bool const done = use(*matcher, status);
    return done && U_SUCCESS(status);
}

}  // namespace

bool RegexFind(std::string const& subject, std::string const& pattern) {
    return WithMatcher(subject, pattern, [](icu::RegexMatcher& matcher, UErrorCode& status) {
        return matcher.find(0, status);
    });
}

bool RegexReplaceAll(std::string const& subject, std::string const& pattern, std::string const& replacement,
                     std::string& result) {
    icu::UnicodeString replaced;
    bool const done = WithMatcher(subject, pattern, [&](icu::RegexMatcher& matcher, UErrorCode& status) {
        replaced = matcher.replaceAll(icu::UnicodeString::fromUTF8(replacement), status);
        return true;
    });
    if (done) {
        result.clear();
        replaced.toUTF8String(result);
    }
    return done;
}

}  // namespace detail
}  // namespace QXVantry_920
