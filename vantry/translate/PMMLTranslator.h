// The concrete base of PMML translators. It carries the encoding in which document text is turned into
// narrow strings, and the small conversions the PMML readers share. It answers null on every
// ParseFromTree slot: a plug-in overrides the slots its family supports.
#pragma once

#include <string>

#include "vantry/Export.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class VANTRY_EXPORT PMMLTranslator : public BaseTranslator {
  public:
    // An empty encoding selects the default, "CP1252", when the transcoder is made.
    PMMLTranslator();
    explicit PMMLTranslator(std::string const& encoding);
    PMMLTranslator(PMMLTranslator const& other);
    PMMLTranslator& operator=(PMMLTranslator const& other);
    ~PMMLTranslator() override;

    using BaseTranslator::ParseFromTree;
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument* document,
                              std::string const& encoding) override;

  protected:
    // Document text by Xerces-C's default transcoding, never through fTranscoder; empty for null.
    std::string ToString(XMLCh const* text);
    // "continuous", "ordinal", "categorical", or empty for another number.
    std::string ToString(ScoreDictVar::MeasureLevel level);
    // A new UTF-16 buffer of a text in the transcoder's encoding, which the caller releases with
    // XMLString::release; null while there is no transcoder.
    XMLCh* ToUTF16(char const* text);
    // Whether document text equals a narrow text in the transcoder's encoding; false while there is
    // no transcoder.
    bool XStrEqualsUTF8Str(XMLCh const* text, char const* other);

    // A running number written into generated names; reset by the transformation reader.
    int fNodeCounter;
    // The encoding given at construction, used when the first parse makes the transcoder.
    std::string fEncoding;
    // Kept for subclasses of other libraries; nothing here reads it.
    double fPMMLLevel;
};

}  // namespace QXVantry_920
