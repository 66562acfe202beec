// The frame that the commands share around their work on a model: start a session, load the document's
// model, run the work, and turn a refused document into "error <code>: <words>" and exit status 2.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace QXVantry_920 {
class ScoreModel;
}

namespace vantry_tool {

class ScoringSession;

constexpr int kRefusedDocument = 2;

using ModelWork = std::function<int(ScoringSession const&, std::unique_ptr<QXVantry_920::ScoreModel>)>;

// Answers the work's exit status, kRefusedDocument for a refused document, or what badArguments answers
// for a document that cannot be opened. An empty catalogue path means the shipped one.
int RunWithModel(std::string const& catalog, std::string const& document,
                 std::function<int(std::string const&)> const& badArguments, ModelWork const& work);

}  // namespace vantry_tool
