// Summary statistics of a variable, with the value that replaces a missing one.
#pragma once

#include <memory>

#include "vantry/Export.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreVarStats {
  public:
    virtual ~ScoreVarStats();
    // A deep copy; the caller owns it.
    virtual ScoreVarStats* Clone() const = 0;
    virtual void SetMin(double min) = 0;
    virtual void SetMax(double max) = 0;
    virtual void SetStddev(double stddev) = 0;
    virtual void SetMean(double mean) = 0;
    // Stores a clone of the value (null for null) and deletes the previous one; the caller keeps its
    // own object.
    virtual void SetMissingReplacement(ScoreValue const* value) = 0;
    virtual double GetMin() const = 0;
    virtual double GetMax() const = 0;
    virtual double GetStddev() const = 0;
    virtual double GetMean() const = 0;
    // Owned by the statistics; null when none was set.
    virtual ScoreValue const* GetMissingReplacement() const = 0;
};

class VANTRY_EXPORT VarStats : public ScoreVarStats {
  public:
    // Minimum gSysmisValue, maximum its negation, mean 0, standard deviation 1, no replacement.
    VarStats();
    VarStats(double min, double max, double mean, double stddev);
    VarStats(VarStats const& other);
    VarStats& operator=(VarStats const& other);
    ~VarStats() override;

    ScoreVarStats* Clone() const override;
    void SetMin(double min) override;
    void SetMax(double max) override;
    void SetStddev(double stddev) override;
    void SetMean(double mean) override;
    void SetMissingReplacement(ScoreValue const* value) override;
    double GetMin() const override;
    double GetMax() const override;
    double GetStddev() const override;
    double GetMean() const override;
    ScoreValue const* GetMissingReplacement() const override;

  private:
    double fMin;
    double fMax;
    double fMean;
    double fStddev;
    std::unique_ptr<ScoreValue> fMissingReplacement;
};

}  // namespace QXVantry_920
