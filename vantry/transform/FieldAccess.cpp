#include "vantry/transform/FieldAccess.h"

#include "vantry/transform/TransformVar.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"

namespace QXVantry_920 {

ScoreDictVar const* FindVariable(std::string const& name, ScoreDictionary const* dictionary,
                                 ScoreDictionary const* transformations) {
    ScoreDictVar const* variable = dictionary != nullptr ? dictionary->GetVar(name) : nullptr;
    if (variable == nullptr && transformations != nullptr) {
        variable = transformations->GetVar(name);
    }
    return variable;
}

TransformVar* AsDerived(ScoreDictVar const* variable) {
    if (variable == nullptr || !variable->IsDerivedVariable()) {
        return nullptr;
    }
    return const_cast<TransformVar*>(dynamic_cast<TransformVar const*>(variable));
}

ScoreValue const* ReadField(ScoreDictVar const* variable, int& index, ScoreCaseRecord const* record,
                            ScoreDictionary const* dictionary, ScoreDictionary const* transformations) {
    if (variable == nullptr) {
        return nullptr;
    }
    if (TransformVar* derived = AsDerived(variable)) {
        return derived->GetTransformedValue(record, dictionary, transformations);
    }
    if (record == nullptr) {
        return nullptr;
    }
    if (index < 0) {
        index = record->GetIndex(variable->GetName());
    }
    return record->Get(index);
}

}  // namespace QXVantry_920
