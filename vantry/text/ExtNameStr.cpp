#include "vantry/text/ExtNameStr.h"

#include <unicode/ucnv.h>

#include "vantry/text/KROMMultiByte.h"

namespace QXXML_920 {

struct ExtNameStr::Record {
    std::string u8;
    std::string cp;
    int cpStamp = -1;  // the default converter's id when `cp` was made
    int errorCode = 0;
    std::u16string u16;
    std::string system;
};

namespace {

using ConverterHandle = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

// A converter for the system encoding, opened from a name in the generic form.
ConverterHandle OpenSystemConverter() {
    void* converter =
        qUTF8mode() ? KROMMBConverterNew_8(SystemEncoding()) : KROMMBConverterNew_C(SystemEncoding());
    return ConverterHandle(static_cast<UConverter*>(converter), &ucnv_close);
}

}  // namespace

ExtNameStr::ExtNameStr() : fRecord(std::make_unique<Record>()) {}

ExtNameStr::ExtNameStr(ExtNameStr const& other) : fRecord(std::make_unique<Record>(*other.fRecord)) {}

ExtNameStr& ExtNameStr::operator=(ExtNameStr const& other) {
    if (this != &other) {
        *fRecord = *other.fRecord;
    }
    return *this;
}

ExtNameStr::~ExtNameStr() = default;

// Makes the code page form and the system form from `u8`. A failure of either is the error code, the code
// page form's first.
void ExtNameStr::RefreshCodePageForms() const {
    Record& record = *fRecord;
    KROMMBGetDefaultConverter();  // so that the stamp names the converter used below
    record.cpStamp = KROMMBDefaultConverterID();
    record.errorCode = KROMMBU8ToCodePage(nullptr, record.cp, record.u8);
    ConverterHandle system = OpenSystemConverter();
    int systemCode = KROMMBU8ToCodePage(system.get(), record.system, record.u8);
    if (record.errorCode == 0) {
        record.errorCode = systemCode;
    }
}

// Makes every other form from `u8`. The error code is that of the UTF-16 form alone.
void ExtNameStr::RefreshAll() {
    RefreshCodePageForms();
    fRecord->errorCode = KROMMBU8ToU16(fRecord->u16, fRecord->u8);
}

void ExtNameStr::SetU8(std::string const& value) {
    fRecord->errorCode = 0;
    fRecord->u8 = value;
    RefreshAll();
}

void ExtNameStr::SetU16(std::u16string const& value) {
    fRecord->errorCode = KROMMBU16ToU8(fRecord->u8, value);
    RefreshAll();
}

void ExtNameStr::SetGeneric(std::string const& value) {
    fRecord->errorCode = KROMMBGenericToU8(nullptr, fRecord->u8, value);
    RefreshAll();
}

void ExtNameStr::SetCP(std::string const& value, void* converter) {
    fRecord->errorCode = KROMMBCodePageToU8(converter, fRecord->u8, value);
    RefreshAll();
}

void ExtNameStr::SetSystem(std::string const& value) {
    RefreshCodePageForms();
    Record& record = *fRecord;
    record.system = value;
    ConverterHandle system = OpenSystemConverter();
    KROMMBCodePageToU8(system.get(), record.u8, record.system);
    record.errorCode = KROMMBU8ToCodePage(nullptr, record.cp, record.u8);
}

std::string const& ExtNameStr::GetU8() const {
    return fRecord->u8;
}

std::u16string const& ExtNameStr::GetU16() const {
    return fRecord->u16;
}

std::string const& ExtNameStr::GetSystem() const {
    return fRecord->system;
}

std::string const& ExtNameStr::GetCP() const {
    if (fRecord->cpStamp != KROMMBDefaultConverterID()) {
        RefreshCodePageForms();
    }
    return fRecord->cp;
}

std::string const& ExtNameStr::GetGeneric() const {
    return qUTF8mode() ? fRecord->u8 : GetCP();
}

char const* ExtNameStr::GetU8Z() const {
    return GetU8().c_str();
}

char16_t const* ExtNameStr::GetU16Z() const {
    return GetU16().c_str();
}

char const* ExtNameStr::GetSystemZ() const {
    return GetSystem().c_str();
}

char const* ExtNameStr::GetCPZ() const {
    return GetCP().c_str();
}

char const* ExtNameStr::GetGenericZ() const {
    return GetGeneric().c_str();
}

std::string ExtNameStr::GetCP(void* converter) {
    std::string value;
    fRecord->errorCode = KROMMBU8ToCodePage(converter, value, fRecord->u8);
    return value;
}

bool ExtNameStr::Empty() const {
    return fRecord->u8.empty();
}

void ExtNameStr::Clear() {
    fRecord->errorCode = 0;
    fRecord->u8.clear();
    RefreshAll();
}

int ExtNameStr::ErrorCode() const {
    return fRecord->errorCode;
}

}  // namespace QXXML_920
