// Open files.
#include <tov310/file.h>

#include "util/file_error.h"
#include "util/file_facts.h"
#include "vesk/error_codes.h"
#include "vesk/file_handle.h"

#include <string_view>

namespace tov {
namespace {

unsigned long HandleErrorCode(std::error_code failure) {
    return VeskErrorCode(failure.value());
}

}  // namespace

void* TovFileCreate(char const* path, unsigned long access, unsigned long share, unsigned long disposition,
                    unsigned long attributes, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    OpenRequest request;
    request.reads = (access & TOV_FILE_READ) != 0;
    request.writes = (access & TOV_FILE_WRITE) != 0;
    request.isExclusive = share == TOV_SHARE_NONE;
    request.isReadOnly = (attributes & TOV_ATTRIBUTE_READONLY) != 0;
    switch (disposition) {
        case TOV_CREATE_NEW:
            request.disposition = OpenRequest::kCreateNew;
            break;
        case TOV_CREATE_ALWAYS:
            request.disposition = OpenRequest::kCreateAlways;
            break;
        case TOV_OPEN_EXISTING:
            request.disposition = OpenRequest::kOpenExisting;
            break;
        case TOV_OPEN_ALWAYS:
            request.disposition = OpenRequest::kOpenAlways;
            break;
        case TOV_TRUNCATE_EXISTING:
            request.disposition = OpenRequest::kTruncateExisting;
            break;
        default:
            report.Result(TOV_ERROR_INVALID_PARAMETER);
            return nullptr;
    }
    std::string const system = SystemPath(path);
    void* file = nullptr;
    if (auto const failure = OpenFileHandle(system.c_str(), request, file))
        report.Result(PathErrorCode(failure, system));
    return file;
}

void* TovFileOpen(char const* path, unsigned long access, unsigned long share, unsigned long disposition,
                  unsigned long attributes, unsigned long* error, CString* message) {
    return TovFileCreate(path, access, share, disposition, attributes, error, message);
}

int TovFileClose(void* file, unsigned long* error, CString* message) {
    return FileReport(error, message).Result(HandleErrorCode(CloseFileHandle(file)));
}

int TovFileRead(void* file, void* buffer, unsigned long length, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::size_t got = 0;
    auto const failure = ReadFileHandle(file, buffer, length, got);
    return report.Result(HandleErrorCode(failure)) != 0 && got == length;
}

int TovFileWrite(void* file, void const* bytes, unsigned long length, unsigned long* error,
                 CString* message) {
    FileReport const report(error, message);
    if (bytes == nullptr && length != 0) return report.Result(TOV_ERROR_INVALID_PARAMETER);
    return report.Result(HandleErrorCode(WriteFileHandle(file, {static_cast<char const*>(bytes), length})));
}

int TovFileWrite(void* file, char const* text, unsigned long* error, CString* message) {
    std::string_view const bytes = text != nullptr ? text : "";
    return TovFileWrite(file, bytes.data(), bytes.size(), error, message);
}

int TovFileSeekEnd(void* file, unsigned long* error, CString* message) {
    return FileReport(error, message).Result(HandleErrorCode(SeekFileHandleEnd(file)));
}

int TovFileSeek(void* file, long position, unsigned long* error, CString* message) {
    return FileReport(error, message).Result(HandleErrorCode(SeekFileHandle(file, position)));
}

long TovFileSize(void* file, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::int64_t size = 0;
    auto const failure = SizeOfFileHandle(file, size);
    return report.Result(HandleErrorCode(failure)) != 0 ? static_cast<long>(size) : -1;
}

long TovFileSize(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::string const system = SystemPath(path);
    EntryFacts facts;
    if (auto const failure = FactsOfPath(system.c_str(), true, facts)) {
        report.Result(PathErrorCode(failure, system));
        return -1;
    }
    if (facts.kind == EntryKind::kDirectory) {
        report.Result(TOV_ERROR_ACCESS_DENIED);
        return -1;
    }
    return static_cast<long>(facts.size);
}

}  // namespace tov
