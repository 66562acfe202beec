// The concrete base of PMML translators. It carries the encoding in which document text is turned into
// narrow strings, and the small conversions the PMML readers share. It answers null on every
// ParseFromTree slot: a plug-in overrides the slots its family supports.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class DiscreteSplit;
class FunctionTree;
class ScoreValueRange;
class TransformVar;
class ScaleSplit;
class ScoreDictionary;
class ScoreMissingValueSet;

class VANTRY_EXPORT PMMLTranslator : public BaseTranslator {
  public:
    // An empty encoding selects the default, "CP1252", when the transcoder is made.
    PMMLTranslator();
    explicit PMMLTranslator(std::string const& encoding);
    PMMLTranslator(PMMLTranslator const& other);
    PMMLTranslator& operator=(PMMLTranslator const& other);
    ~PMMLTranslator() override;

    using BaseTranslator::ParseFromTree;
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument* document,
                              std::string const& encoding) override;

  protected:
    // Document text by Xerces-C's default transcoding, never through fTranscoder; empty for null.
    std::string ToString(XMLCh const* text);
    // "continuous", "ordinal", "categorical", or empty for another number.
    std::string ToString(ScoreDictVar::MeasureLevel level);
    // A new UTF-16 buffer of a text in the transcoder's encoding, which the caller releases with
    // XMLString::release; null while there is no transcoder.
    XMLCh* ToUTF16(char const* text);
    // Whether document text equals a narrow text in the transcoder's encoding; false while there is
    // no transcoder.
    bool XStrEqualsUTF8Str(XMLCh const* text, char const* other);

    // A running number written into generated names; reset by the transformation reader.
    int fNodeCounter;
    // Function texts of "Apply" elements; filled by InitFunctionMap.
    std::map<std::string, TransformationDictionary::TransformFunction> fFunctionMap;
    // The encoding given at construction, used when the first parse makes the transcoder.
    std::string fEncoding;
    // Kept for subclasses of other libraries; nothing here reads it.
    double fPMMLLevel;

    // Readers of the data dictionary, the result dictionary and targets, and of splits and arrays
    // (PMMLDictionary.cpp, PMMLResultDictionary.cpp, PMMLSplits.cpp).
  public:
    // The "DataDictionary" as a new dictionary that the caller owns; with `encoders`, every string
    // variable gets its category encoder.
    ScoreDictionary* ParseDictionary(XERCES_CPP_NAMESPACE::DOMNode* node, bool encoders);
    bool SetupCatEncoder(ScoreDictVar* variable);
    // The "ResultField" elements under the node as a new dictionary of ResultVar; null when none.
    ScoreDictionary* ParseResultDictionary(XERCES_CPP_NAMESPACE::DOMNode* node);
    // Applies the "Targets" to the dictionary's variables; false, and no exception, on a bad target.
    bool HandleTargets(XERCES_CPP_NAMESPACE::DOMElement* targets, ScoreDictionary* dictionary);
    std::vector<std::string> ParseStrArray(XERCES_CPP_NAMESPACE::DOMElement* element);
    std::vector<int> VerifyIntArray(XERCES_CPP_NAMESPACE::DOMElement* element, int size);
    std::vector<double> VerifyDoubleArray(XERCES_CPP_NAMESPACE::DOMElement* element, int size);

  protected:
    void ParseUsageTypeExtension(XERCES_CPP_NAMESPACE::DOMElement* extension, ScoreDictVar* variable);
    ScoreDictVar::DateTimeType ParseDateTimeType(XMLCh const* text);
    static void handleInterval(ScoreDictVar* variable, XERCES_CPP_NAMESPACE::DOMNode* interval,
                               ScoreMissingValueSet* missingValues, int count);
    static void handleTreeInterval(XERCES_CPP_NAMESPACE::DOMNode* interval,
                                   ScoreMissingValueSet* missingValues);
    bool HandleKROMMissingInterval(ScoreMissingValueSet* missingValues, int mask, double lower, double upper);
    bool IsValidScoreValue(ScoreDictVar const* variable, std::string const& text);
    int GetIndexOfOrdinalValue(std::string const& text, ScoreDictVar const* variable);
    int HandleOrdinalVariable(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar const* variable,
                              int& low, int& high);
    ScaleSplit* HandleNodeScaleSplit(XERCES_CPP_NAMESPACE::DOMNode* node, ScoreDictVar const* variable,
                                     std::string& op, bool& isMissing, std::string& value);
    DiscreteSplit* HandleNodeDiscreteSplit(XERCES_CPP_NAMESPACE::DOMNode* node, ScoreDictVar const* variable,
                                           std::string& op, bool& isMissing, std::string& value);
    DiscreteSplit* HandleArrayDiscreteSplit(XERCES_CPP_NAMESPACE::DOMNode* node, ScoreDictVar const* variable,
                                            std::string& op, std::vector<double>& numbers);
    void GetScaleSplitValue(XMLCh const* value, XMLCh const* op, double& lower, double& upper,
                            bool& inclusive);
    void SetDiscreteSplitValue(ScoreDictVar const* variable, DiscreteSplit* split, XMLCh const* text,
                               int child);
    XERCES_CPP_NAMESPACE::DOMNode* GetArrayNode(XERCES_CPP_NAMESPACE::DOMNode* node);
    std::vector<std::string> GetArrayElements(XERCES_CPP_NAMESPACE::DOMNode* array, XMLCh const* type,
                                              ScoreDictVar const* variable);
    std::vector<std::string> Remove(ScoreDictVar const* variable, std::vector<std::string> list);

    // Derived fields: the function catalogue (PMMLTransformCatalog.cpp), the transformation dictionary
    // and its simple expressions (PMMLTransformations.cpp), function trees (PMMLApply.cpp), and the
    // table-like expressions (PMMLDerivedExpressions.cpp).
  public:
    // The "DerivedField" elements below the element as a new dictionary that the caller owns, or null
    // when there is none. Every field may refer to the data dictionary and to the fields above it.
    TransformationDictionary* HandleTransformationDictionary(XERCES_CPP_NAMESPACE::DOMElement* element,
                                                             ScoreDictionary const* dictionary);
    using TransformFunction = TransformationDictionary::TransformFunction;

  protected:
    // The text of a function for messages; "<not defined>" for the values without one.
    std::string ToString(TransformFunction function);
    void InitFunctionMap();
    TransformFunction GetTransFunction(std::string const& text);
    bool IsArithmeticFunction(TransformFunction function);
    bool IsMathematicsFunction(TransformFunction function);
    bool IsStatisticFunction(TransformFunction function);
    bool IsDateTimeFunction(TransformFunction function);
    bool IsLogicFunction(TransformFunction function);
    bool IsStringFunction(TransformFunction function);
    bool IsNumericFunction(TransformFunction function);
    bool IsInputNumericFunction(TransformFunction function);
    bool IsInputStringFunction(TransformFunction function);
    bool IsMixInputFunction(TransformFunction function);
    bool IsOutputNumericFunction(TransformFunction function);
    bool IsOutputStringFunction(TransformFunction function);
    bool IsMixOutputFunction(TransformFunction function);
    void VerifyOneElem(TransformFunction function, bool numeric, bool constant, std::string const& name,
                       ScoreDictionary const* dictionary, ScoreDictionary const* transformations);
    void VerifyApplyFunction(std::vector<std::string> const& names, std::vector<int> const& kinds,
                             ScoreDictionary const* dictionary, ScoreDictionary const* transformations,
                             TransformFunction function, std::vector<TransformFunction> childFunctions,
                             TransformVar const* variable);
    void VerifyParentAndChildFunction(TransformFunction parent, TransformFunction child);

    void handleDerivedVarMissingValue(XERCES_CPP_NAMESPACE::DOMElement* extension, TransformVar* variable);
    void HandleValueList(XERCES_CPP_NAMESPACE::DOMElement* element, TransformVar* variable);
    std::string HandleFieldRef(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictionary const* dictionary,
                               ScoreDictionary const* transformations, TransformVar* variable);
    ScoreValue* HandelConstant(XERCES_CPP_NAMESPACE::DOMElement* element);
    std::string HandelConstant(XERCES_CPP_NAMESPACE::DOMElement* element, double& number, int& type);
    ScoreValue* HandelConstantDefaultStringType(XERCES_CPP_NAMESPACE::DOMElement* element);
    void HandleKROMExtensions(XERCES_CPP_NAMESPACE::DOMElement* extension, TransformVar* variable);

    FunctionTree* HandleApply(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar const* variable,
                              FunctionTree* parent, ScoreDictionary const* dictionary,
                              ScoreDictionary const* transformations);
    void SetLeafNodeStats(std::string const& name, FunctionTree* parent, int index, bool constNode,
                          ScoreValue* fieldRecodeMissingValue);

    std::string HandleDiscritize(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable,
                                 ScoreDictionary const* dictionary, ScoreDictionary const* transformations);
    ScoreValueRange* HandleDiscretizeBinInterVal(XERCES_CPP_NAMESPACE::DOMElement* element, int binsSoFar);
    std::string HandleMapValues(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable,
                                ScoreDictionary const* dictionary, ScoreDictionary const* transformations);
    std::string HandleNormContinuous(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable,
                                     ScoreDictionary const* dictionary,
                                     ScoreDictionary const* transformations);
    std::string HandleNormDiscrete(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable,
                                   ScoreDictionary const* dictionary, ScoreDictionary const* transformations);
    std::string HandleLag(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable,
                          ScoreDictionary const* dictionary, ScoreDictionary const* transformations);

  private:
    std::unique_ptr<ScoreDictVar> ParseDataField(XERCES_CPP_NAMESPACE::DOMElement* field,
                                                 ScoreDictionary* dictionary, bool encoders);
    void ParseCategoricalValues(XERCES_CPP_NAMESPACE::DOMElement* field, ScoreDictVar* variable,
                                bool typeDeclared);
    void ParseContinuousValues(XERCES_CPP_NAMESPACE::DOMElement* field, ScoreDictVar* variable,
                               bool typeDeclared);
    void HandleTarget(XERCES_CPP_NAMESPACE::DOMElement* target, ScoreDictionary* dictionary);
    void HandleCategoricalTarget(XERCES_CPP_NAMESPACE::DOMElement* target, ScoreDictVar* variable);

    // Predicates (PMMLPredicates.cpp). A field is looked up in the dictionary, then in the second one
    // (the derived fields, may be null). With `scaleOrdinal`, an ordinal numeric field is split by
    // ranges rather than by categories. Each answers a new predicate that the caller owns.
  public:
    class SimplePredicate* ParsePredicate(XERCES_CPP_NAMESPACE::DOMNode* node,
                                          ScoreDictionary const* dictionary,
                                          ScoreDictionary const* secondDictionary, bool scaleOrdinal);
    // Null, without an error, for a field that is neither nominal nor ordinal.
    class SetPredicate* ParseSetPredicate(XERCES_CPP_NAMESPACE::DOMNode* node,
                                          ScoreDictionary const* dictionary,
                                          ScoreDictionary const* secondDictionary);
    // A compound of one child is that child; a compound of none is null, or the constant that an "and"
    // of "True" or an "or" of "False" children leaves.
    class ScorePredicate* ParseCompoundPredicate(XERCES_CPP_NAMESPACE::DOMNode* node,
                                                 ScoreDictionary const* dictionary,
                                                 ScoreDictionary const* secondDictionary, bool scaleOrdinal);
};

}  // namespace QXVantry_920
