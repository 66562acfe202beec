// A derived variable: a DictVar that computes its value from the other fields of a case. The parsers fill
// it through the setters below; GetTransformedValue computes one value per case.
//
// The variable owns its expression (bins, encoding map, function tree, lookup table), its recode values,
// its lag memory, and the result and scratch objects that every evaluation overwrites in place, so that
// evaluation allocates nothing after the first case. It belongs to one thread at a time.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "vantry/Export.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class ApplyNodeStats;
class DateTimeValue;
class FunctionTree;
class MapValues;
class NumericValue;
class ScoreCaseRecord;
class ScoreValue;
class ScoreValueRange;
class StringValue;

class VANTRY_EXPORT TransformVar : public DictVar {
  public:
    using TransformFunction = TransformationDictionary::TransformFunction;
    using TransExpression = TransformationDictionary::TransExpression;

    TransformVar(std::string const& name, VariableType type);
    // An independent deep copy: expression, recode values and lag memory included; the result and
    // caches start afresh.
    TransformVar(TransformVar const& other);
    TransformVar& operator=(TransformVar const&) = delete;
    ~TransformVar() override;

    ScoreDictVar* Clone() const override;
    void Display(std::ostream& out) const override;
    bool IsDerivedVariable() const override;

    // The value for one case: an object the variable owns and overwrites at the next call; never null.
    ScoreValue const* GetTransformedValue(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                          ScoreDictionary const* transformations);
    ScoreValue const* GetLagValue(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                  ScoreDictionary const* transformations, ScoreValue const* current);
    ScoreValue const* GetMappedValue(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                     ScoreDictionary const* transformations, ScoreValue const* current);
    ScoreValue const* GetBinningValue(ScoreDictVar const* source, ScoreValue const* value);
    ScoreValue const* GetEncodedValue(ScoreDictVar const* source, ScoreValue const* value);
    double GetNormValue(double x);

    // Setters of the parsers. Pointer setters take the object over and delete the one they replace.
    void AddFieldNameAndTransExpression(std::string const& fieldName, TransExpression expression);
    void SetConstString(std::string const& text);
    std::string const& GetConstString() const;
    std::string const& GetFieldName() const;
    TransExpression GetTransExpression() const;
    void SetRoot(FunctionTree* root);
    FunctionTree const* GetRoot() const;
    void SetLags(int count, std::vector<ScoreDictVar const*> blockVariables);
    void SetMapValues(MapValues* mapValues);
    MapValues const* GetMapValues() const;
    void AddEncodingMap(ScoreValue* value, ScoreValue* result);
    // Appends the bin (either may be null) and, when both are there, records its display texts.
    void AddBinningValue(ScoreValueRange* range, ScoreValue* value, std::string const& fieldName);
    void AddNormInfo(double slope, double intercept);
    void AddLinearNorm(double orig, double norm);
    void SetOutlierTreatMent(int treatment);
    void SetRecodeMissValueTo(ScoreValue* value);
    void SetRecodeDefaultValue(ScoreValue* value);
    void SetRecodeSysmisValue(ScoreValue* value);
    void SetRecodeElseCopy(bool copy);
    void SetRecodeMissingCopy(bool copy);
    // Stored only; evaluation does not read it.
    void SetRecodeIntervalCopy(ScoreValueRange* range);
    ScoreValue const* GetRecodeMissValueRep() const;
    ScoreValue const* GetRecodeDefaultValue() const;
    ScoreValue const* GetRecodeSysmisValueRep() const;
    bool IsRecodeElseCopy() const;
    bool IsRecodeMissingCopy() const;
    std::vector<std::pair<ScoreValue*, ScoreValue*>> const& GetAllEncodedValues() const;
    // The interval text (10<=age<20) with true, the bracket text ([10,20)) with false; the key itself for
    // an unknown key.
    std::string GetOrigIntervalForBinningValue(std::string const& key, bool intervalText) const;

  private:
    ScoreValue const* Traverse(FunctionTree* node, ScoreCaseRecord const* record,
                               ScoreDictionary const* dictionary, ScoreDictionary const* transformations,
                               int& unused);
    ScoreValue* HandleMissingAndInvalidValue(ScoreDictVar const* source, VariableType ownType,
                                             ScoreValue const* value);
    bool HandleMissingAndInvalidOfApply(std::vector<double> const& arguments, TransformFunction function,
                                        ScoreValue* result, ApplyNodeStats const& stats, bool resultIsMissing,
                                        bool resultIsInvalid);
    double ApplyTransFunction(double a, double b, TransformFunction function);
    double ApplyAccumulateFunction(std::vector<double> const& numbers, TransformFunction function);
    double ApplyDateTimeFunction(ScoreValue const* value, double x, TransformFunction function);
    double CalculateNormValue(double x);
    double CalculateNormAsIs(double x);
    double CalculateNormAsExtremeValues(double x);
    double CalculateNormAsMissingValues(double x);
    bool IsOutOfContRange(double x);

