// A generated random forest on the housing fields, for timing the load and scoring of a document of the
// size large producers write (200 trees, about 15 MB). The layout follows what such producers emit: a
// MiningModel averaging TreeModel segments, each node split by one SimplePredicate with a True sibling,
// leaves carrying a score, a record count and a ScoreDistribution per class.
#include <cstdio>
#include <random>
#include <string>

#include "bench/ScoreDocuments.h"

namespace bench_score {

namespace {

struct NumericField {
    char const* name;
    double low;
    double high;
};

NumericField const kFields[] = {
    {"longitude", -124.35, -114.47}, {"latitude", 32.54, 41.95},      {"housing_median_age", 1.0, 52.0},
    {"total_rooms", 2.0, 8000.0},    {"total_bedrooms", 1.0, 1500.0}, {"population", 3.0, 4000.0},
    {"households", 1.0, 1400.0},     {"median_income", 0.4999, 10.0},
};
char const* const kProximities[] = {"&lt;1H OCEAN", "INLAND", "ISLAND", "NEAR BAY", "NEAR OCEAN"};

class ForestWriter {
  public:
    explicit ForestWriter(unsigned start) : fRandom(start) {}

    std::string Document(int trees, int depth) {
        fOut =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<PMML xmlns=\"http://www.dmg.org/PMML-4_3\" version=\"4.3\">\n\t<Header/>\n"
            "\t<DataDictionary numberOfFields=\"10\">\n"
            "\t\t<DataField name=\"median_house_value\" optype=\"categorical\" dataType=\"string\">\n"
            "\t\t\t<Value value=\"false\"/>\n\t\t\t<Value value=\"true\"/>\n\t\t</DataField>\n";
        for (NumericField const& field : kFields) {
            fOut += std::string("\t\t<DataField name=\"") + field.name +
                    "\" optype=\"continuous\" dataType=\"double\"/>\n";
        }
        fOut += "\t\t<DataField name=\"ocean_proximity\" optype=\"categorical\" dataType=\"string\">\n";
        for (char const* value : kProximities) {
            fOut += std::string("\t\t\t<Value value=\"") + value + "\"/>\n";
        }
        fOut += "\t\t</DataField>\n\t</DataDictionary>\n\t<MiningModel functionName=\"classification\">\n";
        fOut += MiningSchema("\t\t", true);
        fOut +=
            "\t\t<Output>\n"
            "\t\t\t<OutputField name=\"probability(false)\" optype=\"continuous\" dataType=\"double\" "
            "feature=\"probability\" value=\"false\"/>\n"
            "\t\t\t<OutputField name=\"probability(true)\" optype=\"continuous\" dataType=\"double\" "
            "feature=\"probability\" value=\"true\"/>\n\t\t</Output>\n"
            "\t\t<Segmentation multipleModelMethod=\"average\">\n";
        for (int tree = 1; tree <= trees; ++tree) {
            fOut += "\t\t\t<Segment id=\"" + std::to_string(tree) + "\">\n\t\t\t\t<True/>\n";
            fOut +=
                "\t\t\t\t<TreeModel functionName=\"classification\" "
                "missingValueStrategy=\"nullPrediction\">\n";
            fOut += MiningSchema("\t\t\t\t\t", false);
            // Three trees in five one level deeper, for a document of the size asked.
            Node(depth - (tree % 5 < 3 ? 0 : 1), "\t\t\t\t\t", "<True/>");
            fOut += "\t\t\t\t</TreeModel>\n\t\t\t</Segment>\n";
        }
        fOut += "\t\t</Segmentation>\n\t</MiningModel>\n</PMML>\n";
        return std::move(fOut);
    }

  private:
    static std::string MiningSchema(std::string const& indent, bool target) {
        std::string schema = indent + "<MiningSchema>\n";
        if (target) {
            schema += indent + "\t<MiningField name=\"median_house_value\" usageType=\"target\"/>\n";
        }
        for (NumericField const& field : kFields) {
            schema += indent + "\t<MiningField name=\"" + field.name + "\"/>\n";
        }
        return schema + indent + "\t<MiningField name=\"ocean_proximity\"/>\n" + indent + "</MiningSchema>\n";
    }

    double Uniform() { return static_cast<double>(fRandom()) / 4294967296.0; }

    // A split of one field: mostly numeric thresholds, now and then a category.
    std::string Split() {
        char text[160];
        if (fRandom() % 8 == 0) {
            std::snprintf(text, sizeof(text),
                          "<SimplePredicate field=\"ocean_proximity\" operator=\"equal\" value=\"%s\"/>",
                          kProximities[fRandom() % 5]);
        } else {
            NumericField const& field = kFields[fRandom() % 8];
            double const threshold = field.low + (field.high - field.low) * (0.2 + 0.6 * Uniform());
            std::snprintf(text, sizeof(text),
                          "<SimplePredicate field=\"%s\" operator=\"lessOrEqual\" value=\"%.9g\"/>",
                          field.name, threshold);
        }
        return text;
    }

    void Node(int depth, std::string const& indent, std::string const& predicate) {
        if (depth == 0) {
            unsigned const count = 1 + fRandom() % 60;
            unsigned const yes = fRandom() % (count + 1);
            char text[120];
            std::snprintf(text, sizeof(text), "<Node score=\"%s\" recordCount=\"%u.0\">\n",
                          2 * yes > count ? "true" : "false", count);
            fOut += indent + text + indent + "\t" + predicate + "\n";
            std::snprintf(text, sizeof(text), "<ScoreDistribution value=\"false\" recordCount=\"%u.0\"/>\n",
                          count - yes);
            fOut += indent + "\t" + text;
            std::snprintf(text, sizeof(text), "<ScoreDistribution value=\"true\" recordCount=\"%u.0\"/>\n",
                          yes);
            fOut += indent + "\t" + text + indent + "</Node>\n";
            return;
        }
        fOut += indent + "<Node>\n" + indent + "\t" + predicate + "\n";
        Node(depth - 1, indent + "\t", Split());
        Node(depth - 1, indent + "\t", "<True/>");
        fOut += indent + "</Node>\n";
    }

    std::mt19937 fRandom;
    std::string fOut;
};

}  // namespace

std::string HousingForest(int trees, int depth, unsigned start) {
    return ForestWriter(start).Document(trees, depth);
}

}  // namespace bench_score
