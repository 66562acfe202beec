// Boolean conditions on a case, with which model plug-ins pick a tree branch or a rule. A simple or set
// predicate holds a split variable whose child index 0 means "the condition holds": evaluating it asks
// the split for a child index. A compound predicate combines others with "or", "and", "xor" or
// "surrogate"; the constant predicates always hold or never do.
//
// Predicates are read-only after parsing and keep no per-record state, so two threads may evaluate one
// predicate when each has its own records. Evaluation reads derived values from the derived record that
// the caller passes in; it never computes them. The virtual slot order is shared with plug-ins and must
// not change.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/OwnedPointers.h"
#include "vantry/values/ScoreSplitVar.h"

namespace QXVantry_920 {

class ScoreCaseRecord;
class ScoreValue;

class VANTRY_EXPORT ScorePredicate {
  public:
    // True is 0, since 0 is the child index of a matching split.
    enum PredicateResult : std::int32_t {
        PRED_TRUE = 0,
        PRED_FALSE = 1,
        PRED_UNKNOWN = 2,
        PRED_SURROGATE_TRUE = 3,  // true, reached through a surrogate
    };

    enum PredicateType : std::int32_t {
        COMPOUND_PREDICATE = 0,
        SIMPLE_PREDICATE = 1,
        SET_PREDICATE = 2,
        TRUE_PREDICATE = 3,
        FALSE_PREDICATE = 4,
    };

    enum CompoundBoolOperator : std::int32_t {
        BOOL_OR = 0,
        BOOL_AND = 1,
        BOOL_XOR = 2,
        BOOL_SURROGATE = 3,
    };

    virtual ~ScorePredicate();
    // A new copy that the caller owns.
    virtual ScorePredicate* Clone() const = 0;
    // On the encoded predictor values of a model, each at its variable's encoded value index.
    virtual PredicateResult Evaluate(std::vector<double> const& values) = 0;
    // On an input record and the record of derived values made from it (null when there are none).
    virtual PredicateResult Evaluate(ScoreCaseRecord const* input, ScoreCaseRecord const* derived) = 0;
    virtual PredicateType GetPredType() = 0;
    // Whether the predicate reads a derived variable.
    virtual bool IsDerivedPredictor() const = 0;
    // Simple and set predicates take the split over and let go of the one held before without deleting
    // it (take that one with GetSplit first). The others ignore the call: the split stays the caller's.
    virtual void SetSplit(ScoreSplitVar const* split) = 0;
    virtual ScoreSplitVar const* GetSplit() const = 0;
    virtual void Display(std::ostream& out) const = 0;

  protected:
    ScorePredicate() = default;
    ScorePredicate(ScorePredicate const&) = default;
    ScorePredicate& operator=(ScorePredicate const&) = default;
};

namespace detail {

// The split of a simple or set predicate: owned, cloned when the predicate is copied. Setting a new one
// lets go of the old one without deleting it, as the library's pointer setters do.
class PredicateSplit {
  public:
    PredicateSplit() = default;
    explicit PredicateSplit(ScoreSplitVar const* split) : fSplit(split) {}
    PredicateSplit(PredicateSplit const& other) : fSplit(CloneOf(other)) {}
    PredicateSplit& operator=(PredicateSplit const& other) {
        if (this != &other) {
            fSplit.reset(CloneOf(other));
        }
        return *this;
    }

    ScoreSplitVar const* Get() const { return fSplit.get(); }
    void Set(ScoreSplitVar const* split) {
        static_cast<void>(fSplit.release());
        fSplit.reset(split);
    }
    // The split's variable; null without a split.
    ScoreDictVar const* Variable() const { return fSplit ? fSplit->GetSplitVar() : nullptr; }
    // Whether the split's variable is a derived one.
    bool ReadsDerived() const {
        ScoreDictVar const* variable = Variable();
        return variable != nullptr && variable->IsDerivedVariable();
    }
    bool IsDiscrete() const {
        // The slot reads a constant of the split's class and changes nothing.
        return fSplit &&
               const_cast<ScoreSplitVar*>(fSplit.get())->GetSplitVarType() == ScoreSplitVar::DISCRETE_SPLIT;
    }

  private:
    static ScoreSplitVar const* CloneOf(PredicateSplit const& other) {
        return other.fSplit ? other.fSplit->Clone() : nullptr;
    }

    std::unique_ptr<ScoreSplitVar const> fSplit;
};

}  // namespace detail

class VANTRY_EXPORT SimplePredicate : public ScorePredicate {
  public:
    enum SimplePredOperator : std::int32_t {
        OP_EQUAL = 0,
        OP_NOT_EQUAL = 1,
        OP_LESS_THAN = 2,
        OP_LESS_OR_EQUAL = 3,
        OP_GREATER_THAN = 4,
        OP_GREATER_OR_EQUAL = 5,
        OP_IS_MISSING = 6,
        OP_OTHER = 7,  // any other non-empty text, "isNotMissing" among them
    };

    SimplePredicate();
    // Takes the split over.
    explicit SimplePredicate(ScoreSplitVar const* split);
    SimplePredicate(SimplePredicate const& other);
    SimplePredicate& operator=(SimplePredicate const& other);
    ~SimplePredicate() override;

    ScorePredicate* Clone() const override;
    PredicateResult Evaluate(std::vector<double> const& values) override;
    PredicateResult Evaluate(ScoreCaseRecord const* input, ScoreCaseRecord const* derived) override;
    PredicateType GetPredType() override;
    bool IsDerivedPredictor() const override;
    void SetSplit(ScoreSplitVar const* split) override;
    ScoreSplitVar const* GetSplit() const override;
    void Display(std::ostream& out) const override;

