// The version record of a model: one text, "2.1" unless told otherwise.
#pragma once

#include <string>

#include "vantry/Export.h"
#include "vantry/factory/ScoreModel.h"

namespace QXVantry_920 {

class VANTRY_EXPORT VersionInfo : public ScoreVersionInfo {
  public:
    VersionInfo();
    explicit VersionInfo(std::string const& version);
    VersionInfo(VersionInfo const& other);
    VersionInfo& operator=(VersionInfo const& other);
    ~VersionInfo() override;

    void SetVersionInfo(std::string const& version) override;
    ScoreVersionInfo* Clone() const override;
    // Equal texts, by length and bytes.
    bool operator==(ScoreVersionInfo const& other) const override;
    std::string const& GetVersionInfo() const override;

  private:
    std::string fVersion;
};

}  // namespace QXVantry_920
