// Scalar values: the abstract ScoreValue and its concrete kinds NumericValue and StringValue.
//
// Every datum that crosses the library is held as a ScoreValue. The comparison operators below are the
// core of the library's semantics: predicates, missing-value tests, encoders and split look-ups all come
// down to them. They are deliberately neither symmetric nor transitive across types.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "vantry/Export.h"

namespace QXVantry_920 {

// The abstract scalar. Holds no data. The order of the virtual operations is shared with plug-ins and
// must not change.
class VANTRY_EXPORT ScoreValue {
  public:
    // Callers test these by number; 2, 3 and 4 are never produced.
    enum ValueType : std::int32_t { NUMERIC_VALUE = 0, STRING_VALUE = 1, DATETIME_VALUE = 5 };

    virtual ~ScoreValue();
    virtual void SetValue(ScoreValue const* value) = 0;
    // A new object; the caller owns it.
    virtual ScoreValue* GetValue() const = 0;
    // A new object; the caller owns it.
    virtual ScoreValue* Clone() const = 0;
    virtual bool operator==(ScoreValue const& other) const = 0;
    virtual bool Equal(ScoreValue const* other, bool noSpaceTrim, bool emptyStringOK) const = 0;
    virtual bool operator>(ScoreValue const& other) const = 0;
    virtual bool operator<(ScoreValue const& other) const = 0;
    virtual bool operator<=(ScoreValue const& other) const = 0;
    virtual bool operator>=(ScoreValue const& other) const = 0;
    virtual bool IsSystemMissingValue() const = 0;
    virtual int GetInt() const = 0;
    virtual double GetDouble() const = 0;
    virtual std::string GetString() = 0;
    virtual ValueType GetType() = 0;

    // GetString and GetType are not const members; no implementation changes its object in them, so
    // these read them through a const reference.
    static ValueType TypeOf(ScoreValue const& value);
    static std::string TextOf(ScoreValue const& value);
};

// A number. The system-missing value is the finite double gSysmisValue, not a NaN.
class VANTRY_EXPORT NumericValue : public ScoreValue {
  protected:
    // The most negative finite double, bit pattern FFEFFFFFFFFFFFFF. Constant-initialised, so it is set
    // before SYSMIS and before any load-time object of another unit that copies it.
    static constexpr double gSysmisValue = -1.7976931348623157e+308;
    // Positive infinity, bit pattern 7FF0000000000000.
    static constexpr double gInfinity = std::numeric_limits<double>::infinity();
    // The relative tolerance of IsEqual, bit pattern 3D190002EA46883A.
    static constexpr double fEpsilon = 2.22045e-14;

  public:
    // A value object holding gSysmisValue.
    static NumericValue const SYSMIS;

    constexpr NumericValue() : fValue(gSysmisValue) {}
    NumericValue(double value);
    NumericValue(NumericValue const& other);
    // Reads the text with FromString.
    NumericValue(std::string const& text);
    NumericValue& operator=(NumericValue const& other);
    ~NumericValue() override;

    // Takes the number of a NUMERIC_VALUE; any other kind (date-time included) leaves the value as it was.
    void SetValue(ScoreValue const* value) override;
    ScoreValue* GetValue() const override;
    ScoreValue* Clone() const override;
    // Relative equality (IsEqual) against another NUMERIC_VALUE; false for any other kind.
    bool operator==(ScoreValue const& other) const override;
    // Always true, whatever the arguments (null included).
    bool Equal(ScoreValue const* other, bool noSpaceTrim, bool emptyStringOK) const override;
    // The relational operators compare this stored double with other's GetDouble under the absolute
    // tolerance 1e-14, with no type test; false whenever either side is system-missing.
    bool operator>(ScoreValue const& other) const override;
    bool operator<(ScoreValue const& other) const override;
    bool operator<=(ScoreValue const& other) const override;
    bool operator>=(ScoreValue const& other) const override;
    // Exactly equal to gSysmisValue, no tolerance.
    bool IsSystemMissingValue() const override;
    // Truncated toward zero; -2147483648 when the number does not fit 32 bits (missing and NaN included).
    int GetInt() const override;
    double GetDouble() const override;
    // "Undefined" at or below gSysmisValue, otherwise the general format with 6 significant digits,
    // written in the global locale.
    std::string GetString() override;
    ValueType GetType() override;

    void SetDoubleValue(double value);

    static double GetSysmisValue();
    static double GetInfinity();
    // Within 2.22045e-14 of gSysmisValue.
    static bool IsSystemMissingValue(double value);
    // Relative equality: 0 equals only 0, the missing number only itself, otherwise the difference must
    // be below max(|a|, |b|) * fEpsilon.
    static bool IsEqual(double a, double b);

  protected:
    // Empty text is missing; an overflowing literal is gInfinity; otherwise the leading number of the
    // text in the classic locale, and 0.0 when the text does not begin with one.
    void FromString(std::string const& text);

    double fValue;
};

// Text as a sequence of bytes, with a declared length kept beside it that need not agree with it.
// Strings compare by bytes, with trailing spaces insignificant and blank strings given their own rules.
class VANTRY_EXPORT StringValue : public ScoreValue {
  public:
    static int const MAX_STRING = 255;

    // MAX_STRING NUL bytes with length 0.
    StringValue();
    // A null pointer gives the empty string.
    StringValue(char const* text);
    StringValue(std::string const& text);
    // The length is the copied text's byte count, not the source's length field.
    StringValue(StringValue const& other);
    // Copies the text and the source's length field.
    StringValue& operator=(StringValue const& other);
    ~StringValue() override;

    // Takes the text of a STRING_VALUE, otherwise clears the text; the length field is kept.
    void SetValue(ScoreValue const* value) override;
    ScoreValue* GetValue() const override;
    ScoreValue* Clone() const override;
    bool operator==(ScoreValue const& other) const override;
    bool Equal(ScoreValue const* other, bool noSpaceTrim, bool emptyStringOK) const override;
    bool operator>(ScoreValue const& other) const override;
    bool operator<(ScoreValue const& other) const override;
    bool operator<=(ScoreValue const& other) const override;
    bool operator>=(ScoreValue const& other) const override;
    // Always false: a string has no system-missing form.
    bool IsSystemMissingValue() const override;
    // The leading integer of the text as the C library's atoi reads it, 0 when there is none.
    int GetInt() const override;
    // The text read as a double with the decimal point of the standard output stream's locale; 0.0 when
    // unreadable.
    double GetDouble() const override;
    std::string GetString() override;
    ValueType GetType() override;

    // Replaces the text and keeps the length field.
    void SetString(std::string const& text);
    int GetLength() const;
    void SetLength(int length);

  private:
    // The two sides of a string comparison (defined with the operators).
    struct Operands;

    std::string fText;
    int fLength;
};

}  // namespace QXVantry_920
