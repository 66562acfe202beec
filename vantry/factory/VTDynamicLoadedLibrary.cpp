#include "vantry/factory/VTDynamicLoadedLibrary.h"

#include <dlfcn.h>

#include "vantry/diagnostics/ScoringLog.h"

namespace QXVantry_920 {

namespace {

constexpr char kGetSymbolAddressName[] = "QXVantry_920::VTDynamicLoadedLibrary::GetSymbolAddress";

// The loader's text for its last failure; dlerror keeps it per thread.
std::string LoaderErrorText() {
    const char* text = dlerror();
    return text != nullptr ? std::string(text) : std::string();
}

}  // namespace

VTDynamicLoadedLibrary::VTDynamicLoadedLibrary(std::string const& path)
    : fHandle(nullptr), fOption(1), fReserved(0), fPath(path) {}

VTDynamicLoadedLibrary::~VTDynamicLoadedLibrary() = default;

int VTDynamicLoadedLibrary::Load() {
    fLastError.clear();
    if (fHandle != nullptr)
        return 0;
    // The plain file name: the platform's library search finds it, no directory is prefixed.
    fHandle = dlopen(fPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (fHandle != nullptr)
        return 0;
    fLastError = LoaderErrorText();
    return 1;
}

void* VTDynamicLoadedLibrary::GetSymbolAddress(std::string const& name) {
    ScoringLog::GetInstance()->TraceText(1, "Enter:%s", kGetSymbolAddressName);
    void* address = nullptr;
    if (Load() == 0) {
        dlerror();
        address = dlsym(fHandle, name.c_str());
        if (address == nullptr)
            fLastError = LoaderErrorText();
    }
    ScoringLog::GetInstance()->TraceText(1, "Exit:%s", kGetSymbolAddressName);
    return address;
}

}  // namespace QXVantry_920
