#include "vantry/factory/PluginBoundary.h"

#include <cxxabi.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <typeinfo>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// How many models one model may hold inside another. Each level of a model built inside another
// (a segment's model) costs several kilobytes of stack in the factory and the plug-ins, about 6 kB with
// AddressSanitizer, so 100 levels stay under 1 MB; real documents nest two or three levels.
constexpr int kMaxModelNesting = 100;

thread_local int tModelNesting = 0;

// The readable name of the type of the exception in flight, for an exception that has no words.
std::string CurrentExceptionType() {
    std::type_info const* type = abi::__cxa_current_exception_type();
    if (type == nullptr)
        return "unknown";
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> readable(
        abi::__cxa_demangle(type->name(), nullptr, nullptr, &status), std::free);
    return status == 0 && readable ? std::string(readable.get()) : std::string(type->name());
}

}  // namespace

// 260304, "Error in building model.", is the code of a model that could not be built; the plug-in's
// words follow it as detail.
void RethrowAtBoundary() {
    try {
        throw;
    } catch (VTException const&) {
        throw;
    } catch (std::bad_alloc const&) {
        throw;
    } catch (OutOfMemoryException const&) {
        throw std::bad_alloc();
    } catch (XMLException const& exception) {
        ThrowCodedErrorWithDetail(260304, NarrowText(exception.getMessage()));
    } catch (DOMException const& exception) {
        ThrowCodedErrorWithDetail(260304, NarrowText(exception.getMessage()));
    } catch (std::exception const& exception) {
        ThrowCodedErrorWithDetail(260304, exception.what());
    } catch (...) {
        ThrowCodedErrorWithDetail(260304, "an exception of type " + CurrentExceptionType());
    }
}

ModelNestingGuard::ModelNestingGuard(std::string const& modelName) {
    if (tModelNesting >= kMaxModelNesting) {
        // No code speaks of nesting; like a too deep "Apply", this one names what was given up.
        ThrowCodedError(260221, {modelName});
    }
    ++tModelNesting;
}

ModelNestingGuard::~ModelNestingGuard() {
    --tModelNesting;
}

}  // namespace QXVantry_920
