// Value labels: the categories of a variable, each a value with its label text. The order of a label
// set is the order of the categories, on which encoders and ordinal look-ups rest.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/OwnedPointers.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreValueLabel {
  public:
    virtual ~ScoreValueLabel();
    // Refused (false) for a null value or an empty label. Takes the value over; the value it replaces is
    // not deleted but passes back to the caller.
    virtual bool SetValueLabel(ScoreValue* value, std::string const& label) = 0;
    // Refused (false) for an empty label.
    virtual bool SetLabel(std::string const& label) = 0;
    // A deep copy; the caller owns it.
    virtual ScoreValueLabel* Clone() const = 0;
    // The operators compare the two values with the ScoreValue operator; the labels play no part.
    virtual bool operator==(ScoreValueLabel const& other) const = 0;
    virtual bool operator>(ScoreValueLabel const& other) const = 0;
    virtual bool operator<(ScoreValueLabel const& other) const = 0;
    virtual bool operator<=(ScoreValueLabel const& other) const = 0;
    virtual bool operator>=(ScoreValueLabel const& other) const = 0;
    virtual std::string GetLabel() = 0;
    // Owned by the label; null after assignment until SetValueLabel.
    virtual ScoreValue const* GetValue() const = 0;
    virtual void Display(std::ostream& out) const = 0;
};

class VANTRY_EXPORT ValueLbl : public ScoreValueLabel {
  public:
    ValueLbl();
    // Takes the value over.
    ValueLbl(ScoreValue* value, std::string const& label);
    // Clones the other's value.
    ValueLbl(ValueLbl const& other);
    // Deletes this value, leaving none, and copies only the label text.
    ValueLbl& operator=(ValueLbl const& other);
    ~ValueLbl() override;

    bool SetValueLabel(ScoreValue* value, std::string const& label) override;
    bool SetLabel(std::string const& label) override;
    ScoreValueLabel* Clone() const override;
    bool operator==(ScoreValueLabel const& other) const override;
    bool operator>(ScoreValueLabel const& other) const override;
    bool operator<(ScoreValueLabel const& other) const override;
    bool operator<=(ScoreValueLabel const& other) const override;
    bool operator>=(ScoreValueLabel const& other) const override;
    std::string GetLabel() override;
    ScoreValue const* GetValue() const override;
    void Display(std::ostream& out) const override;

  private:
    std::unique_ptr<ScoreValue> fValue;
    std::string fLabel;
};

class VANTRY_EXPORT ScoreValueLabelSet {
  public:
    virtual ~ScoreValueLabelSet();
    // A deep copy; the caller owns it.
    virtual ScoreValueLabelSet* Clone() const = 0;
    // Takes any non-null label over, duplicates included.
    virtual bool Add(ScoreValueLabel* label) = 0;
    // Deletes the first label whose value equals the argument's value.
    virtual bool Remove(ScoreValueLabel const* label) = 0;
    virtual int Size() const = 0;
    // In declaration order; the labels stay owned by the set.
    virtual std::vector<ScoreValueLabel*> const& GetAllValueLabels() const = 0;
    // The label of the first category whose value equals the argument, or the empty string.
    virtual std::string GetLabelOfValue(ScoreValue const* value) = 0;
    virtual bool Contains(ScoreValue const* value) const = 0;
    virtual void Display(std::ostream& out) const = 0;
};

class VANTRY_EXPORT ValueLabelSet : public ScoreValueLabelSet {
  public:
    ValueLabelSet();
    ValueLabelSet(ValueLabelSet const& other);
    ValueLabelSet& operator=(ValueLabelSet const& other);
    ~ValueLabelSet() override;

    ScoreValueLabelSet* Clone() const override;
    bool Add(ScoreValueLabel* label) override;
    bool Remove(ScoreValueLabel const* label) override;
    int Size() const override;
    std::vector<ScoreValueLabel*> const& GetAllValueLabels() const override;
    std::string GetLabelOfValue(ScoreValue const* value) override;
    bool Contains(ScoreValue const* value) const override;
    void Display(std::ostream& out) const override;

  private:
    detail::OwnedPointers<ScoreValueLabel> fLabels;
};

}  // namespace QXVantry_920