    // The function tree read once into plain nodes.
    struct ApplyPlan;
    // The helpers of evaluation below stay inside the library, where calls to them are direct.
#define VANTRY_TRANSFORM_INTERNAL __attribute__((visibility("hidden")))
    // The per-depth scratch of the function-tree walk (numbers, kept values and texts of one node).
    struct ApplyFrame;
    // The walk over the plan: nodes are named by their index in it.
    VANTRY_TRANSFORM_INTERNAL ScoreValue const* TraverseAt(int at, ScoreCaseRecord const* record,
                                                           ScoreDictionary const* dictionary,
                                                           ScoreDictionary const* transformations);
    VANTRY_TRANSFORM_INTERNAL ScoreValue const* TraverseLeaf(int at, ScoreCaseRecord const* record,
                                                             ScoreDictionary const* dictionary,
                                                             ScoreDictionary const* transformations);
    VANTRY_TRANSFORM_INTERNAL ScoreValue const* TraverseInner(int at, ApplyFrame& frame,
                                                              ScoreCaseRecord const* record,
                                                              ScoreDictionary const* dictionary,
                                                              ScoreDictionary const* transformations);
    // Whether the tree's root heads a group of functions of numbers (once the plan is built), and its
    // number for the case, which the numeric scratch also takes.
    VANTRY_TRANSFORM_INTERNAL bool HasNumericRoot() const;
    VANTRY_TRANSFORM_INTERNAL double RootNumber(ScoreCaseRecord const* record,
                                                ScoreDictionary const* dictionary,
                                                ScoreDictionary const* transformations);
    VANTRY_TRANSFORM_INTERNAL static std::vector<ScoreValue*> const* PlainValues(
        ScoreCaseRecord const* record);
    // The number of a numeric region, of a plain numeric field, of one function on its arguments.
    VANTRY_TRANSFORM_INTERNAL double ComputeNumbers(int at, ScoreCaseRecord const* record,
                                                    ScoreDictionary const* dictionary,
                                                    ScoreDictionary const* transformations);
    VANTRY_TRANSFORM_INTERNAL double FieldNumber(int at, ScoreCaseRecord const* record,
                                                 ScoreDictionary const* dictionary,
                                                 ScoreDictionary const* transformations);
    VANTRY_TRANSFORM_INTERNAL bool ReadPlainNumber(int at, ScoreCaseRecord const* record,
                                                   double& number) const;
    VANTRY_TRANSFORM_INTERNAL double ApplyNumbers(int at, double const* arguments);
    // A numeric function's result after its missing and invalid rules.
    VANTRY_TRANSFORM_INTERNAL double SettleNumber(double number, std::vector<double> const& arguments,
                                                  TransformFunction function, ApplyNodeStats const& stats);
    VANTRY_TRANSFORM_INTERNAL ScoreValue const* ReadSource(ScoreCaseRecord const* record);
    VANTRY_TRANSFORM_INTERNAL void ResolveSource(ScoreDictionary const* dictionary,
                                                 ScoreDictionary const* transformations);
    ScoreValue const* BlockValue(size_t block, ScoreCaseRecord const* record,
                                 ScoreDictionary const* dictionary, ScoreDictionary const* transformations);
#undef VANTRY_TRANSFORM_INTERNAL
    void ResetScratch(VariableType type);
    void FreeOwned();

    std::string fFieldName;
    TransExpression fExpression;
    std::vector<std::pair<ScoreValueRange*, ScoreValue*>> fBins;
    std::map<std::string, std::string> fIntervalTexts;
    std::map<std::string, std::string> fBracketTexts;
    std::vector<double> fSlopes;
    std::vector<double> fIntercepts;
    int fOutlierTreatment;
    std::vector<double> fNormOrigins;
    std::vector<double> fNormTargets;
    std::vector<std::pair<ScoreValue*, ScoreValue*>> fEncodingMap;
    std::string fConstString;
    FunctionTree* fRoot;
    ScoreValue* fResult;
    // The result was made as a NumericValue (for a numeric variable).
    bool fResultIsNumber;
    NumericValue* fNumericScratch;
    StringValue* fStringScratch;
    DateTimeValue* fDateScratch;
    StringValue* fStringScratch2;
    DateTimeValue* fDateScratch2;
    ScoreValue* fRecodeMissingValue;
    ScoreValue* fRecodeDefaultValue;
    ScoreValue* fRecodeSysmisValue;
    bool fRecodeElseCopy;
    bool fRecodeMissingCopy;
    ScoreValueRange* fRecodeIntervalCopy;
    int fSourceIndex;
    ScoreDictVar const* fSourceVariable;
    MapValues* fMapValues;
    int fLagCount;
    std::deque<ScoreValue*> fHistory;
    std::vector<ScoreDictVar const*> fBlockVariables;
    std::vector<std::deque<ScoreValue*>> fBlockHistories;

    // Evaluation caches, which a copy starts afresh: the source when it is itself derived, the record on
    // which the source field was last found absent (with that record's size).
    TransformVar* fSourceDerived;
    bool fSourceResolved;
    ScoreCaseRecord const* fAbsentRecord;
    int fAbsentRecordSize;
    // Lag state that a copy keeps: the block fields' names (a copy binds them to the dictionaries it is
    // evaluated with) and, the histories being rings once full, the position of the oldest value in each.
    std::vector<std::string> fBlockNames;
    size_t fHistoryHead;
    std::vector<size_t> fBlockHeads;
    // Started afresh by a copy: the block fields' record slots, the walk's scratch frames with the
    // current depth, the plan of the tree, and the guard against evaluating re-entrantly.
    std::vector<int> fBlockIndexes;
    std::vector<std::unique_ptr<ApplyFrame>> fFrames;
    std::unique_ptr<ApplyPlan> fPlan;
    size_t fDepth;
    bool fEvaluating;
};

}  // namespace QXVantry_920
