// One attempt to use a plug-in library: loads it by file name on the first symbol look-up and finds
// symbols in it. The library is never unloaded: the code of the models it builds lives in it.
#pragma once

#include <string>

namespace QXVantry_920 {

class VTDynamicLoadedLibrary {
  public:
    explicit VTDynamicLoadedLibrary(std::string const& path);
    // Frees the strings only; the library stays loaded.
    ~VTDynamicLoadedLibrary();
    VTDynamicLoadedLibrary(VTDynamicLoadedLibrary const&) = delete;
    VTDynamicLoadedLibrary& operator=(VTDynamicLoadedLibrary const&) = delete;

    // 0 if the library is loaded (now or before); otherwise a non-zero error, with the loader's
    // text in fLastError.
    int Load();
    // The address of an exported symbol, or null if the library cannot be loaded or lacks it.
    void* GetSymbolAddress(std::string const& name);

    // The loader's text for the last failed load or look-up; empty after one that went well.
    std::string const& GetLastError() const { return fLastError; }

  private:
    void* fHandle;
    int fOption;
    int fReserved;
    std::string fPath;
    std::string fLastError;
};

}  // namespace QXVantry_920
