#include <iostream>
#include <locale>
#include <sstream>
#include <string_view>
#include <typeinfo>

#include "vantry/values/NumberText.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

// Empty, or nothing but 0x20 bytes; tabs and other white space do not count.
bool IsBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

// Without its trailing 0x20 bytes; leading spaces stay significant.
std::string_view TrimTrailing(std::string_view text) {
    std::size_t const last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

bool HasTrailingSpace(std::string_view text) {
    return !text.empty() && text.back() == ' ';
}

// Unsigned byte order over the common length, the shorter string first when that part is equal.
bool ByteLess(std::string_view a, std::string_view b) {
    return a.compare(b) < 0;
}

// >= (greaterOrEqual) and <= of two non-blank strings. A padded left operand against an unpadded right
// one is an equality test in both directions: that is how padded case values meet category values.
bool NonBlankOrEqual(std::string_view a, std::string_view b, bool greaterOrEqual) {
    if (HasTrailingSpace(a) && !HasTrailingSpace(b)) {
        return TrimTrailing(a) == b;
    }
    std::string_view const ta = TrimTrailing(a);
    std::string_view const tb = TrimTrailing(b);
    return greaterOrEqual ? !ByteLess(ta, tb) : !ByteLess(tb, ta);
}

}  // namespace

// The split shared by the string operators: whether the other operand is a string, its text, and which
// of the two operands are blank. The text of a StringValue is read in place, so comparing two strings
// on the scoring path copies nothing; another string kind is read through GetString.
struct StringValue::Operands {
    Operands(std::string const& left, ScoreValue const& other) {
        if (TypeOf(other) != STRING_VALUE) {
            return;
        }
        isString = true;
        if (typeid(other) == typeid(StringValue)) {
            right = static_cast<StringValue const&>(other).fText;
        } else {
            fHolder = TextOf(other);
            right = fHolder;
        }
        leftBlank = IsBlank(left);
        rightBlank = IsBlank(right);
    }
    Operands(Operands const&) = delete;
    Operands& operator=(Operands const&) = delete;

    bool isString = false;
    std::string_view right;
    bool leftBlank = false;
    bool rightBlank = false;

  private:
    std::string fHolder;
};

int const StringValue::MAX_STRING;

StringValue::StringValue() : fText(MAX_STRING, '\0'), fLength(0) {}

StringValue::StringValue(char const* text) : fText(text != nullptr ? text : ""), fLength(0) {
    fLength = static_cast<int>(fText.size());
}

StringValue::StringValue(std::string const& text) : fText(text), fLength(static_cast<int>(text.size())) {}

StringValue::StringValue(StringValue const& other)
    : ScoreValue(other), fText(other.fText), fLength(static_cast<int>(other.fText.size())) {}

StringValue& StringValue::operator=(StringValue const& other) {
    fText = other.fText;
    fLength = other.fLength;
    return *this;
}

StringValue::~StringValue() = default;

void StringValue::SetValue(ScoreValue const* value) {
    if (value != nullptr && TypeOf(*value) == STRING_VALUE) {
        fText = TextOf(*value);
    } else {
        fText.clear();
    }
}

ScoreValue* StringValue::GetValue() const {
    return new StringValue(fText);
}

ScoreValue* StringValue::Clone() const {
    return new StringValue(*this);
}

bool StringValue::operator==(ScoreValue const& other) const {
    Operands const o(fText, other);
    if (!o.isString) {
        return false;
    }
    if (fText == o.right) {
        return true;
    }
    if (o.rightBlank) {
        return o.leftBlank;
    }
    return !o.leftBlank && TrimTrailing(fText) == TrimTrailing(o.right);
}

bool StringValue::Equal(ScoreValue const* other, bool noSpaceTrim, bool emptyStringOK) const {
    if (other == nullptr) {
        return false;
    }
    Operands const o(fText, *other);
    if (!o.isString) {
        return false;
    }
    if (fText == o.right) {
        return true;
    }
    if (noSpaceTrim) {
        return false;
    }
    if (o.rightBlank) {
        if (!o.leftBlank) {
            return false;
        }
        // Both blank and not identical. With emptyStringOK the empty string is a value of its own,
        // while two space strings of different lengths still match.
        return !emptyStringOK || fText.empty() == o.right.empty();
    }
    return !o.leftBlank && TrimTrailing(fText) == TrimTrailing(o.right);
}

bool StringValue::operator>(ScoreValue const& other) const {
    Operands const o(fText, other);
    if (!o.isString || o.leftBlank) {
        return false;
    }
    return o.rightBlank || ByteLess(TrimTrailing(o.right), TrimTrailing(fText));
}

bool StringValue::operator<(ScoreValue const& other) const {
    // A non-blank string is "less than" a blank one, as it is "greater than" it.
    Operands const o(fText, other);
    if (!o.isString || o.leftBlank) {
        return false;
    }
    return o.rightBlank || ByteLess(TrimTrailing(fText), TrimTrailing(o.right));
}

bool StringValue::operator<=(ScoreValue const& other) const {
    Operands const o(fText, other);
    if (!o.isString) {
        return false;
    }
    if (o.rightBlank) {
        return o.leftBlank;
    }
    return o.leftBlank || NonBlankOrEqual(fText, o.right, false);
}

bool StringValue::operator>=(ScoreValue const& other) const {
    Operands const o(fText, other);
    if (!o.isString) {
        return false;
    }
    if (o.rightBlank) {
        return true;
    }
    return !o.leftBlank && NonBlankOrEqual(fText, o.right, true);
}

bool StringValue::IsSystemMissingValue() const {
    return false;
}

int StringValue::GetInt() const {
    return numbertext::LeadingInt(fText);
}

double StringValue::GetDouble() const {
    // The decimal point of the locale imbued in the standard output stream replaces the first "." of
    // the text, and the copy is read in the global locale.
    char const point = std::use_facet<std::numpunct<char>>(std::cout.getloc()).decimal_point();
    std::string copy = fText;
    std::size_t const dot = copy.find('.');
    if (dot != std::string::npos) {
        copy[dot] = point;
    }
    std::istringstream in(copy);
    double result = 0.0;
    in >> result;
    return result;
}

std::string StringValue::GetString() {
    return fText;
}

ScoreValue::ValueType StringValue::GetType() {
    return STRING_VALUE;
}

void StringValue::SetString(std::string const& text) {
    fText = text;
}

int StringValue::GetLength() const {
    return fLength;
}

void StringValue::SetLength(int length) {
    fLength = length;
}

}  // namespace QXVantry_920
