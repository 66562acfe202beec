// A name held in every form the text layer knows: UTF-8 (the master value), the code page of the default
// converter, UTF-16 and the system encoding. All conversions are paid when the name is set, so that the
// getters are plain reads; only the code page form is made again when the default converter has changed.
#pragma once

#include <memory>
#include <string>

#include "vantry/Export.h"

namespace QXXML_920 {

class VANTRY_EXPORT ExtNameStr {
  public:
    ExtNameStr();
    ExtNameStr(ExtNameStr const& other);
    ExtNameStr& operator=(ExtNameStr const& other);
    ~ExtNameStr();

    void SetU8(std::string const& value);
    void SetU16(std::u16string const& value);
    // Generic text: UTF-8 in UTF-8 mode, else the default converter's code page.
    void SetGeneric(std::string const& value);
    // Text in the code page of `converter` (null: the default converter).
    void SetCP(std::string const& value, void* converter);
    // Text in the system encoding. The UTF-16 form is left as it was.
    void SetSystem(std::string const& value);

    std::string const& GetU8() const;
    std::u16string const& GetU16() const;
    std::string const& GetSystem() const;
    std::string const& GetCP() const;
    std::string const& GetGeneric() const;
    char const* GetU8Z() const;
    char16_t const* GetU16Z() const;
    char const* GetSystemZ() const;
    char const* GetCPZ() const;
    char const* GetGenericZ() const;

    // The value in the code page of `converter` (null: the default converter); the result code of the
    // conversion becomes the error code.
    std::string GetCP(void* converter);

    bool Empty() const;
    void Clear();
    // Result code of the latest conversion: 0 to 3 as in KROMMultiByte.h.
    int ErrorCode() const;

  private:
    struct Record;

    void RefreshCodePageForms() const;
    void RefreshAll();

    std::unique_ptr<Record> fRecord;
};

}  // namespace QXXML_920
