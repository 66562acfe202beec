// Turning coded errors into words: one row of a message table, the formatter interface that every
// exception talks to, and its ICU MessageFormat implementation with the library's global instance.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "vantry/Export.h"

namespace ScoreContext {

// One row of a message table: a code and its ICU MessageFormat pattern.
struct MessageItem {
    int code;
    char const* text;
};

// The formatter interface. Plug-ins share its slot order, so the order of the six operations is fixed.
// Nobody deletes a formatter through this interface; the destructor is protected and not virtual.
class VANTRY_EXPORT IErrorFormater {
  public:
    // Formats `code` with exactly one `char const*` argument taken from the variable arguments.
    virtual std::string FormatV(int code, ...) = 0;
    // Formats `code` with `count` consecutive `char const*` values found at `args`.
    virtual std::string VFormatN(int code, int count, char* args) = 0;
    // Formats `code` with `count` variable arguments, each a `char const*`.
    virtual std::string FormatN(int code, int count, ...) = 0;
    // Formats `code` with the given arguments; no arguments leave the pattern as it is stored.
    virtual std::string Format(int code, std::vector<std::string> const& args) = 0;
    // The number of placeholders in the pattern of `code`.
    virtual int GetParameterNumber(int code) = 0;
    // Adds `count` rows of `table`; false if the table's first code has a text already.
    virtual bool LoadMessages(int count, MessageItem* table) = 0;

  protected:
    IErrorFormater() = default;
    IErrorFormater(IErrorFormater const&) = default;
    IErrorFormater& operator=(IErrorFormater const&) = default;
    ~IErrorFormater() = default;
};

// Formats with ICU MessageFormat. The map keeps the pattern pointers handed to LoadMessages, not copies,
// so a table must outlive every formatter loaded from it. A code without a text formats as an empty
// string; reading never changes the map, so one formatter serves many threads once it is loaded.
class VANTRY_EXPORT VTErrorFormater : public IErrorFormater {
  public:
    VTErrorFormater(int count, MessageItem* table);
    VTErrorFormater(VTErrorFormater const& other);
    VTErrorFormater(VTErrorFormater&& other);
    VTErrorFormater& operator=(VTErrorFormater const& other);
    VTErrorFormater& operator=(VTErrorFormater&& other);
    ~VTErrorFormater();

    std::string FormatV(int code, ...) override;
    std::string VFormatN(int code, int count, char* args) override;
    std::string FormatN(int code, int count, ...) override;
    std::string Format(int code, std::vector<std::string> const& args) override;
    int GetParameterNumber(int code) override;
    bool LoadMessages(int count, MessageItem* table) override;

  private:
    // The stored pattern of `code`, or null. The text is never written through the result.
    char* FindMessageContent(int code);

    std::map<int, char const*> fMessages;
};

// The formatter every thrower of the library passes; it holds the library's message table from load
// to unload.
VANTRY_EXPORT extern VTErrorFormater gErrorFormater;

}  // namespace ScoreContext
