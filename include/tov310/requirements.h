// Are the layers that the library stands on recent enough?
//
// Five layers are known by the names of the libraries that they stand in for: "ComCtl32.Dll" (controls),
// "Shell32.Dll" and "ShFolder.Dll" (folders), "Shlwapi.Dll" (path functions) and "Mfc90.Dll" (framework).
// What versions they have is asked of a replaceable source; the default one answers for the layers of this
// library.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <cstdint>

namespace tov {

// A version record. The checks compare the product version: major in the upper and minor in the lower
// 16 bits of dwProductVersionMS.
struct tagVS_FIXEDFILEINFO {
    std::uint32_t dwSignature = 0;  // 0xFEEF04BD in a filled record
    std::uint32_t dwStrucVersion = 0;
    std::uint32_t dwFileVersionMS = 0;
    std::uint32_t dwFileVersionLS = 0;
    std::uint32_t dwProductVersionMS = 0;
    std::uint32_t dwProductVersionLS = 0;
    std::uint32_t dwFileFlagsMask = 0;
    std::uint32_t dwFileFlags = 0;
    std::uint32_t dwFileOS = 0;
    std::uint32_t dwFileType = 0;
    std::uint32_t dwFileSubtype = 0;
    std::uint32_t dwFileDateMS = 0;
    std::uint32_t dwFileDateLS = 0;

    friend bool operator==(tagVS_FIXEDFILEINFO const&, tagVS_FIXEDFILEINFO const&) = default;
};
using VS_FIXEDFILEINFO = tagVS_FIXEDFILEINFO;

// Answers which version a layer has.
class TOV_CORE_API ITovVersionSource {
 public:
    virtual ~ITovVersionSource();

    // Fills the record and answers 0, or answers an error code (system_error.h).
    virtual unsigned long Load(char const* file, tagVS_FIXEDFILEINFO& record) = 0;

    // Whether all control classes of the mask can be made.
    virtual bool HasControlClasses(std::uint32_t mask) = 0;
};

// Sets the source, which the caller keeps alive until the next call, and forgets the cached records. Null
// puts the default source back.
TOV_CORE_API void TovSetVersionSource(ITovVersionSource* source);

// Reads the version record of a file. Clears the record and the optional pair first. Answers 1, or 0 with
// code and text in the pair.
TOV_CORE_API int TovLoadFixedFileInfo(tagVS_FIXEDFILEINFO& record, char const* file,
                                      unsigned long* error = nullptr, CString* message = nullptr);

// The record of one layer, loaded once in the process. A failed load stays failed: its code is given at every
// call, its text at the first one only.
TOV_CORE_API int TovFixedFileInfoComCtl32(tagVS_FIXEDFILEINFO& record, unsigned long* error,
                                          CString* message);
TOV_CORE_API int TovFixedFileInfoShell32(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message);
TOV_CORE_API int TovFixedFileInfoShFolder(tagVS_FIXEDFILEINFO& record, unsigned long* error,
                                          CString* message);
TOV_CORE_API int TovFixedFileInfoShlwapi(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message);
TOV_CORE_API int TovFixedFileInfoMfc(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message);

// Each answers 1 and an empty message, or 0 and a message for the user. The least versions are 4.71, for the
// framework 9.0; a Shell32 from 4.0 on is good enough where ShFolder can be read.
TOV_CORE_API int TovCheckComCtl32Version(CString& message);
TOV_CORE_API int TovCheckShell32Version(CString& message);
TOV_CORE_API int TovCheckShFolderVersion(CString& message);
TOV_CORE_API int TovCheckShlwapiVersion(CString& message);
TOV_CORE_API int TovCheckMfcVersion(CString& message);

enum eTovRequirements {
    eTovRequirementsMet = 0,
    eTovRequirementsComCtl32 = 1,
    eTovRequirementsShell32 = 2,  // with ShFolder
    eTovRequirementsShlwapi = 4,
    eTovRequirementsMfc = 8,
};

// Checks ComCtl32, Shell32, Shlwapi and the framework, in this order, up to the first that fails. Answers 1
// when all are met, else 0 with the failed one and its message.
TOV_CORE_API int TovCheckAllRequirements(eTovRequirements& failed, CString& message);

// 1 when the newer control classes (mask 0xC000) are there.
TOV_CORE_API int TovIsComCtlXP();

}  // namespace tov
