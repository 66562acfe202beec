// The tag vocabulary is checked through what a plug-in sees: each constant is found by its linker name in
// the library and compared with the expected text of tests/fixtures/pmml_model_tags.tsv.
#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/translate/PMMLModelTags.h"

using QXVantry_920::PMMLModelTags;

namespace {

struct Tag {
    std::string name;
    std::string text;
};

std::vector<Tag> ExpectedTags() {
    std::vector<Tag> tags;
    std::istringstream lines(vantry_test::ReadFixture("pmml_model_tags.tsv"));
    std::string line;
    while (std::getline(lines, line)) {
        std::string::size_type tab = line.find('\t');
        if (line.empty() || line[0] == '#' || tab == std::string::npos) {
            continue;
        }
        tags.push_back({line.substr(0, tab), line.substr(tab + 1)});
    }
    return tags;
}

std::string MangledName(std::string const& name) {
    return "_ZN12QXVantry_92013PMMLModelTags" + std::to_string(name.size()) + name + "E";
}

// The object size recorded in the dynamic symbol table for the symbol at `address`.
size_t SymbolSize(void const* address) {
    Dl_info info{};
    void* entry = nullptr;
    if (dladdr1(address, &info, &entry, RTLD_DL_SYMENT) == 0 || entry == nullptr) {
        return 0;
    }
    return static_cast<ElfW(Sym) const*>(entry)->st_size;
}

void* LoadedLibrary() {
    std::string path;
    dl_iterate_phdr(
        [](dl_phdr_info* object, size_t, void* found) {
            if (std::strstr(object->dlpi_name, "libvantrylib920r.so") != nullptr) {
                *static_cast<std::string*>(found) = object->dlpi_name;
            }
            return 0;
        },
        &path);
    return path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
}

}  // namespace

// Each constant is exported under its name, holds exactly its text and terminating zero (no padding, no
// truncation), and is an object of its own even where texts repeat.
TEST(PMMLModelTags, EveryConstantIsExportedWithItsExactText) {
    std::vector<Tag> const tags = ExpectedTags();
    ASSERT_EQ(tags.size(), 763u);
    void* library = LoadedLibrary();
    ASSERT_NE(library, nullptr) << dlerror();
    std::set<void const*> objects;
    for (Tag const& tag : tags) {
        void const* exported = dlsym(library, MangledName(tag.name).c_str());
        ASSERT_NE(exported, nullptr) << tag.name << " is not exported";
        EXPECT_STREQ(static_cast<char const*>(exported), tag.text.c_str()) << tag.name;
        EXPECT_EQ(SymbolSize(exported), tag.text.size() + 1) << tag.name;
        EXPECT_TRUE(objects.insert(exported).second) << tag.name << " shares storage";
    }
    dlclose(library);

    // The header names the same objects; comparison is exact, case and blanks count.
    EXPECT_EQ(dlsym(RTLD_DEFAULT, MangledName("XML_ELE_PMML").c_str()),
              static_cast<void const*>(PMMLModelTags::XML_ELE_PMML));
    EXPECT_STREQ(PMMLModelTags::XML_ELE_PMML, "PMML");
    EXPECT_STREQ(PMMLModelTags::XML_VAL_SVM_SEPARATORS, " ");
    EXPECT_STRNE(PMMLModelTags::XML_ELE_XBASIS, PMMLModelTags::XML_ELE_UPERXBASIS);
}
