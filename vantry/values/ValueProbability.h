// Value probabilities: values of a variable, each with a probability from 0 to 1.
#pragma once

#include <memory>
#include <ostream>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/OwnedPointers.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreValueProbability {
  public:
    virtual ~ScoreValueProbability();
    // Refused (false) for a null value or a probability outside 0 to 1 (NaN included). Takes the value
    // over; the value it replaces is not deleted but passes back to the caller.
    virtual bool SetValueProbability(ScoreValue* value, double probability) = 0;
    // Refused (false), keeping the old probability, outside 0 to 1 (NaN included).
    virtual bool SetProbability(double probability) = 0;
    // A deep copy; the caller owns it.
    virtual ScoreValueProbability* Clone() const = 0;
    // The operators compare the two values with the ScoreValue operator; the probabilities play no part.
    virtual bool operator==(ScoreValueProbability const& other) const = 0;
    virtual bool operator>(ScoreValueProbability const& other) const = 0;
    virtual bool operator<(ScoreValueProbability const& other) const = 0;
    virtual bool operator<=(ScoreValueProbability const& other) const = 0;
    virtual bool operator>=(ScoreValueProbability const& other) const = 0;
    virtual double GetProbability() const = 0;
    // Owned by the object; null after assignment until SetValueProbability.
    virtual ScoreValue const* GetValue() const = 0;
    virtual void Display(std::ostream& out) const = 0;
};

class VANTRY_EXPORT ValueProbability : public ScoreValueProbability {
  public:
    // No value, probability 0.
    ValueProbability();
    // Takes the value over; the probability is not checked.
    ValueProbability(ScoreValue* value, double probability);
    // Clones the other's value.
    ValueProbability(ValueProbability const& other);
    // Deletes this value, leaving none, and copies only the probability.
    ValueProbability& operator=(ValueProbability const& other);
    ~ValueProbability() override;

    bool SetValueProbability(ScoreValue* value, double probability) override;
    bool SetProbability(double probability) override;
    ScoreValueProbability* Clone() const override;
    bool operator==(ScoreValueProbability const& other) const override;
    bool operator>(ScoreValueProbability const& other) const override;
    bool operator<(ScoreValueProbability const& other) const override;
    bool operator<=(ScoreValueProbability const& other) const override;
    bool operator>=(ScoreValueProbability const& other) const override;
    double GetProbability() const override;
    ScoreValue const* GetValue() const override;
    void Display(std::ostream& out) const override;

  private:
    std::unique_ptr<ScoreValue> fValue;
    double fProbability;
};

class VANTRY_EXPORT ScoreValueProbabilitySet {
  public:
    virtual ~ScoreValueProbabilitySet();
    // A deep copy; the caller owns it.
    virtual ScoreValueProbabilitySet* Clone() const = 0;
    // Takes any non-null element over, duplicates included.
    virtual bool Add(ScoreValueProbability* probability) = 0;
    // Deletes the first element whose value equals the argument's value.
    virtual bool Remove(ScoreValueProbability const* probability) = 0;
    virtual int Size() const = 0;
    // The elements stay owned by the set.
    virtual std::vector<ScoreValueProbability*> const& GetAllValueProbabilities() const = 0;
    // The probability of the first element whose value equals the argument, or 0.0.
    virtual double GetProbabilityOfValue(ScoreValue const* value) const = 0;
    virtual bool Contains(ScoreValue const* value) const = 0;
    virtual void Display(std::ostream& out) const = 0;
};

class VANTRY_EXPORT ValueProbabilitySet : public ScoreValueProbabilitySet {
  public:
    ValueProbabilitySet();
    ValueProbabilitySet(ValueProbabilitySet const& other);
    ValueProbabilitySet& operator=(ValueProbabilitySet const& other);
    ~ValueProbabilitySet() override;

    ScoreValueProbabilitySet* Clone() const override;
    bool Add(ScoreValueProbability* probability) override;
    bool Remove(ScoreValueProbability const* probability) override;
    int Size() const override;
    std::vector<ScoreValueProbability*> const& GetAllValueProbabilities() const override;
    double GetProbabilityOfValue(ScoreValue const* value) const override;
    bool Contains(ScoreValue const* value) const override;
    void Display(std::ostream& out) const override;

  private:
    detail::OwnedPointers<ScoreValueProbability> fProbabilities;
};

}  // namespace QXVantry_920
