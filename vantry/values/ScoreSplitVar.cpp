#include "vantry/values/ScoreSplitVar.h"

namespace QXVantry_920 {

namespace {

// What a split without a variable answers for the variable's name and label.
std::string const& NoText() {
    static std::string const empty;
    return empty;
}

}  // namespace

ScoreSplitVar::ScoreSplitVar() : fSplitVar(nullptr), fMissvalMap(-1) {}

ScoreSplitVar::ScoreSplitVar(ScoreDictVar const* var) : fSplitVar(var), fMissvalMap(-1) {}

ScoreSplitVar::ScoreSplitVar(ScoreSplitVar const& other) = default;

ScoreSplitVar& ScoreSplitVar::operator=(ScoreSplitVar const& other) = default;

ScoreSplitVar::~ScoreSplitVar() = default;

void ScoreSplitVar::SetSplitVar(ScoreDictVar const* var) {
    fSplitVar = var;
}

void ScoreSplitVar::SetMissvalMap(int childIndex) {
    fMissvalMap = childIndex;
}

ScoreDictVar const* ScoreSplitVar::GetSplitVar() const {
    return fSplitVar;
}

std::string const& ScoreSplitVar::GetSplitName() const {
    return fSplitVar != nullptr ? fSplitVar->GetName() : NoText();
}

std::string const& ScoreSplitVar::GetSplitLabel() const {
    return fSplitVar != nullptr ? fSplitVar->GetLabel() : NoText();
}

int ScoreSplitVar::GetSplitType() const {
    return fSplitVar != nullptr ? fSplitVar->GetVarType() : -1;
}

int ScoreSplitVar::GetSplitMLevel() const {
    return fSplitVar != nullptr ? fSplitVar->GetMLevel() : -1;
}

int ScoreSplitVar::GetMissvalMap() const {
    return fMissvalMap;
}

}  // namespace QXVantry_920
