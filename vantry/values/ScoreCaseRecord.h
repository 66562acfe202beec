// One input row for scoring: the values of a case, addressed by name or by slot index. A slot index is
// fixed when its name first arrives and never moves, so hot paths keep the index and overwrite the value
// objects in place from case to case. ScoreCaseRecord is the interface; CaseRecord the implementation.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class ScoreValue;

class VANTRY_EXPORT ScoreCaseRecord {
  public:
    virtual ~ScoreCaseRecord();
    // Takes the value over; a known name gets it in its slot without the old value being deleted.
    virtual void Add(std::string const& name, ScoreValue* value) = 0;
    virtual bool SetValue(int index, std::string const& text) = 0;
    virtual bool SetValue(std::string const& name, std::string const& text) = 0;
    virtual bool SetValue(int index, double number, ScoreDictVar::DateTimeType type) = 0;
    virtual bool SetValue(std::string const& name, double number, ScoreDictVar::DateTimeType type) = 0;
    virtual bool SetValue(int index, double number) = 0;
    virtual bool SetValue(std::string const& name, double number) = 0;
    virtual bool SetMissingValue(int index) = 0;
    virtual bool SetMissingValue(std::string const& name) = 0;
    // Deletes the value and leaves its slot and name in place.
    virtual void Remove(std::string const& name) = 0;
    virtual ScoreValue const* Get(int index) const = 0;
    virtual ScoreValue const* Get(std::string const& name) const = 0;
    // Only reserve room for the values; names arrive through Add.
    virtual void SetUpNameIndexMap(std::vector<std::string> const& names) = 0;
    virtual void SetUpNameIndexMap(std::vector<ScoreDictVar*> const& vars) = 0;
    virtual bool HasMap() const = 0;
    virtual int GetIndex(std::string const& name) const = 0;
    virtual int Size() const = 0;
    virtual std::vector<std::string> GetVarNames(bool byIndex) const = 0;
    virtual std::vector<ScoreValue*> const& GetAllValues() const = 0;
    virtual void Display(std::ostream& out) const = 0;

  protected:
    ScoreCaseRecord() = default;
    ScoreCaseRecord(ScoreCaseRecord const&) = default;
    ScoreCaseRecord& operator=(ScoreCaseRecord const&) = default;
};

class VANTRY_EXPORT CaseRecord : public ScoreCaseRecord {
  public:
    explicit CaseRecord(int capacity = 10);
    CaseRecord(CaseRecord const& other);
    CaseRecord& operator=(CaseRecord const& other);
    ~CaseRecord() override;

    void Add(std::string const& name, ScoreValue* value) override;
    bool SetValue(int index, std::string const& text) override;
    bool SetValue(std::string const& name, std::string const& text) override;
    bool SetValue(int index, double number, ScoreDictVar::DateTimeType type) override;
    bool SetValue(std::string const& name, double number, ScoreDictVar::DateTimeType type) override;
    bool SetValue(int index, double number) override;
    bool SetValue(std::string const& name, double number) override;
    bool SetMissingValue(int index) override;
    bool SetMissingValue(std::string const& name) override;
    void Remove(std::string const& name) override;
    ScoreValue const* Get(int index) const override;
    ScoreValue const* Get(std::string const& name) const override;
    void SetUpNameIndexMap(std::vector<std::string> const& names) override;
    void SetUpNameIndexMap(std::vector<ScoreDictVar*> const& vars) override;
    bool HasMap() const override;
    int GetIndex(std::string const& name) const override;
    int Size() const override;
    std::vector<std::string> GetVarNames(bool byIndex) const override;
    std::vector<ScoreValue*> const& GetAllValues() const override;
    void Display(std::ostream& out) const override;

  private:
    bool InRange(int index) const { return index >= 0 && static_cast<size_t>(index) < fValues.size(); }
    void CopyFrom(CaseRecord const& other);
    void DeleteValues();

    std::map<std::string, int> fNameIndex;
    // Owned; a null slot means "no value".
    std::vector<ScoreValue*> fValues;
};

}  // namespace QXVantry_920
