#include "tools/inspect/ModelReport.h"

#include <cstdio>
#include <ostream>
#include <set>
#include <sstream>

#include "tools/inspect/ExpressionText.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"

namespace vantry_tool {

namespace {

// The text as a JSON string, quotes included.
std::string JsonString(std::string const& text) {
    std::string quoted = "\"";
    for (unsigned char c : text) {
        switch (c) {
            case '"':
                quoted += "\\\"";
                break;
            case '\\':
                quoted += "\\\\";
                break;
            case '\n':
                quoted += "\\n";
                break;
            case '\r':
                quoted += "\\r";
                break;
            case '\t':
                quoted += "\\t";
                break;
            default:
                if (c < 0x20) {
                    char escape[8];
                    std::snprintf(escape, sizeof(escape), "\\u%04x", c);
                    quoted += escape;
                } else {
                    quoted.push_back(static_cast<char>(c));
                }
        }
    }
    return quoted + "\"";
}

// A field's facts after its name: "double continuous values a, b interval [0, 1]".
std::string FactsText(FieldFacts const& facts) {
    std::string text = facts.type + " " + facts.measure;
    auto const list = [&](char const* label, std::vector<std::string> const& items) {
        if (items.empty()) {
            return;
        }
        text += std::string(" ") + label;
        for (std::size_t i = 0; i < items.size(); ++i) {
            text += (i == 0 ? " " : ", ") + items[i];
        }
    };
    list("values", facts.values);
    if (!facts.interval.empty()) {
        text += " interval " + facts.interval;
    }
    list("missing or invalid", facts.excluded);
    return text;
}

void WriteEntriesText(char const* title, std::vector<OutlineEntry> const& entries, std::ostream& out) {
    out << "\n" << title << " (" << entries.size() << "):\n";
    for (OutlineEntry const& entry : entries) {
        out << "  " << entry.name;
        for (auto const& attribute : entry.attributes) {
            out << "  " << attribute.first << "=" << attribute.second;
        }
        out << "\n";
        for (OutlineEntry const& child : entry.children) {
            out << "    value " << child.name;
            for (auto const& attribute : child.attributes) {
                out << "  " << attribute.first << "=" << attribute.second;
            }
            out << "\n";
        }
    }
}

std::string JsonList(std::vector<std::string> const& items) {
    std::string text = "[";
    for (std::size_t i = 0; i < items.size(); ++i) {
        text += (i == 0 ? "" : ", ") + JsonString(items[i]);
    }
    return text + "]";
}

std::string JsonFacts(FieldFacts const& facts) {
    return "\"name\": " + JsonString(facts.name) + ", \"type\": " + JsonString(facts.type) +
           ", \"measure\": " + JsonString(facts.measure) + ", \"values\": " + JsonList(facts.values) +
           ", \"interval\": " + JsonString(facts.interval) +
           ", \"missingOrInvalid\": " + JsonList(facts.excluded);
}

std::string JsonEntry(OutlineEntry const& entry, char const* nameKey) {
    std::string text = std::string("{") + JsonString(nameKey) + ": " + JsonString(entry.name);
    for (auto const& attribute : entry.attributes) {
        text += ", " + JsonString(attribute.first) + ": " + JsonString(attribute.second);
    }
    if (!entry.children.empty()) {
        text += ", \"values\": [";
        for (std::size_t i = 0; i < entry.children.size(); ++i) {
            text += (i == 0 ? "" : ", ") + JsonEntry(entry.children[i], "value");
        }
        text += "]";
    }
    return text + "}";
}

void WriteJsonEntries(char const* key, std::vector<OutlineEntry> const& entries, char const* nameKey,
                      std::ostream& out) {
    out << ",\n  " << JsonString(key) << ": [";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        out << (i == 0 ? "\n    " : ",\n    ") << JsonEntry(entries[i], nameKey);
    }
    out << (entries.empty() ? "]" : "\n  ]");
}

}  // namespace

ModelReport CollectReport(QXVantry_920::ScoreModel const& model, DocumentOutline outline) {
    ModelReport report;
    report.family = outline.family;
    report.outline = std::move(outline);
    std::ostringstream description;
    model.Display(description);
    report.description = description.str();
    if (QXVantry_920::ScoreDictionary const* dictionary = model.GetDictionary()) {
        std::set<std::string> seen;
        for (std::string const& name : dictionary->GetVarNames()) {
            QXVantry_920::ScoreDictVar const* variable = dictionary->GetVar(name);
            if (variable != nullptr && seen.insert(name).second) {
                report.dictionary.push_back(DescribeField(*variable));
            }
        }
    }
    if (QXVantry_920::TransformationDictionary* derived = model.GetTransformationDictionary()) {
        for (std::string const& name : derived->GetDerivedVarNames()) {
            auto const* variable = dynamic_cast<QXVantry_920::TransformVar const*>(derived->GetVar(name));
            if (variable != nullptr) {
                report.derived.push_back({DescribeField(*variable), ExpressionOf(*variable)});
            }
        }
    }
    return report;
}

void WriteText(ModelReport const& report, std::ostream& out) {
    out << "model family: " << report.family << "\n";
    out << "model: " << report.description;
    if (report.description.empty() || report.description.back() != '\n') {
        out << "\n";
    }
    out << "\ndata dictionary (" << report.dictionary.size() << "):\n";
    for (FieldFacts const& field : report.dictionary) {
        out << "  " << field.name << "  " << FactsText(field) << "\n";
    }
    out << "\nderived fields (" << report.derived.size() << "):\n";
    for (DerivedFacts const& derived : report.derived) {
        out << "  " << derived.field.name << "  " << derived.field.type << " " << derived.field.measure
            << "  = " << derived.expression << "\n";
    }
    WriteEntriesText("mining schema", report.outline.miningFields, out);
    WriteEntriesText("targets", report.outline.targets, out);
    WriteEntriesText("outputs", report.outline.outputs, out);
}

void WriteJson(ModelReport const& report, std::ostream& out) {
    out << "{\n  \"family\": " << JsonString(report.family)
        << ",\n  \"model\": " << JsonString(report.description);
    out << ",\n  \"dataDictionary\": [";
    for (std::size_t i = 0; i < report.dictionary.size(); ++i) {
        out << (i == 0 ? "\n    {" : ",\n    {") << JsonFacts(report.dictionary[i]) << "}";
    }
    out << (report.dictionary.empty() ? "]" : "\n  ]");
    out << ",\n  \"derivedFields\": [";
    for (std::size_t i = 0; i < report.derived.size(); ++i) {
        out << (i == 0 ? "\n    {" : ",\n    {") << JsonFacts(report.derived[i].field)
            << ", \"expression\": " << JsonString(report.derived[i].expression) << "}";
    }
    out << (report.derived.empty() ? "]" : "\n  ]");
    WriteJsonEntries("miningSchema", report.outline.miningFields, "name", out);
    WriteJsonEntries("targets", report.outline.targets, "field", out);
    WriteJsonEntries("outputs", report.outline.outputs, "name", out);
    out << "\n}\n";
}

}  // namespace vantry_tool
