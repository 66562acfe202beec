// The output values of a case, kept from case to case so that scoring a case allocates nothing once
// every output has its value object. Unlike a plain ResultField, a value of another kind than the one
// held (a number where an invalid text stood, a date) replaces the held value instead of being refused,
// so every case reads what its model gave. Internal to the library.
#pragma once

#include <string>

#include "vantry/factory/ResultField.h"

namespace vantry {

class ReusedResultField : public QXVantry_920::ResultField {
  public:
    using QXVantry_920::ResultField::SetResultValue;
    bool SetResultValue(std::string const& name, QXVantry_920::ScoreValue const* value) override;
    bool SetResultValue(std::string const& name, std::string const& text) override;
    bool SetResultValue(std::string const& name, double number) override;

    // Every held value becomes missing in its own kind: the system-missing number or the empty text.
    void ClearValues();

  private:
    void Replace(std::string const& name, QXVantry_920::ScoreValue* value);
};

}  // namespace vantry
