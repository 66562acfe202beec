// Helpers of the translator tests: Xerces-C started for each test and documents parsed from strings.
#pragma once

#include <gtest/gtest.h>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <string>

#include "vantry/diagnostics/VTException.h"

namespace vantry_test {

class XercesTest : public testing::Test {
  protected:
    void SetUp() override { XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize(); }
    void TearDown() override {
        parser.reset();
        XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
    }

    // The document of an XML text; it lives until the next Parse or the end of the test.
    XERCES_CPP_NAMESPACE::DOMDocument* Parse(std::string const& xml) {
        parser = std::make_unique<XERCES_CPP_NAMESPACE::XercesDOMParser>();
        XERCES_CPP_NAMESPACE::MemBufInputSource source(reinterpret_cast<XMLByte const*>(xml.data()),
                                                       xml.size(), "test");
        parser->parse(source);
        return parser->getDocument();
    }

    std::unique_ptr<XERCES_CPP_NAMESPACE::XercesDOMParser> parser;
};

// The code and message of the VTException a call throws; code 0 if it throws none.
template <typename Call>
std::pair<int, std::string> FailureOf(Call call) {
    try {
        call();
    } catch (QXVantry_920::VTException& exception) {
        return {exception.GetErrorCode(), exception.GetErrorMessage()};
    }
    return {0, std::string()};
}

}  // namespace vantry_test
