#include "vantry/factory/VersionInfo.h"

namespace QXVantry_920 {

VersionInfo::VersionInfo() : fVersion("2.1") {}

VersionInfo::VersionInfo(std::string const& version) : fVersion(version) {}

VersionInfo::VersionInfo(VersionInfo const& other) = default;

VersionInfo& VersionInfo::operator=(VersionInfo const& other) = default;

VersionInfo::~VersionInfo() = default;

void VersionInfo::SetVersionInfo(std::string const& version) {
    if (&version != &fVersion)
        fVersion = version;
}

ScoreVersionInfo* VersionInfo::Clone() const {
    return new VersionInfo(fVersion);
}

bool VersionInfo::operator==(ScoreVersionInfo const& other) const {
    return fVersion == other.GetVersionInfo();
}

std::string const& VersionInfo::GetVersionInfo() const {
    return fVersion;
}

}  // namespace QXVantry_920
