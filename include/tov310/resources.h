// Where texts and other resources come from.
//
// A resource module is a set of files keyed by numeric ids: strings.json with the texts, dialogs/ID.json,
// menus/ID.json, bitmaps/ID.png and so on. One is built into the library (Simplified Chinese). A host can put
// a translated one in its place: a folder on disk, or a loadable module made with tov_embed_resources
// (CMake). What the host's module lacks, the built-in one answers.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <cstddef>
#include <string_view>

namespace tov {

// A set of resources. Modules are made by TovLoadResourceModule, never change and live until the process
// ends, so a handle once got stays valid and may be used from every thread.
class CTovResourceModule;

// Names a resource module; null names none.
using HINSTANCE = CTovResourceModule const*;

// The files of a module in memory, as tov_embed_resources compiles them.
struct TovResourceTable {
    struct File {
        char const* name;  // path with "/" inside the resource folder
        unsigned char const* bytes;
        std::size_t size;
    };
    File const* files;
    std::size_t count;
};

// Under this symbol a loadable module offers its table.
#define TOV_RESOURCE_MODULE_SYMBOL                                   \
    extern "C" TOV_EXPORT tov::TovResourceTable const tov_resources; \
    tov::TovResourceTable const tov_resources

// Loads a module from a folder that holds strings.json, or from a loadable module file. Null on failure, with
// the code and a text in the optional pair; a faulty strings.json gives 87 and a text that names line and
// reason.
TOV_CORE_API HINSTANCE TovLoadResourceModule(char const* path, unsigned long* error = nullptr,
                                             CString* message = nullptr);

// The module that is built into the library.
TOV_CORE_API HINSTANCE TovBuiltInResourceModule();

// The module from which the library takes its own resources: the built-in one until a host sets another.
// Null puts the built-in one back. To be set before threads start.
TOV_CORE_API void TovSetTovResourceHandle(HINSTANCE module);
TOV_CORE_API HINSTANCE TovGetTovResourceHandle();

// The module from which TovLoadString loads in this thread; the built-in one until another is set.
//
// TovSetResourceHandle saves the current handle in one slot of the process and makes the given one current.
// The slot does not nest: a second call overwrites it. TovRestoreResourceHandle makes the saved handle
// current and clears the slot; with an empty slot it does nothing.
TOV_CORE_API void TovSetResourceHandle(HINSTANCE module);
TOV_CORE_API HINSTANCE TovGetResourceHandle();
TOV_CORE_API void TovRestoreResourceHandle();

// Text of the current resource handle. Answers 1 and the text, or 0 and an empty text.
TOV_CORE_API int TovLoadString(unsigned int id, CString& text);

// Text of the given module: makes its handle current, loads and restores, so that a handle which the host had
// saved before is gone from the slot afterwards. With null it is the current handle's text. What the module
// lacks comes from the built-in one. Answers 1 and the text, or 0 and an empty text.
TOV_CORE_API int TovLoadResourceString(HINSTANCE module, unsigned int id, CString& text);

// A resource file of the module by its name inside the resource folder ("dialogs/1234.json"), as it stands;
// the built-in module answers what the given one lacks. Null data where neither has it. The bytes live as
// long as the process.
TOV_CORE_API std::string_view TovFindResource(HINSTANCE module, char const* name);

}  // namespace tov
