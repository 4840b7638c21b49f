#include "util/file_error.h"

#include "util/file_facts.h"
#include "vesk/error_codes.h"

namespace tov {

unsigned long PathErrorCode(std::error_code failure, std::string const& path) {
    if (failure != std::errc::no_such_file_or_directory) return VeskErrorCode(failure.value());
    auto const last = path.find_last_not_of('/');
    auto const separator = last == std::string::npos ? last : path.rfind('/', last);
    if (separator == std::string::npos) return TOV_ERROR_NOT_FOUND;
    EntryFacts above;
    bool const isThere = !FactsOfPath(path.substr(0, separator + 1).c_str(), true, above);
    return isThere ? TOV_ERROR_NOT_FOUND : TOV_ERROR_PATH_NOT_FOUND;
}

}  // namespace tov
