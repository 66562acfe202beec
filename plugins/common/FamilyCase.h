// What a model family sees of one case while it scores it, and what it answers.
//
// FieldHandle names a field once, at build time: a slot of the model's prepared input record or of
// its derived record. FamilyCase reads the case through handles without looking a name up.
// Prediction is the family's answer, which the common layer turns into targets, outputs and a result.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace QXVantry_920 {

class CaseRecord;
class ScoreCaseRecord;
class ScoreDictVar;
class ScoreValue;

struct FieldHandle {
    enum Source : std::int8_t { kNone = 0, kInput = 1, kDerived = 2 };

    Source source = kNone;
    // The slot in the record of the source.
    int index = -1;
    // The field's variable (the model's input variable or derived variable); null for kNone.
    ScoreDictVar const* variable = nullptr;

    bool IsValid() const { return source != kNone && index >= 0 && variable != nullptr; }
};

// The answer of a family for one case. Categories are the model's, fixed at build time
// (FamilyModel::SetCategories); per-category vectors are indexed like them.
struct Prediction {
    // False: the model gave no prediction (missing inputs without a rule for them, for instance).
    bool valid = false;
    // The predicted number of a regression, or the system-missing number.
    double value;
    // The predicted category of a classification, or -1.
    int category = -1;
    // Per category; empty when the family gives none.
    std::vector<double> probabilities;
    // Per category; empty means "as the probabilities".
    std::vector<double> confidences;
    // The id of the entity that decided (a tree node, a segment); empty for none.
    std::string entityId;

    Prediction();
    // Clears the answer for a new case, keeping the vectors' storage; sizes the probabilities to the
    // number of categories (all 0).
    void Reset(std::size_t categories);
    // The probability of a category, 0 outside the vector.
    double ProbabilityOf(int category) const;
    // The confidence of a category: its confidence if given, else its probability.
    double ConfidenceOf(int category) const;
    // Picks the category of highest probability (the first of equals); -1 when there is none above 0.
    int ArgMax() const;
};

// One case as a family evaluates it.
class FamilyCase {
  public:
    FamilyCase(ScoreCaseRecord const* input, ScoreCaseRecord const* derived, CaseRecord* flat,
               class FamilyModel const* model);

    // The field's value, or null when the record has none.
    ScoreValue const* Value(FieldHandle const& field) const;
    // Null, or missing for the field's variable (its missing values, the system-missing number, an
    // empty text where that is missing).
    bool IsMissing(FieldHandle const& field) const;
    // The field's number; false, and x untouched, for a missing value or a text that is no number.
    bool Number(FieldHandle const& field, double& x) const;
    // The field's text ("" for a missing value): a number in its shortest exact form, else the text.
    std::string Text(FieldHandle const& field) const;

    // The two records for predicates: ScorePredicate::Evaluate(Input(), Derived()).
    ScoreCaseRecord const* Input() const { return fInput; }
    ScoreCaseRecord const* Derived() const { return fDerived; }
    // One record of every input and derived value by name, filled on the first call for the case:
    // what a parent passes to its segments.
    ScoreCaseRecord const* Flat() const;

  private:
    ScoreCaseRecord const* fInput;
    ScoreCaseRecord const* fDerived;
    CaseRecord* fFlat;
    FamilyModel const* fModel;
    mutable bool fFlatFilled = false;
};

}  // namespace QXVantry_920