    // An empty text leaves the operator as it is.
    void SetPredicateOperator(std::string const& text);
    // Keeps the text, and its number: the encoder's code when the split variable has an encoder,
    // otherwise the variable's reading of the text.
    void SetPredicateValue(std::string const& text);
    void SetValueToMissing(bool isMissing);
    SimplePredOperator GetPredicateOperator() const;
    std::string const& GetPredValueByString() const;
    double GetPredValueByDouble() const;
    bool IsMissingValue() const;

  private:
    ScoreValue const* GetScoreValue(ScoreDictVar const* variable, ScoreCaseRecord const* input,
                                    ScoreCaseRecord const* derived) const;
    double GetScoreEncodeValue(ScoreDictVar const* variable, ScoreValue const* value) const;

    detail::PredicateSplit fSplit;
    bool fIsMissing;
    double fValueByDouble;
    std::string fValueByString;
    SimplePredOperator fOperator;
};

class VANTRY_EXPORT SetPredicate : public ScorePredicate {
  public:
    enum SimpleSetPredOperator : std::int32_t {
        SET_IS_IN = 0,
        SET_OTHER = 1,  // any other text, "isNotIn" among them
    };

    SetPredicate();
    // Takes the split over.
    explicit SetPredicate(ScoreSplitVar const* split);
    SetPredicate(SetPredicate const& other);
    SetPredicate& operator=(SetPredicate const& other);
    ~SetPredicate() override;

    ScorePredicate* Clone() const override;
    PredicateResult Evaluate(std::vector<double> const& values) override;
    PredicateResult Evaluate(ScoreCaseRecord const* input, ScoreCaseRecord const* derived) override;
    PredicateType GetPredType() override;
    bool IsDerivedPredictor() const override;
    void SetSplit(ScoreSplitVar const* split) override;
    ScoreSplitVar const* GetSplit() const override;
    void Display(std::ostream& out) const override;

    void SetPredicateOperator(std::string const& text);
    void SetArrayData(std::vector<double> const& data);
    std::vector<double> const& GetArrayData() const;
    SimpleSetPredOperator GetPredicateOperator() const;

  private:
    ScoreValue const* GetScoreValue(ScoreDictVar const* variable, ScoreCaseRecord const* input,
                                    ScoreCaseRecord const* derived) const;
    double GetScoreEncodeValue(ScoreDictVar const* variable, ScoreValue const* value) const;

    detail::PredicateSplit fSplit;
    SimpleSetPredOperator fOperator;
    std::vector<double> fArrayData;
};

class VANTRY_EXPORT CompoundPredicate : public ScorePredicate {
  public:
    CompoundPredicate();
    explicit CompoundPredicate(CompoundBoolOperator op);
    // Clones the children.
    CompoundPredicate(CompoundPredicate const& other);
    CompoundPredicate& operator=(CompoundPredicate const& other);
    ~CompoundPredicate() override;

    ScorePredicate* Clone() const override;
    PredicateResult Evaluate(std::vector<double> const& values) override;
    PredicateResult Evaluate(ScoreCaseRecord const* input, ScoreCaseRecord const* derived) override;
    PredicateType GetPredType() override;
    // Whether any child reads a derived variable.
    bool IsDerivedPredictor() const override;
    void SetSplit(ScoreSplitVar const* split) override;
    ScoreSplitVar const* GetSplit() const override;
    void Display(std::ostream& out) const override;

    // Takes the child over; null is ignored.
    void AddPredicate(ScorePredicate* predicate);
    // Takes the child out without deleting it; false when it is not a child.
    bool RemovePredicate(ScorePredicate* predicate);
    std::vector<ScorePredicate*> const& GetPredicates() const;
    int GetCount() const;
    CompoundBoolOperator GetBoolOperator() const;
    void SetBoolOperator(CompoundBoolOperator op);
    // A surrogate chain entered at the child `start`: its result unless unknown, otherwise the first
    // known result of the children after it, true becoming "true through a surrogate". False for
    // another operator or a start outside the children.
    PredicateResult EvaluateSurrogate(std::vector<double> const& values, int start);

  private:
    detail::OwnedPointers<ScorePredicate> fPredicates;
    CompoundBoolOperator fOperator;
};

class VANTRY_EXPORT TruePredicate : public ScorePredicate {
  public:
    TruePredicate();
    TruePredicate(TruePredicate const& other);
    TruePredicate& operator=(TruePredicate const& other);
    ~TruePredicate() override;

    ScorePredicate* Clone() const override;
    PredicateResult Evaluate(std::vector<double> const& values) override;
    PredicateResult Evaluate(ScoreCaseRecord const* input, ScoreCaseRecord const* derived) override;
    PredicateType GetPredType() override;
    bool IsDerivedPredictor() const override;
    void SetSplit(ScoreSplitVar const* split) override;
    ScoreSplitVar const* GetSplit() const override;
    void Display(std::ostream& out) const override;
};

class VANTRY_EXPORT FalsePredicate : public ScorePredicate {
  public:
    FalsePredicate();
    FalsePredicate(FalsePredicate const& other);
    FalsePredicate& operator=(FalsePredicate const& other);
    ~FalsePredicate() override;

    ScorePredicate* Clone() const override;
    PredicateResult Evaluate(std::vector<double> const& values) override;
    PredicateResult Evaluate(ScoreCaseRecord const* input, ScoreCaseRecord const* derived) override;
    PredicateType GetPredType() override;
    bool IsDerivedPredictor() const override;
    void SetSplit(ScoreSplitVar const* split) override;
    ScoreSplitVar const* GetSplit() const override;
    void Display(std::ostream& out) const override;
};

}  // namespace QXVantry_920
