// How the scoring command finds its catalogue of model names and its plug-ins, and builds a model.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace QXVantry_920 {
class ScoreModel;
}

namespace vantry_tool {

// The catalogue that ships with the plug-ins, as the library finds it (vantry::ShippedCatalog): beside
// the library or in its "vantry-plugins" folder, else in a folder of LD_LIBRARY_PATH; empty when there
// is none.
std::string FindShippedCatalog();

// Starts the library for a session and stops it at the end. The catalogue path may be empty: the
// fallback names serve then. The library finds the plug-ins themselves by its own search.
class ScoringSession {
  public:
    explicit ScoringSession(std::string const& catalogPath);
    ~ScoringSession();
    ScoringSession(ScoringSession const&) = delete;
    ScoringSession& operator=(ScoringSession const&) = delete;

    std::vector<std::string> const& ModelNames() const { return fModelNames; }

    // The model of a document file; a refused document throws the library's VTException, a file that
    // cannot be opened std::runtime_error.
    std::unique_ptr<QXVantry_920::ScoreModel> LoadModel(std::string const& pmmlPath) const;

  private:
    std::vector<std::string> fModelNames;
};

}  // namespace vantry_tool
