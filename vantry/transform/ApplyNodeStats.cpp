#include "vantry/transform/FunctionTree.h"

namespace QXVantry_920 {

ApplyNodeStats::ApplyNodeStats()
    : fValue(nullptr),
      fTransformFunction(TransformationDictionary::TF_UNKNOWN),
      fVariable(nullptr),
      fVarIndex(-1),
      fConstNode(false),
      fRecodeMissingValue(nullptr),
      fDefaultValue(nullptr),
      fInvalidValueTreatment(IVT_UNSET),
      fFieldRecodeMissingValue(nullptr) {}

void ApplyNodeStats::AddArray(std::vector<double> const& array) {
    fArrays.push_back(array);
}

void ApplyNodeStats::ClearArray() {
    fArrays.clear();
}

std::vector<double> const& ApplyNodeStats::GetArray(int index) const {
    static std::vector<double> const kEmpty;
    if (index < 0 || static_cast<std::size_t>(index) >= fArrays.size()) {
        return kEmpty;
    }
    return fArrays[static_cast<std::size_t>(index)];
}

}  // namespace QXVantry_920
